#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "platform/Date.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"

namespace quillan::testing {

// The journal the shared store stack of a test process reads. The stack is built
// once per process, so every test of the process shares this one journal in a
// temporary group container (with an empty application-support folder beside it,
// so no legacy move happens) and clears it first. Fetches read the store afresh,
// so rows written here are seen by the next fetch.
class TestJournal {
 public:
  static TestJournal& shared() {
    static TestJournal journal;
    return journal;
  }

  void clear() { writer_->execute("DELETE FROM ZNOTE; DELETE FROM ZNOTEIMAGE; DELETE FROM ZNOTERECORDING;"); }

  std::int64_t addNote(std::optional<platform::Date> date, std::optional<std::string> info = std::string("note")) {
    return writer_->addNote({.date = date, .info = std::move(info)});
  }
  // `isoDate` with offset, e.g. "2025-11-22T09:00:00+01:00".
  std::int64_t addNote(const std::string& isoDate, std::optional<std::string> info = std::string("note")) {
    return addNote(*platform::ISO8601::parse(isoDate), std::move(info));
  }

  fixtures::JournalWriter& writer() { return *writer_; }
  const std::filesystem::path& groupContainer() const { return groupContainer_; }

 private:
  TestJournal() {
    auto pattern = (std::filesystem::temp_directory_path() / "quillan-test-XXXXXX").string();
    root_ = mkdtemp(pattern.data());
    groupContainer_ = root_ / "group";
    std::filesystem::create_directories(groupContainer_);
    std::filesystem::create_directories(root_ / "support");
    platform::FileManager::setGroupContainerDirectory(groupContainer_);
    platform::FileManager::setApplicationSupportDirectory(root_ / "support");
    writer_ = std::make_unique<fixtures::JournalWriter>(groupContainer_ / "Quillan.sqlite");
  }
  ~TestJournal() {
    writer_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

  std::filesystem::path root_;
  std::filesystem::path groupContainer_;
  std::unique_ptr<fixtures::JournalWriter> writer_;
};

}  // namespace quillan::testing
