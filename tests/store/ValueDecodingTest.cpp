#include <gtest/gtest.h>

#include <fstream>

#include "StoreTestSupport.hpp"
#include "store/ExternalStorage.hpp"
#include "store/MemoryTag.hpp"
#include "store/NoteImage.hpp"
#include "store/NoteRecording.hpp"
#include "store/StoredValue.hpp"
#include "store/TimelineTab.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::store {
namespace {

using namespace testing;
using fixtures::BinaryStorage;

const fixtures::Bytes kUUIDBytes = bytes({0x3F, 0x25, 0x04, 0xE0, 0x4F, 0x89, 0x41, 0xD3, 0x9A, 0x0C, 0x03, 0x05, 0xE8,
                                          0x2C, 0x33, 0x01});

// Stored seconds since the reference date, and whether the layout writes whole seconds.
TEST(ValueDecoding, NoteDatesReadTheStoredInstant) {
  const struct {
    std::optional<double> stored;
    bool integerDates;
    std::optional<double> expected;
  } dates[] = {{760100000.5, false, 760100000.5},
               {760200000.0, false, 760200000.0},
               {760200000.4, true, 760200000.0},
               {-31622400.0, false, -31622400.0},
               {std::nullopt, false, std::nullopt}};
  for (const auto& date : dates) {
    TemporaryDirectory directory;
    fixtures::JournalLayout layout;
    layout.integerDates = date.integerDates;
    fixtures::NoteRow note;
    if (date.stored) note.date = referenceDate(*date.stored);
    fixtures::JournalWriter(directory / "Quillan.sqlite", layout).addNote(note);
    const auto notes = fetchNotes(*contextFor(directory / "Quillan.sqlite"));
    ASSERT_EQ(notes.size(), 1u);
    const auto read = notes[0]->date();
    EXPECT_EQ(read ? std::optional(read->timeIntervalSinceReferenceDate()) : std::nullopt, date.expected);
  }
}

TEST(ValueDecoding, RealsWhereIntegersBelongConvertAsSqliteDoes) {
  quillan::testing::expectGoldenAnswers("stored_reals.txt", [](const std::string& real) {
    const StoredValue value(std::stod(real));
    return std::to_string(decodeInteger(value)) + (decodeBool(value) ? " true" : " false");
  });
}

TEST(ValueDecoding, StringsUUIDsAndNonOptionalScalars) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  {
    fixtures::JournalWriter writer(path);
    writer.addNote({.info = "First note ✍️", .uuid = kUUIDBytes});
    writer.addNote({.info = "", .uuid = bytes({1, 2, 3})});
    writer.addNote({});
    writer.addImage({.order = std::nullopt});
    writer.addTag({.date = referenceDate(5), .isViewed = std::nullopt});
    writer.addTag({.isViewed = true});
  }
  auto context = contextFor(path);
  const auto notes = fetchNotes(*context);
  ASSERT_EQ(notes.size(), 3u);
  EXPECT_EQ(notes[0]->info(), "First note ✍️");
  ASSERT_TRUE(notes[0]->uuid());
  EXPECT_EQ(notes[0]->uuid()->uuidString(), "3F2504E0-4F89-41D3-9A0C-0305E82C3301");
  EXPECT_EQ(notes[1]->info(), std::optional<std::string>(""));
  EXPECT_FALSE(notes[1]->uuid()) << "a 3-byte UUID is invalid, not a crash";
  EXPECT_FALSE(notes[2]->info());
  EXPECT_FALSE(notes[2]->uuid());

  auto images = context->fetch(NoteImage::fetchRequest());
  ASSERT_TRUE(images.ok());
  ASSERT_EQ(images.value().size(), 1u);
  EXPECT_EQ(images.value()[0]->order(), 0);
  auto tags = context->fetch(MemoryTag::fetchRequest());
  ASSERT_TRUE(tags.ok());
  ASSERT_EQ(tags.value().size(), 2u);
  EXPECT_FALSE(tags.value()[0]->isViewed());
  EXPECT_TRUE(tags.value()[1]->isViewed());
}

TEST(ValueDecoding, BinaryAttributesReadTaggedExternalAndRawForms) {
  const fixtures::Bytes png = bytes({0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A});
  const struct {
    BinaryStorage storage;
    fixtures::Bytes data;
    bool removeExternalFiles;
    std::optional<fixtures::Bytes> expected;
  } forms[] = {{BinaryStorage::inlineTagged, png, false, png},
               {BinaryStorage::externalFile, png, false, png},
               {BinaryStorage::externalFile, png, true, std::nullopt},
               {BinaryStorage::untagged, png, false, png},
               {BinaryStorage::inlineTagged, {}, false, fixtures::Bytes{}}};
  for (const auto& form : forms) {
    TemporaryDirectory directory;
    {
      fixtures::JournalWriter writer(directory / "Quillan.sqlite");
      const auto note = writer.addNote({.info = "with media"});
      writer.addImage({.owner = note, .imgData = form.data, .storage = form.storage});
      writer.addRecording({.owner = note, .recordingData = form.data, .storage = form.storage});
    }
    if (form.removeExternalFiles) std::filesystem::remove_all(directory / ".Quillan_SUPPORT");
    const auto context = contextFor(directory / "Quillan.sqlite");
    const auto notes = fetchNotes(*context);
    ASSERT_EQ(notes.size(), 1u);
    ASSERT_EQ(notes[0]->images().size(), 1u);
    ASSERT_EQ(notes[0]->recordings().size(), 1u);
    EXPECT_EQ(notes[0]->images()[0]->imgData(), form.expected);
    EXPECT_EQ(notes[0]->recordings()[0]->recordingData(), form.expected);
  }
}

TEST(ExternalStorage, ReferencesToAnythingButAFileInTheFolderAreAbsentData) {
  TemporaryDirectory directory;
  const auto store = directory / "Quillan.sqlite";
  const auto folder = externalDataDirectory(store);
  std::filesystem::create_directories(folder / "0B9E6A4C-0000-4000-8000-000000000001");
  std::ofstream(directory / "outside") << "not in the folder";
  auto reference = [](std::string_view name) {
    const std::string stored = "\x02" + std::string(name);
    return std::vector<std::uint8_t>(stored.begin(), stored.end());
  };
  using namespace std::string_view_literals;
  for (const auto name :
       {"."sv, ".."sv, "../../outside"sv, "\0\0\0\0\x0c"sv, "\0"sv, ""sv, "0B9E6A4C-0000-4000-8000-000000000001"sv}) {
    EXPECT_EQ(decodeExternalStorageValue(reference(name), store), std::nullopt) << name;
  }
}

TEST(Identity, NoteAndMemoryTagAreThemselvesOthersTheirId) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  {
    fixtures::JournalWriter writer(path);
    writer.addNote({.uuid = kUUIDBytes});
    writer.addNote({.uuid = kUUIDBytes});
    writer.addImage({});
    writer.addImage({});
    writer.addImage({.id = kUUIDBytes});
    writer.addTab({});
    writer.addTab({});
    writer.addRecording({});
    writer.addRecording({});
  }
  auto context = contextFor(path);
  const auto notes = fetchNotes(*context);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_NE(notes[0]->id(), notes[1]->id()) << "same uuid, still two identities";
  const auto images = context->fetch(NoteImage::fetchRequest()).value();
  EXPECT_EQ(images[0]->id(), images[1]->id()) << "absent ids share the empty identity";
  EXPECT_NE(images[0]->id(), images[2]->id());
  const auto tabs = context->fetch(TimelineTab::fetchRequest()).value();
  EXPECT_EQ(tabs[0]->id(), tabs[1]->id());
  const auto recordings = context->fetch(NoteRecording::fetchRequest()).value();
  EXPECT_EQ(recordings[0]->id(), recordings[1]->id());
}

}  // namespace
}  // namespace quillan::store
