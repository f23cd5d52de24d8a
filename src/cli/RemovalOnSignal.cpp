#include "cli/RemovalOnSignal.hpp"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quillan::cli::RemovalOnSignal {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

// Written by the handler, read by the remover: a handler may only do what is
// async-signal-safe, and write() is.
int wakePipe[2] = {-1, -1};
pid_t owner = 0;

std::mutex& registryMutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<std::filesystem::path>& registry() {
  static std::vector<std::filesystem::path> folders;
  return folders;
}

void removeFolder(const std::filesystem::path& folder) {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

void onSignal(int signal) {
  const int savedErrno = errno;
  if (::getpid() != owner) {
    // A forked child has its parent's handlers but not the remover: it ends
    // as it would have without them.
    ::signal(signal, SIG_DFL);
    ::raise(signal);
  } else {
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const auto written = ::write(wakePipe[1], &byte, 1);
  }
  errno = savedErrno;
}

[[noreturn]] void removeAllThenEndBy(int signal) {
  // Held until the end: nothing is created or removed meanwhile.
  registryMutex().lock();
  for (const auto& folder : registry()) removeFolder(folder);
  ::signal(signal, SIG_DFL);
  ::kill(::getpid(), signal);
  // The signal may be blocked in this thread only; another one takes it.
  for (;;) ::pause();
}

void waitForSignals() {
  // Signals go to the other threads, whose handler wakes this one.
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
  for (;;) {
    unsigned char byte = 0;
    const auto count = ::read(wakePipe[0], &byte, 1);
    if (count == 1) removeAllThenEndBy(byte);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
  }
}

void installOnce() {
  static const bool installed = [] {
    if (::pipe2(wakePipe, O_CLOEXEC) != 0) {
      throw std::runtime_error(std::string("cannot watch for signals: ") + std::strerror(errno));
    }
    owner = ::getpid();
    std::thread(waitForSignals).detach();
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
    return true;
  }();
  (void)installed;
}

}  // namespace

std::filesystem::path registerCreated(const std::function<std::filesystem::path()>& create) {
  installOnce();
  const std::lock_guard lock(registryMutex());
  auto folder = create();
  registry().push_back(folder);
  return folder;
}

void removeNow(const std::filesystem::path& folder) {
  const std::lock_guard lock(registryMutex());
  removeFolder(folder);
  auto& folders = registry();
  folders.erase(std::remove(folders.begin(), folders.end(), folder), folders.end());
}

}  // namespace quillan::cli::RemovalOnSignal
