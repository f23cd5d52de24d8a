#include "host/JournalWatcher.hpp"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <stdexcept>

#include "host/JournalCommitMark.hpp"

namespace quillan::host {
namespace {

// Only writes count: a connection of the extension that opens the journal for
// writing (the legacy move's check) creates an empty WAL and deletes it again
// on close, which is no commit; a commit always writes the WAL or, after a
// checkpoint, the journal itself. A journal moved into place is a new one.
constexpr std::uint32_t kWatchedEvents = IN_MODIFY | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
// Above a missing folder only its coming back matters; the folder above may go too.
constexpr std::uint32_t kAncestorEvents = IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
// The folder's watch no longer watches the folder: it was removed, or moved
// away (the watch would follow it to its new name).
constexpr std::uint32_t kFolderGone = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED;

enum class Ready { changes, stop, timeout };

Ready waitFor(int inotify, int stop, std::optional<std::chrono::nanoseconds> timeout) {
  pollfd fds[2] = {{inotify, POLLIN, 0}, {stop, POLLIN, 0}};
  timespec waited{};
  if (timeout) {
    const auto nanoseconds = std::max(timeout->count(), std::chrono::nanoseconds::rep{0});
    waited = {static_cast<time_t>(nanoseconds / 1'000'000'000), static_cast<long>(nanoseconds % 1'000'000'000)};
  }
  while (true) {
    const int ready = ppoll(fds, 2, timeout ? &waited : nullptr, nullptr);
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return Ready::timeout;
    if (fds[1].revents != 0) return Ready::stop;
    return Ready::changes;
  }
}

}  // namespace

JournalWatcher::JournalWatcher(const std::filesystem::path& journal, std::function<void()> committed, Timing timing)
    : folder_(journal.parent_path().empty() ? std::filesystem::path(".") : journal.parent_path()),
      journal_(folder_ / journal.filename()),
      journalName_(journal.filename().string()),
      walName_(journalName_ + "-wal"),
      committed_(std::move(committed)),
      timing_(timing) {
  inotify_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  stop_ = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (inotify_ >= 0) folderWatch_ = inotify_add_watch(inotify_, folder_.c_str(), kWatchedEvents | IN_ONLYDIR);
  if (inotify_ < 0 || stop_ < 0 || folderWatch_ < 0) {
    const std::string reason = std::strerror(errno);
    if (inotify_ >= 0) close(inotify_);
    if (stop_ >= 0) close(stop_);
    throw std::runtime_error("cannot watch " + folder_.string() + ": " + reason);
  }
  thread_ = std::thread([this] { run(); });
}

JournalWatcher::~JournalWatcher() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(stop_, &one, sizeof one);
  thread_.join();
  close(inotify_);
  close(stop_);
}

void JournalWatcher::run() {
  using Clock = CommitDebounce::Clock;
  JournalCommitMarkReader marks(journal_);
  CommitDebounce debounce(timing_, marks.read());
  while (true) {
    const auto now = Clock::now();
    std::optional<std::chrono::nanoseconds> timeout;
    if (const auto next = debounce.nextCheck(now)) timeout = *next - now;
    const auto ready = waitFor(inotify_, stop_, timeout);
    if (ready == Ready::stop) return;
    const auto at = Clock::now();
    // Read even on a timeout: a write that came as the wait ended belongs to
    // this burst, not to the next one, which would reload its commit again.
    if (readChanges()) debounce.written(at);
    if (debounce.pending() && debounce.reloadDue(at, marks.read())) committed_();
  }
}

bool JournalWatcher::readChanges() {
  alignas(inotify_event) char buffer[8192];
  bool journalChanged = false;
  bool rearming = false;
  while (true) {
    const auto length = read(inotify_, buffer, sizeof buffer);
    if (length <= 0) break;
    for (char* at = buffer; at < buffer + length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      at += sizeof(inotify_event) + event->len;
      if (event->wd == ancestorWatch_) {
        rearming = true;
        continue;
      }
      if (event->wd != folderWatch_) continue;
      if ((event->mask & kFolderGone) != 0) {
        rearming = true;
        continue;
      }
      const std::string name = event->len > 0 ? event->name : "";
      if (name == journalName_ || name == walName_) journalChanged = true;
    }
  }
  if (rearming && rearm()) journalChanged = true;
  return journalChanged;
}

void JournalWatcher::unwatch(int& watch) {
  if (watch >= 0) inotify_rm_watch(inotify_, watch);
  watch = -1;
}

bool JournalWatcher::rearm() {
  unwatch(folderWatch_);
  unwatch(ancestorWatch_);
  // The folder above is watched first, so a folder that comes back between
  // the two calls is not missed.
  for (auto above = folder_.parent_path(); ancestorWatch_ < 0 && !above.empty(); above = above.parent_path()) {
    ancestorWatch_ = inotify_add_watch(inotify_, above.c_str(), kAncestorEvents);
    if (above == above.root_path()) break;
  }
  folderWatch_ = inotify_add_watch(inotify_, folder_.c_str(), kWatchedEvents | IN_ONLYDIR);
  if (folderWatch_ < 0) return false;
  unwatch(ancestorWatch_);
  // What was written before the watch was in place is seen only here.
  std::error_code error;
  return std::filesystem::exists(journal_, error);
}

}  // namespace quillan::host
