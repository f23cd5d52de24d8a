#include "worker/NoteDatesKeeper.hpp"

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "platform/FileManager.hpp"
#include "store/CoreDataStack.hpp"
#include "store/DateColumnRead.hpp"
#include "store/Note.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/WholeWrite.hpp"

namespace quillan::worker {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void runReadingChild(const std::filesystem::path& journal, int out, int closeInChild) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (closeInChild >= 0) close(closeInChild);
  try {
    // The attribute the widgets judge notes by (store/NoteDateFilter.hpp).
    if (const auto read = store::DateColumnRead::read(journal, store::Note::entityDescription().name, "date")) {
      writeWhole(out, read->encode());
    }
  } catch (...) {
    // No read: the evaluations scan the table, and report what fails there.
  }
  close(out);
  _exit(0);
}

// Everything the child writes until it closes the pipe, or nullopt past the deadline.
std::optional<std::string> readUntilClosed(int fd, Clock::time_point deadline) {
  std::string bytes;
  char buffer[65536];
  while (true) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return std::nullopt;
    pollfd waiting{fd, POLLIN, 0};
    if (poll(&waiting, 1, static_cast<int>(left)) <= 0) continue;
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got == 0) return bytes;
    if (got < 0 && errno != EINTR) return std::nullopt;
    if (got > 0) bytes.append(buffer, static_cast<std::size_t>(got));
  }
}

std::optional<store::DateColumnRead> readInChild(const std::filesystem::path& journal, int closeInChild,
                                                 std::chrono::milliseconds deadline) {
  int pipe[2];
  if (pipe2(pipe, O_CLOEXEC) != 0) return std::nullopt;
  const auto started = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    close(pipe[0]);
    runReadingChild(journal, pipe[1], closeInChild);
  }
  close(pipe[1]);
  if (child < 0) {
    close(pipe[0]);
    return std::nullopt;
  }
  auto bytes = readUntilClosed(pipe[0], started + deadline);
  close(pipe[0]);
  if (!bytes) kill(child, SIGKILL);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!bytes || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  return store::DateColumnRead::decode(*bytes);
}

// Hands back to the system the pages a replaced read and the buffers it came
// through leave free: every evaluation forks this process, and each page it
// keeps is one more to map into the child and to copy on the first write.
void useRead(std::shared_ptr<const store::DateColumnRead> read) {
  store::useKnownDateColumn(std::move(read));
  malloc_trim(0);
}

}  // namespace

std::filesystem::path journalOfRequest(const nlohmann::json& request) {
  const auto settings = processSettingsFromJson(request.value("settings", nlohmann::json::object()));
  if (settings.groupContainer) return *settings.groupContainer / store::kStoreFileName;
  const auto container = platform::FileManager::containerURL(store::kAppGroupIdentifier);
  return container ? container->filePath() / store::kStoreFileName : std::filesystem::path();
}

void NoteDatesKeeper::refreshFor(const nlohmann::json& request, int closeInChild) {
  // Timelines judge no note: a commit the live host reloads them for would
  // otherwise wait for a read none of them uses. The views read it.
  if (!request.is_object() || request.value("type", "") != "view") return;
  try {
    const auto journal = journalOfRequest(request);
    if (!journal.empty()) return refresh(journal, closeInChild);
  } catch (const std::exception&) {
    // A malformed request: the evaluation reports it.
  }
  store::useKnownDateColumn(nullptr);
}

void NoteDatesKeeper::hear(const JournalWriteNotice& notice) {
  const auto& known = store::knownDateColumn();
  const auto state = store::journalFileState(notice.journal);
  const bool current = known && state && known->journal() == notice.journal && known->state() == *state;
  if (notice.stage == JournalWriteNotice::Stage::begins) {
    currentAsWriteBegan_ = current ? notice.journal : std::filesystem::path();
    return;
  }
  const bool wasCurrent = currentAsWriteBegan_ == notice.journal;
  currentAsWriteBegan_.clear();
  if (!wasCurrent || !known || !state || known->journal() != notice.journal) return;
  if (auto grown = known->withRowsAdded(notice.rowsAdded, *state)) {
    useRead(std::make_shared<const store::DateColumnRead>(std::move(*grown)));
  }
}

void NoteDatesKeeper::refresh(const std::filesystem::path& journal, int closeInChild) {
  const auto state = store::journalFileState(journal);
  const auto& known = store::knownDateColumn();
  if (known && state && known->journal() == journal && known->state() == *state) return;
  store::useKnownDateColumn(nullptr);
  // A journal that could not be read in this state is not tried again until it changes.
  if (!state || (failedJournal_ == journal && failedState_ == *state)) return;
  if (auto read = readInChild(journal, closeInChild, deadline_)) {
    useRead(std::make_shared<const store::DateColumnRead>(std::move(*read)));
    return;
  }
  failedJournal_ = journal;
  failedState_ = *state;
}

}  // namespace quillan::worker
