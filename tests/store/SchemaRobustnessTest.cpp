#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <regex>

#include "JournalDescription.hpp"
#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::store {
namespace {

using namespace testing;

// Writes the same journal in `layout`: a PK gap, an orphan image, a dangling
// tab key, a tab with no notes.
void writeReferenceJournal(const std::filesystem::path& path, const fixtures::JournalLayout& layout) {
  fixtures::JournalWriter writer(path, layout);
  const auto tab = writer.addTab({.name = "Travel"});
  writer.addTab({.name = "Empty"});
  const auto first = writer.addNote({.date = referenceDate(760100000), .info = "First", .timelineTab = tab});
  writer.skipPrimaryKeys("Note", 2);
  writer.addNote({.date = referenceDate(-31622400), .info = "Old", .timelineTab = 99});
  writer.addImage({.owner = first, .imgData = fixtures::Bytes{0x89, 'P'}, .order = 2});
  writer.addImage({.imgData = fixtures::Bytes{0xFF, 0xD8}});
}

std::string readReferenceJournal(const fixtures::JournalLayout& layout) {
  TemporaryDirectory directory;
  writeReferenceJournal(directory / "Quillan.sqlite", layout);
  return describeJournal(*contextFor(directory / "Quillan.sqlite"));
}

// The app's layout, renumbered entities, reversed and appended columns,
// history and mirroring tables with and without triggers, whole-second dates:
// each reads as the app's layout does, which reads as
// tests/data/golden/journal_layouts.txt holds (keys not reused after the gap,
// the dangling tab key read as no tab, the orphan image as ownerless).
TEST(StoreLayouts, ReadTheSameJournal) {
  const std::function<void(fixtures::JournalLayout&)> changes[] = {
      [](auto& l) { l.extraEntity = true; },
      [](auto& l) { l.reversedColumns = true; },
      [](auto& l) { l.appendedColumns = true; },
      [](auto& l) { l.historyTables = true; },
      [](auto& l) { l.historyTables = l.triggers = true; },
      [](auto& l) { l.integerDates = true; },
  };
  const auto appLayout = readReferenceJournal({});
  quillan::testing::expectGoldenText(appLayout, "journal_layouts.txt");
  for (std::size_t index = 0; index < std::size(changes); ++index) {
    fixtures::JournalLayout layout;
    changes[index](layout);
    EXPECT_EQ(readReferenceJournal(layout), appLayout) << "layout change " << index;
  }
}

// The report a failed load makes, escaped for EXPECT_DEATH's regular expression.
std::string loadFailureReport(const std::string& message) {
  const std::string report = "OnThisDayWidgetExtension/CoreDataStack: Fatal error: Unresolved error " + message;
  return std::regex_replace(report, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

void corrupt(const std::filesystem::path& path) {
  { fixtures::JournalWriter writer(path); }
  auto contents = readText(path);
  for (std::size_t i = 100; i < contents.size(); ++i) contents[i] = static_cast<char>(0xA5);
  std::ofstream(path, std::ios::binary) << contents;
}

void dropColumn(const std::filesystem::path& path, const char* column) {
  fixtures::JournalWriter writer(path);
  writer.execute(std::string("ALTER TABLE ZNOTE DROP COLUMN ") + column);
}

const std::string kIncompatible =
    "Error Domain=NSCocoaErrorDomain Code=134020 \"The model used to open the store is incompatible with "
    "the one used to create the store.\" UserInfo={NSFilePath=";

using StoreLoadFailureDeathTest = testing::StoreFolders;

TEST_F(StoreLoadFailureDeathTest, StopsWithTheUnresolvedErrorReport) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::pair<std::function<void(const std::filesystem::path&)>, std::string> failures[] = {
      {[](const auto& p) { std::ofstream(p, std::ios::binary) << std::string(4096, 'x'); },
       "Error Domain=NSCocoaErrorDomain Code=259 \"The file \"Quillan.sqlite\" couldn't be opened because it isn't in "
       "the correct format.\""},
      {corrupt, "Error Domain=NSCocoaErrorDomain Code=259"},
      {[](const auto& p) { fixtures::JournalWriter(p).execute("DELETE FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'"); },
       kIncompatible},
      {[](const auto& p) { dropColumn(p, "ZDATE"); }, kIncompatible},
      {[](const auto& p) { dropColumn(p, "ZINFO"); }, kIncompatible},
  };
  for (const auto& [prepare, report] : failures) {
    SCOPED_TRACE(report);
    std::filesystem::remove_all(sharedStore());
    prepare(sharedStore());
    EXPECT_DEATH(CoreDataStack::makeForTesting()->persistentContainer(), loadFailureReport(report));
  }
}

TEST(StoreLoadFailure, NamesTheMissingColumnInTheUserInfo) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  dropColumn(path, "ZINFO");
  PersistentStoreCoordinator coordinator;
  auto loaded = coordinator.addPersistentStore(platform::URL::fileURL(path), kSQLiteStoreType);
  ASSERT_FALSE(loaded.ok());
  EXPECT_EQ(loaded.error().userInfo.at("reason"), "the table ZNOTE has no column ZINFO");
  EXPECT_TRUE(coordinator.persistentStores().empty());
}

TEST(StoreLoadFailure, UnreadableFileIsAFileError) {
  TemporaryDirectory directory;
  ::chmod(directory.path().c_str(), 0755);
  const auto path = directory / "Quillan.sqlite";
  { fixtures::JournalWriter writer(path); }
  std::filesystem::permissions(path, std::filesystem::perms::none);
  EXPECT_EQ(runUnprivileged([&path] {
              PersistentStoreCoordinator coordinator;
              auto loaded = coordinator.addPersistentStore(platform::URL::fileURL(path), kSQLiteStoreType);
              return !loaded.ok() && loaded.error().code == 257;
            }),
            0);
}

}  // namespace
}  // namespace quillan::store
