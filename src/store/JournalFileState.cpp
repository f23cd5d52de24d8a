#include "store/JournalFileState.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include "store/KeptFile.hpp"

namespace quillan::store {
namespace {

// The main file's header holds the page size, the change counter and the
// schema cookie; a log's header its salts and checksums.
constexpr std::size_t kJournalHeaderBytes = 100;
constexpr std::size_t kLogHeaderBytes = 32;
// The log index keeps two copies of its 48-byte header; a writer changes
// them one after the other, so unequal copies are a commit in progress.
constexpr std::size_t kIndexHeaderBytes = 48;

enum class Presence { present, absent, unreadable };

// Not the change time: every reader that opens an empty log truncates it to
// nothing again, which moves that time and nothing else.
void appendIdentity(std::string& bytes, const struct stat& file) {
  const std::array<std::int64_t, 5> fields{static_cast<std::int64_t>(file.st_dev),
                                           static_cast<std::int64_t>(file.st_ino), file.st_size, file.st_mtim.tv_sec,
                                           file.st_mtim.tv_nsec};
  bytes.append(reinterpret_cast<const char*>(fields.data()), sizeof fields);
}

// The files read here stay open for the life of the process (opened again
// when the path names another file): closing a descriptor would release
// every POSIX lock the process holds on the file, and with them the read
// locks of its own connections to the journal. Callers hold keptFilesGuard.
std::mutex keptFilesGuard;

KeptFile& keptFile(const std::filesystem::path& path) {
  static std::map<std::filesystem::path, std::unique_ptr<KeptFile>> files;
  auto& file = files[path];
  if (!file) file = std::make_unique<KeptFile>();
  return *file;
}

// Opens `path` as a kept file; false, with '-' appended, when it cannot.
bool follow(std::string& bytes, const std::filesystem::path& path, struct stat& file, Presence& missing) {
  if (keptFile(path).follow(path, file)) return true;
  bytes += '-';
  missing = errno == ENOENT ? Presence::absent : Presence::unreadable;
  return false;
}

// Appends the file's identity and its first `headerBytes` bytes (fewer when it is shorter).
Presence appendFile(std::string& bytes, const std::filesystem::path& path, std::size_t headerBytes) {
  struct stat file {};
  Presence missing{};
  if (!follow(bytes, path, file, missing)) return missing;
  std::string header(headerBytes, '\0');
  if (pread(keptFile(path).fd(), header.data(), headerBytes, 0) < 0) return Presence::unreadable;
  bytes += '+';
  appendIdentity(bytes, file);
  bytes += header;
  return Presence::present;
}

Presence appendIndexHeader(std::string& bytes, const std::filesystem::path& path) {
  struct stat file {};
  Presence missing{};
  if (!follow(bytes, path, file, missing)) return missing;
  char copies[2 * kIndexHeaderBytes] = {};
  if (pread(keptFile(path).fd(), copies, sizeof copies, 0) < 0) return Presence::unreadable;
  if (std::memcmp(copies, copies + kIndexHeaderBytes, kIndexHeaderBytes) != 0) return Presence::unreadable;
  bytes += '+';
  bytes.append(copies, kIndexHeaderBytes);
  return Presence::present;
}

std::filesystem::path beside(const std::filesystem::path& journal, const char* suffix) {
  return journal.string() + suffix;
}

}  // namespace

std::optional<JournalFileState> journalFileState(const std::filesystem::path& journal) {
  const std::lock_guard<std::mutex> kept(keptFilesGuard);
  JournalFileState state;
  if (appendFile(state.bytes, journal, kJournalHeaderBytes) != Presence::present) return std::nullopt;
  if (appendFile(state.bytes, beside(journal, "-wal"), kLogHeaderBytes) == Presence::unreadable) return std::nullopt;
  if (appendIndexHeader(state.bytes, beside(journal, "-shm")) == Presence::unreadable) return std::nullopt;
  std::error_code error;
  if (std::filesystem::exists(beside(journal, "-journal"), error) || error) return std::nullopt;
  return state;
}

}  // namespace quillan::store
