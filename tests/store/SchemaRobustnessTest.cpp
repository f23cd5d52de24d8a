#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>

#include "StoreTestSupport.hpp"
#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "store/NoteImage.hpp"
#include "store/TimelineTab.hpp"

namespace quillan::store {
namespace {

using namespace testing;

struct LayoutCase {
  const char* name;
  fixtures::JournalLayout layout;
};

fixtures::JournalLayout layoutWith(void (*change)(fixtures::JournalLayout&)) {
  fixtures::JournalLayout layout;
  change(layout);
  return layout;
}

// Writes the same journal in `layout`: a PK gap, an orphan image, a dangling
// tab key, a tab with no notes.
void writeReferenceJournal(const std::filesystem::path& path, const fixtures::JournalLayout& layout) {
  fixtures::JournalWriter writer(path, layout);
  const auto tab = writer.addTab({.name = "Travel"});
  writer.addTab({.name = "Empty"});
  const auto first = writer.addNote({.date = referenceDate(760100000.5), .info = "First", .timelineTab = tab});
  writer.skipPrimaryKeys("Note", 2);
  writer.addNote({.date = referenceDate(-31622400), .info = "Old", .timelineTab = 99});
  writer.addImage({.owner = first, .imgData = bytes({0x89, 'P'}), .order = 2});
  writer.addImage({.imgData = bytes({0xFF, 0xD8})});
}

class StoreLayouts : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(StoreLayouts, ReadTheSameJournal) {
  TemporaryDirectory directory;
  const auto path = directory / "Quillan.sqlite";
  writeReferenceJournal(path, GetParam().layout);
  auto context = contextFor(path);
  const auto notes = fetchNotes(*context);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[0]->objectID().primaryKey, 1);
  EXPECT_EQ(notes[1]->objectID().primaryKey, 4) << "keys are not reused after a gap";
  EXPECT_EQ(notes[0]->info(), "First");
  EXPECT_DOUBLE_EQ(notes[1]->date()->timeIntervalSinceReferenceDate(), -31622400);
  ASSERT_TRUE(notes[0]->timelineTab());
  EXPECT_EQ(notes[0]->timelineTab()->name(), "Travel");
  EXPECT_EQ(notes[1]->timelineTab(), nullptr) << "a dangling key reads as no tab";
  const auto images = notes[0]->images();
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0]->order(), 2);
  EXPECT_EQ(images[0]->owner(), notes[0]) << "the owner is the registered live object";
  const auto tabs = context->fetch(TimelineTab::fetchRequest()).value();
  ASSERT_EQ(tabs.size(), 2u);
  EXPECT_EQ(tabs[0]->notes().size(), 1u);
  EXPECT_TRUE(tabs[1]->notes().empty());
  const auto allImages = context->fetch(NoteImage::fetchRequest()).value();
  ASSERT_EQ(allImages.size(), 2u);
  EXPECT_EQ(allImages[1]->owner(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, StoreLayouts,
    ::testing::Values(LayoutCase{"AppLayout", {}},
                      LayoutCase{"RenumberedEntities", layoutWith([](auto& l) { l.extraEntity = true; })},
                      LayoutCase{"ReversedColumns", layoutWith([](auto& l) { l.reversedColumns = true; })},
                      LayoutCase{"AppendedColumns", layoutWith([](auto& l) { l.appendedColumns = true; })},
                      LayoutCase{"HistoryAndMirroringTables", layoutWith([](auto& l) { l.historyTables = true; })},
                      LayoutCase{"HistoryTriggers", layoutWith([](auto& l) {
                                   l.historyTables = true;
                                   l.triggers = true;
                                 })},
                      LayoutCase{"IntegerDates", layoutWith([](auto& l) { l.integerDates = true; })}),
    [](const auto& info) { return std::string(info.param.name); });

// The report a failed load makes, escaped for EXPECT_DEATH's regular expression.
std::string loadFailureReport(const std::string& message) {
  const std::string report = "OnThisDayWidgetExtension/CoreDataStack: Fatal error: Unresolved error " + message;
  return std::regex_replace(report, std::regex(R"([.^$|()\[\]{}*+?\\])"), R"(\$&)");
}

struct FailureCase {
  const char* name;
  void (*prepare)(const std::filesystem::path& store);
  std::string expectedStart;
};

class StoreLoadFailure : public ::testing::TestWithParam<FailureCase> {};

TEST_P(StoreLoadFailure, StopsWithTheUnresolvedErrorReport) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  TemporaryDirectory directory;
  const auto group = directory / "group";
  std::filesystem::create_directories(group);
  const auto store = group / "Quillan.sqlite";
  GetParam().prepare(store);
  platform::FileManager::setGroupContainerDirectory(group);
  platform::FileManager::setApplicationSupportDirectory(directory / "support");
  EXPECT_DEATH(CoreDataStack::makeForTesting()->persistentContainer(), loadFailureReport(GetParam().expectedStart));
}

void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

void corrupt(const std::filesystem::path& path) {
  { fixtures::JournalWriter writer(path); }
  auto contents = readText(path);
  for (std::size_t i = 100; i < contents.size(); ++i) contents[i] = static_cast<char>(0xA5);
  writeText(path, contents);
}

void dropColumn(const std::filesystem::path& path, const char* column) {
  fixtures::JournalWriter writer(path);
  writer.execute(std::string("ALTER TABLE ZNOTE DROP COLUMN ") + column);
}

const std::string kIncompatible =
    "Error Domain=NSCocoaErrorDomain Code=134020 \"The model used to open the store is incompatible with "
    "the one used to create the store.\" UserInfo={NSFilePath=";

INSTANTIATE_TEST_SUITE_P(
    Failures, StoreLoadFailure,
    ::testing::Values(FailureCase{"NotSQLite", [](const auto& p) { writeText(p, std::string(4096, 'x')); },
                                  "Error Domain=NSCocoaErrorDomain Code=259 \"The file \"Quillan.sqlite\" couldn't be "
                                  "opened because it isn't in the correct format.\""},
                      FailureCase{"Corrupt", corrupt, "Error Domain=NSCocoaErrorDomain Code=259"},
                      FailureCase{"NoNoteEntity",
                                  [](const auto& p) {
                                    fixtures::JournalWriter writer(p);
                                    writer.execute("DELETE FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'");
                                  },
                                  kIncompatible},
                      FailureCase{"NoDateColumn", [](const auto& p) { dropColumn(p, "ZDATE"); }, kIncompatible},
                      FailureCase{"NoInfoColumn", [](const auto& p) { dropColumn(p, "ZINFO"); }, kIncompatible}),
    [](const auto& info) { return std::string(info.param.name); });

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
