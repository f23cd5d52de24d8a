#include "snapshot/CaseWorkers.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>

#include "hosting/BoundedFile.hpp"
#include "hosting/ScratchFolder.hpp"
#include "hosting/WorkerPool.hpp"
#include "snapshot/CaseAnswer.hpp"

namespace quillan::snapshot {
namespace {

// What a case writes on standard error (a fatal error's reason, a library's
// warning) goes to a file of its own while it is drawn, for the command to
// print at the case's turn: two workers' lines never interleave, and a worker
// that dies leaves its reason for the command to print.
class HeldErrors {
 public:
  explicit HeldErrors(const std::filesystem::path& file) : file_(file), saved_(::dup(STDERR_FILENO)) {
    const int held = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (held >= 0) ::dup2(held, STDERR_FILENO), ::close(held);
  }

  std::string release() {
    std::fflush(stderr);
    ::dup2(saved_, STDERR_FILENO);
    ::close(saved_);
    auto text = heldIn(file_);
    std::filesystem::remove(file_);
    return text;
  }

  static std::string heldIn(const std::filesystem::path& file) {
    try {
      return hosting::readBoundedFile(file, kLimit);
    } catch (const hosting::BoundedFileError&) {
      return {};
    }
  }

 private:
  static constexpr std::uintmax_t kLimit = 16 * 1024 * 1024;
  std::filesystem::path file_;
  int saved_;
};

std::string withErrors(const std::string& errors, const std::string& answer) {
  const std::uint64_t length = errors.size();
  return std::string(reinterpret_cast<const char*>(&length), sizeof length) + errors + answer;
}

// Through stdio, as the case itself wrote them: std::cerr would first flush
// what the command has yet to print on standard output.
void printHeld(std::string_view errors) { std::fwrite(errors.data(), 1, errors.size(), stderr); }

// Prints the held errors and returns the answer after them.
std::string_view printErrors(std::string_view held) {
  std::uint64_t length = 0;
  std::memcpy(&length, held.data(), sizeof length);
  printHeld(held.substr(sizeof length, length));
  return held.substr(sizeof length + length);
}

// Stdio's buffers are left as the worker's end would have left them in
// process: an abort flushes nothing, an exit everything.
[[noreturn]] void endAsTheWorkerDid(int waitStatus) {
  if (WIFSIGNALED(waitStatus)) {
    std::signal(WTERMSIG(waitStatus), SIG_DFL);
    std::raise(WTERMSIG(waitStatus));
  }
  std::exit(WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 1);
}

// A worker meets a new script's fonts with nearly every few locales and keeps
// them: the cases of one locale go to one worker, each worker taking a run of
// the matrix's locales, so that no two load the same fonts.
hosting::WorkerPool::ShareOf shareByLocale(const std::vector<SnapshotCase>& cases, std::size_t jobs) {
  std::map<std::string, std::size_t> localeIndex;
  for (const auto& snapshotCase : cases) localeIndex.emplace(snapshotCase.locale, localeIndex.size());
  const std::size_t workers = std::max<std::size_t>(1, std::min(jobs, cases.size()));
  return [&cases, localeIndex, workers](std::size_t i) {
    return localeIndex.at(cases[i].locale) * workers / localeIndex.size();
  };
}

// The status of the worker that stopped, if one did, after printing what it said.
std::optional<int> runHeld(std::size_t jobs, const std::vector<SnapshotCase>& cases, const CaseWorkers::Work& work,
                           const CaseWorkers::Deliver& deliver) {
  const hosting::ScratchFolder scratch("quillan-snapshot");
  const auto heldFile = [&scratch](std::size_t i) { return scratch.path() / std::to_string(i); };
  try {
    hosting::WorkerPool::run(
        "snapshot", jobs, cases.size(),
        [&](std::size_t i) {
          HeldErrors held(heldFile(i));
          const auto answer = answerOf([&] { return work(cases[i]); });
          return withErrors(held.release(), answer);
        },
        [&](std::size_t i, const std::string& output) { deliver(cases[i], resultOf(printErrors(output))); },
        {.shareOf = shareByLocale(cases, jobs)});
  } catch (const hosting::WorkerStopped& stopped) {
    printHeld(HeldErrors::heldIn(heldFile(stopped.chunk)));
    return stopped.waitStatus;
  }
  return std::nullopt;
}

}  // namespace

void CaseWorkers::run(std::size_t jobs, const std::vector<SnapshotCase>& cases, const Work& work,
                      const Deliver& deliver) {
  if (cases.empty()) return;
  if (const auto stopped = runHeld(jobs, cases, work, deliver)) endAsTheWorkerDid(*stopped);
}

}  // namespace quillan::snapshot
