#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "fixtures/JournalWriter.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/URL.hpp"
#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"
#include "store/NoteDateFilter.hpp"
#include "store/PersistentContainer.hpp"
#include "support/FileContents.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/Unprivileged.hpp"

namespace quillan::store::testing {

using TemporaryDirectory = quillan::testing::TemporaryFolder;
using quillan::testing::readText;
using quillan::testing::runUnprivileged;

// A context reading the journal at `path` through its own coordinator.
inline std::shared_ptr<ManagedObjectContext> contextFor(const std::filesystem::path& path) {
  auto coordinator = std::make_shared<PersistentStoreCoordinator>();
  auto loaded = coordinator->addPersistentStore(platform::URL::fileURL(path), kSQLiteStoreType);
  EXPECT_TRUE(loaded.ok()) << (loaded.ok() ? "" : loaded.error().description());
  return std::make_shared<ManagedObjectContext>(coordinator);
}

// Every object of one entity, in the store's order.
template <typename Object>
std::vector<std::shared_ptr<Object>> fetchAll(ManagedObjectContext& context) {
  auto result = context.fetch(Object::fetchRequest());
  EXPECT_TRUE(result.ok()) << (result.ok() ? "" : result.error().description());
  return result.ok() ? result.value() : std::vector<std::shared_ptr<Object>>{};
}

inline std::vector<std::shared_ptr<Note>> fetchNotes(ManagedObjectContext& context) { return fetchAll<Note>(context); }

// How a judged read of the notes' dates is narrowed: by a window around a day, by ranges, or not.
using NoteDateNarrowing = std::variant<std::monostate, NoteDateWindow, KeepRanges>;

inline std::vector<std::shared_ptr<Note>> narrowed(ManagedObjectContext& context, const NoteDateTest& keep,
                                                   const NoteDateNarrowing& narrowing = {}) {
  const auto result = std::visit(
      [&](const auto& by) {
        if constexpr (std::is_same_v<decltype(by), const std::monostate&>) return fetchNotesWhereDate(context, keep);
        else return fetchNotesWhereDate(context, by, keep);
      },
      narrowing);
  EXPECT_TRUE(result.ok());
  return result.ok() ? result.value() : std::vector<std::shared_ptr<Note>>{};
}

inline platform::Date referenceDate(double seconds) { return platform::Date::fromReferenceSeconds(seconds); }

inline const platform::Date kMoment = *platform::ISO8601::parse("2026-05-01T12:00:00Z");

// Dates of every storage class, whole seconds among them, inside and outside
// the window around kMoment, the last note undated. The least text and the
// least blob lie at the edges of how SQLite orders storage classes.
inline void writeOddlyDatedJournal(const std::filesystem::path& path) {
  fixtures::JournalWriter writer(path);
  // 2.125 days is the window's reach (51 h): its lower end is inside, its upper end outside.
  for (const double days : {-90.0, 0.0, -80.0, -70.0, -1.0, 1.5, 3.0, 0.25, -2.125, 2.125, -60.0}) {
    writer.addNote({.date = kMoment.addingTimeInterval(days * 86400.0)});
  }
  writer.addNote({.date = std::nullopt});
  writer.execute("UPDATE ZNOTE SET ZDATE = 'soon' WHERE Z_PK = 3");
  writer.execute("UPDATE ZNOTE SET ZDATE = CAST('800000000.5' AS BLOB) WHERE Z_PK = 4");
  writer.execute("UPDATE ZNOTE SET ZDATE = '' WHERE Z_PK = 5");
  writer.execute("UPDATE ZNOTE SET ZDATE = X'' WHERE Z_PK = 11");
  writer.execute("UPDATE ZNOTE SET ZDATE = CAST(ZDATE AS INTEGER) WHERE Z_PK IN (2, 6)");
}

inline void writeJournal(const std::filesystem::path& path, const std::vector<std::string>& infos) {
  fixtures::JournalWriter writer(path);
  for (const auto& info : infos) writer.addNote({.info = info});
}

inline std::vector<std::string> infos(const std::vector<std::shared_ptr<Note>>& notes) {
  std::vector<std::string> out;
  for (const auto& note : notes) out.push_back(note->info().value_or(""));
  return out;
}

inline std::vector<std::string> infos(PersistentContainer& container) {
  return infos(fetchNotes(*container.viewContext()));
}

// The app's two folders, the group container and the legacy "Application
// Support", made the process's own; what the stack logs is kept.
class StoreFolders : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(group());
    std::filesystem::create_directories(support());
    // A child that drops root's powers must still reach the files.
    std::filesystem::permissions(directory_.path(),
                                 std::filesystem::perms::owner_all | std::filesystem::perms::group_read |
                                     std::filesystem::perms::group_exec | std::filesystem::perms::others_read |
                                     std::filesystem::perms::others_exec);
    platform::FileManager::setGroupContainerDirectory(group());
    platform::FileManager::setApplicationSupportDirectory(support());
    platform::ExtensionLog::setSink([this](std::string_view line) { printed_.emplace_back(line); });
  }
  void TearDown() override { platform::ExtensionLog::setSink({}); }

 public:
  std::filesystem::path group() const { return directory_ / "group"; }
  std::filesystem::path support() const { return directory_ / "support"; }
  std::filesystem::path sharedStore() const { return group() / "Quillan.sqlite"; }
  std::filesystem::path legacyStore() const { return support() / "Quillan.sqlite"; }

 protected:
  TemporaryDirectory directory_;
  std::vector<std::string> printed_;
};

}  // namespace quillan::store::testing
