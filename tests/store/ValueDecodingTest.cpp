#include <gtest/gtest.h>

#include <fstream>

#include "StoreTestSupport.hpp"
#include "store/ExternalStorage.hpp"
#include "store/MemoryTag.hpp"
#include "store/NoteImage.hpp"
#include "store/NoteRecording.hpp"
#include "store/StoredValue.hpp"
#include "store/TimelineTab.hpp"

namespace quillan::store {
namespace {

using namespace testing;
using fixtures::BinaryStorage;

const fixtures::Bytes kUUIDBytes = bytes({0x3F, 0x25, 0x04, 0xE0, 0x4F, 0x89, 0x41, 0xD3, 0x9A, 0x0C, 0x03, 0x05, 0xE8,
                                          0x2C, 0x33, 0x01});

struct DateCase {
  const char* name;
  std::optional<double> stored;
  bool integerDates;
  std::optional<double> expected;
};

class NoteDateDecoding : public ::testing::TestWithParam<DateCase> {};

TEST_P(NoteDateDecoding, ReadsTheStoredInstant) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  {
    fixtures::JournalLayout layout;
    layout.integerDates = GetParam().integerDates;
    fixtures::JournalWriter writer(path, layout);
    fixtures::NoteRow note;
    if (GetParam().stored) note.date = referenceDate(*GetParam().stored);
    writer.addNote(note);
  }
  auto context = contextFor(path);
  const auto notes = fetchNotes(*context);
  ASSERT_EQ(notes.size(), 1u);
  if (GetParam().expected) {
    ASSERT_TRUE(notes[0]->date());
    EXPECT_DOUBLE_EQ(notes[0]->date()->timeIntervalSinceReferenceDate(), *GetParam().expected);
  } else {
    EXPECT_FALSE(notes[0]->date());
  }
}

INSTANTIATE_TEST_SUITE_P(Dates, NoteDateDecoding,
                         ::testing::Values(DateCase{"Fractional", 760100000.5, false, 760100000.5},
                                           DateCase{"WholeSecondStoredAsInteger", 760200000.0, false, 760200000.0},
                                           DateCase{"RoundedByLayout", 760200000.4, true, 760200000.0},
                                           DateCase{"BeforeReferenceDate", -31622400.0, false, -31622400.0},
                                           DateCase{"Null", std::nullopt, false, std::nullopt}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ValueDecoding, RealsWhereIntegersBelongConvertAsSqliteDoes) {
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
  constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
  const std::vector<std::pair<double, std::int64_t>> cases = {
      {2.9, 2},
      {-2.9, -2},
      {9.2e18, 9200000000000000000},
      {9.3e18, kMax},
      {1e300, kMax},
      {std::numeric_limits<double>::infinity(), kMax},
      {-9223372036854775808.0, kMin},
      {-1e300, kMin},
      {-std::numeric_limits<double>::infinity(), kMin},
      {std::numeric_limits<double>::quiet_NaN(), 0},
  };
  for (const auto& [real, integer] : cases) {
    EXPECT_EQ(decodeInteger(StoredValue(real)), integer) << real;
    EXPECT_EQ(decodeBool(StoredValue(real)), integer != 0) << real;
  }
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

struct BinaryCase {
  const char* name;
  BinaryStorage storage;
  fixtures::Bytes data;
  bool removeExternalFiles;
  std::optional<fixtures::Bytes> expected;
};

class BinaryAttributeDecoding : public ::testing::TestWithParam<BinaryCase> {};

TEST_P(BinaryAttributeDecoding, ReadsTaggedExternalAndRawForms) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  {
    fixtures::JournalWriter writer(path);
    const auto note = writer.addNote({.info = "with media"});
    writer.addImage({.owner = note, .imgData = GetParam().data, .storage = GetParam().storage});
    writer.addRecording({.owner = note, .recordingData = GetParam().data, .storage = GetParam().storage});
  }
  if (GetParam().removeExternalFiles) std::filesystem::remove_all(directory / ".Quillan_SUPPORT");
  auto context = contextFor(path);
  const auto notes = fetchNotes(*context);
  ASSERT_EQ(notes.size(), 1u);
  const auto images = notes[0]->images();
  const auto recordings = notes[0]->recordings();
  ASSERT_EQ(images.size(), 1u);
  ASSERT_EQ(recordings.size(), 1u);
  EXPECT_EQ(images[0]->imgData(), GetParam().expected);
  EXPECT_EQ(recordings[0]->recordingData(), GetParam().expected);
}

const fixtures::Bytes kPNGStart = bytes({0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A});

INSTANTIATE_TEST_SUITE_P(
    Storage, BinaryAttributeDecoding,
    ::testing::Values(BinaryCase{"Inline", BinaryStorage::inlineTagged, kPNGStart, false, kPNGStart},
                      BinaryCase{"ExternalFile", BinaryStorage::externalFile, kPNGStart, false, kPNGStart},
                      BinaryCase{"ExternalFileMissing", BinaryStorage::externalFile, kPNGStart, true, std::nullopt},
                      BinaryCase{"Untagged", BinaryStorage::untagged, kPNGStart, false, kPNGStart},
                      BinaryCase{"InlineEmpty", BinaryStorage::inlineTagged, {}, false, fixtures::Bytes{}}),
    [](const auto& info) { return std::string(info.param.name); });

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
