#pragma once

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "fixtures/JournalWriter.hpp"
#include "platform/URL.hpp"
#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"
#include "support/FileContents.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::store::testing {

using TemporaryDirectory = quillan::testing::TemporaryFolder;
using quillan::testing::readText;

// The replay's suite reads journals under this name.
inline std::string fileContents(const std::filesystem::path& path) { return readText(path); }

// A context reading the journal at `path` through its own coordinator.
inline std::shared_ptr<ManagedObjectContext> contextFor(const std::filesystem::path& path) {
  auto coordinator = std::make_shared<PersistentStoreCoordinator>();
  auto loaded = coordinator->addPersistentStore(platform::URL::fileURL(path), kSQLiteStoreType);
  EXPECT_TRUE(loaded.ok()) << (loaded.ok() ? "" : loaded.error().description());
  return std::make_shared<ManagedObjectContext>(coordinator);
}

inline std::vector<std::shared_ptr<Note>> fetchNotes(ManagedObjectContext& context) {
  auto result = context.fetch(Note::fetchRequest());
  EXPECT_TRUE(result.ok()) << (result.ok() ? "" : result.error().description());
  return result.ok() ? result.value() : std::vector<std::shared_ptr<Note>>{};
}

inline fixtures::Bytes bytes(std::initializer_list<int> values) {
  fixtures::Bytes out;
  for (int value : values) out.push_back(static_cast<std::uint8_t>(value));
  return out;
}

// Runs `check` in a child process without root's powers: as nobody when the
// tests run as root (as CI does), else as the current user. The child's exit
// status is 0 when `check` answers true, 1 when false, 3 when privileges could
// not be dropped; 128 + N when signal N ended it.
inline int runUnprivileged(const std::function<bool()>& check) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = ::fork();
  if (child == 0) {
    if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) {
      ::_exit(3);
    }
    ::_exit(check() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

inline platform::Date referenceDate(double seconds) { return platform::Date::fromReferenceSeconds(seconds); }

}  // namespace quillan::store::testing
