// A kept file is what the path names now, and reading it never takes the
// POSIX locks that another descriptor of this process holds on it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <string>

#include "store/JournalFileState.hpp"
#include "store/KeptFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::store {
namespace {

std::string contentsOf(const KeptFile& file) {
  char bytes[16] = {};
  const auto got = pread(file.fd(), bytes, sizeof bytes, 0);
  return got > 0 ? std::string(bytes, static_cast<std::size_t>(got)) : std::string();
}

// Whether another process would find `path` write-locked (a process never
// sees its own locks).
bool lockedForOthers(const std::filesystem::path& path) {
  const pid_t child = fork();
  if (child == 0) {
    const int fd = open(path.c_str(), O_RDWR);
    struct flock probe {};
    probe.l_type = F_WRLCK;
    probe.l_whence = SEEK_SET;
    _exit(fd >= 0 && fcntl(fd, F_GETLK, &probe) == 0 && probe.l_type != F_UNLCK ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(KeptFile, FollowsThePathAndLeavesTheProcesssLocksInPlace) {
  quillan::testing::TemporaryFolder folder("quillan-kept");
  const auto path = folder / "Quillan.sqlite";
  std::ofstream(path) << "first";
  const int connection = open(path.c_str(), O_RDWR);  // as a connection of this process holds it
  struct flock lock {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  ASSERT_EQ(fcntl(connection, F_SETLK, &lock), 0);

  KeptFile file;
  struct stat status {};
  const struct {
    const char* change;
    std::function<void(const std::filesystem::path&)> apply;
    const char* contents;
    bool sameFile;  // still the file the process holds its lock on
  } changes[] = {
      {"none", [](const std::filesystem::path&) {}, "first", true},
      // Through the connection's own descriptor: closing any other one would release its lock.
      {"written in place", [&](const std::filesystem::path&) { ASSERT_EQ(pwrite(connection, "+", 1, 5), 1); }, "first+",
       true},
      {"replaced by rename",
       [](const std::filesystem::path& at) {
         std::ofstream(at.string() + ".new") << "second";
         std::filesystem::rename(at.string() + ".new", at);
       },
       "second", false},
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(change.change);
    change.apply(path);
    ASSERT_TRUE(file.follow(path, status));
    EXPECT_EQ(contentsOf(file), change.contents);
    EXPECT_EQ(status.st_size, static_cast<off_t>(std::string(change.contents).size()));
    EXPECT_EQ(lockedForOthers(path), change.sameFile);
    // The journal's state is read through kept files too.
    EXPECT_TRUE(journalFileState(path));
    EXPECT_EQ(lockedForOthers(path), change.sameFile);
  }
  std::filesystem::remove(path);
  EXPECT_FALSE(file.follow(path, status));
  close(connection);
}

}  // namespace
}  // namespace quillan::store
