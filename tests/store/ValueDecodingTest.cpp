#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "JournalDescription.hpp"
#include "store/ExternalStorage.hpp"
#include "store/StoredValue.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::store {
namespace {

using namespace testing;
using fixtures::BinaryStorage;

const fixtures::Bytes kUUIDBytes{0x3F, 0x25, 0x04, 0xE0, 0x4F, 0x89, 0x41, 0xD3,
                                 0x9A, 0x0C, 0x03, 0x05, 0xE8, 0x2C, 0x33, 0x01};

// Dates of either sign and none, texts, UUIDs of the right length and not,
// scalars left NULL, absent ids.
void writeScalars(fixtures::JournalWriter& writer) {
  writer.addNote({.date = referenceDate(760100000.5), .info = "First note ✍️", .uuid = kUUIDBytes});
  writer.addNote({.date = referenceDate(760200000.0), .info = "", .uuid = fixtures::Bytes{1, 2, 3}});
  writer.addNote({.date = referenceDate(-31622400.0), .uuid = kUUIDBytes});
  writer.addNote({});
  writer.addImage({.order = std::nullopt});
  writer.addImage({});
  writer.addImage({.id = kUUIDBytes});
  for (int twice = 0; twice < 2; ++twice) {
    writer.addTab({});
    writer.addRecording({});
  }
  writer.addTag({.date = referenceDate(5), .isViewed = std::nullopt});
  writer.addTag({.isViewed = true});
}

// A note per form a binary attribute is stored in, with an image and a recording in it.
void writeBinaryForms(fixtures::JournalWriter& writer) {
  const fixtures::Bytes png{0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  for (const auto& [storage, data] : {std::pair{BinaryStorage::inlineTagged, png},
                                      {BinaryStorage::externalFile, png},
                                      {BinaryStorage::untagged, png},
                                      {BinaryStorage::inlineTagged, {}}}) {
    const auto note = writer.addNote({.info = "with media"});
    writer.addImage({.owner = note, .imgData = data, .storage = storage});
    writer.addRecording({.owner = note, .recordingData = data, .storage = storage});
  }
}

// tests/data/golden/journal_values.txt holds what each journal reads as.
TEST(ValueDecoding, EveryAttributeReadsAsTheGoldenFileSays) {
  const struct {
    const char* name;
    std::function<void(fixtures::JournalWriter&)> write;
    bool integerDates = false;
    bool removeExternalFiles = false;
  } journals[] = {
      {"scalars", writeScalars},
      {"whole-second dates", [](auto& writer) { writer.addNote({.date = referenceDate(760200000.4)}); }, true},
      {"binary forms", writeBinaryForms},
      {"binary forms, external files removed", writeBinaryForms, false, true},
  };
  std::string described;
  for (const auto& journal : journals) {
    // The writer is gone, and the journal closed, before it is read.
    TemporaryDirectory directory;
    fixtures::JournalLayout layout;
    layout.integerDates = journal.integerDates;
    journal.write(*std::make_unique<fixtures::JournalWriter>(directory / "Quillan.sqlite", layout));
    if (journal.removeExternalFiles) std::filesystem::remove_all(directory / ".Quillan_SUPPORT");
    described += "== " + std::string(journal.name) + "\n" + describeJournal(*contextFor(directory / "Quillan.sqlite"));
  }
  quillan::testing::expectGoldenText(described, "journal_values.txt");
}

TEST(ValueDecoding, RealsWhereIntegersBelongConvertAsSqliteDoes) {
  quillan::testing::expectGoldenAnswers("stored_reals.txt", [](const std::string& real) {
    const StoredValue value(std::stod(real));
    return std::to_string(decodeInteger(value)) + (decodeBool(value) ? " true" : " false");
  });
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

}  // namespace
}  // namespace quillan::store
