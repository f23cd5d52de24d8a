#include "host/JournalCommitMark.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace quillan::host {
namespace {

constexpr std::size_t kJournalHeaderBytes = 100;
constexpr char kJournalMagic[] = "SQLite format 3";  // with its terminating zero: 16 bytes
constexpr std::size_t kPageSizeOffset = 16;
constexpr std::size_t kChangeCounterOffset = 24;
constexpr std::size_t kPageCountOffset = 28;
constexpr std::size_t kValidForOffset = 92;
// The index keeps two copies of its 48-byte header; a writer changes them
// one after the other, so unequal copies are a commit being finished.
constexpr std::size_t kIndexHeaderBytes = 48;
// The header's "initialised" flag: zero in an index being made or rebuilt.
constexpr std::size_t kIndexInitialisedByte = 12;
// The header's count of committed frames in the log, in the machine's order.
constexpr std::size_t kIndexFramesOffset = 16;

template <std::size_t N>
void appendFields(std::string& bytes, const std::array<std::int64_t, N>& fields) {
  bytes.append(reinterpret_cast<const char*>(fields.data()), sizeof fields);
}

std::filesystem::path beside(const std::filesystem::path& journal, const char* suffix) {
  return journal.string() + suffix;
}

// `empty`: the index says the log holds no commit, so the main file alone is
// the journal, as when there is no index. A reader that opens the journal
// after the app closed it makes such an index, and that is no commit.
enum class Index { absent, empty, finished, unusable };

// Reads the index's header into `header` when it holds a finished commit.
Index readIndexHeader(const std::filesystem::path& path, store::KeptFile& index, std::string& header) {
  struct stat status {};
  if (!index.follow(path, status)) return errno == ENOENT ? Index::absent : Index::unusable;
  char copies[2 * kIndexHeaderBytes] = {};
  const auto got = pread(index.fd(), copies, sizeof copies, 0);
  if (got != static_cast<ssize_t>(sizeof copies)) return Index::unusable;
  if (std::memcmp(copies, copies + kIndexHeaderBytes, kIndexHeaderBytes) != 0) return Index::unusable;
  if (copies[kIndexInitialisedByte] == 0) return Index::unusable;
  std::uint32_t frames = 0;
  std::memcpy(&frames, copies + kIndexFramesOffset, sizeof frames);
  if (frames == 0) return Index::empty;
  header.assign(copies, kIndexHeaderBytes);
  return Index::finished;
}

std::uint32_t bigEndian(const std::string& bytes, std::size_t offset, std::size_t width) {
  std::uint32_t value = 0;
  for (std::size_t index = 0; index < width; ++index) {
    value = (value << 8) | static_cast<unsigned char>(bytes[offset + index]);
  }
  return value;
}

// A journal written in place (copied over, restored) is whole once it is as
// long as its header says; the header's page count is trusted only when it
// was written with the change counter it names.
bool looksWhole(const std::string& header, std::int64_t size) {
  if (header.compare(0, sizeof kJournalMagic, kJournalMagic, sizeof kJournalMagic) != 0) return false;
  if (bigEndian(header, kValidForOffset, 4) != bigEndian(header, kChangeCounterOffset, 4)) return true;
  const std::uint32_t pageSize = bigEndian(header, kPageSizeOffset, 2);
  const std::int64_t bytesPerPage = pageSize == 1 ? 65536 : pageSize;
  return size == bytesPerPage * bigEndian(header, kPageCountOffset, 4);
}

}  // namespace

bool committedSince(const JournalCommitMark& earlier, const JournalCommitMark& later) {
  if (earlier.file != later.file) return true;
  if (earlier.inLog && !later.inLog) return false;
  return earlier != later;
}

JournalCommitMarkReader::JournalCommitMarkReader(std::filesystem::path journal)
    : journal_(std::move(journal)), index_(beside(journal_, "-shm")), rollbackJournal_(beside(journal_, "-journal")) {}

std::optional<JournalCommitMark> JournalCommitMarkReader::read() {
  struct stat file {};
  if (!main_.follow(journal_, file)) return std::nullopt;
  struct stat rollback {};
  if (stat(rollbackJournal_.c_str(), &rollback) == 0 || errno != ENOENT) return std::nullopt;
  JournalCommitMark mark;
  appendFields(mark.file, std::array<std::int64_t, 2>{static_cast<std::int64_t>(file.st_dev),
                                                      static_cast<std::int64_t>(file.st_ino)});
  switch (readIndexHeader(index_, indexFile_, mark.lastCommit)) {
    case Index::finished: mark.inLog = true; return mark;
    case Index::unusable: return std::nullopt;
    case Index::absent:
    case Index::empty: break;
  }
  std::string header(kJournalHeaderBytes, '\0');
  if (pread(main_.fd(), header.data(), header.size(), 0) < 0) return std::nullopt;
  if (!looksWhole(header, file.st_size)) return std::nullopt;
  appendFields(mark.lastCommit, std::array<std::int64_t, 3>{file.st_size, file.st_mtim.tv_sec, file.st_mtim.tv_nsec});
  mark.lastCommit += header;
  return mark;
}

}  // namespace quillan::host
