#include "hosting/RemovalOnSignal.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace quillan::hosting::RemovalOnSignal {
namespace {

// SIGABRT too: the extension's fatal stops end the process with abort().
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGABRT};

// The handler wakes the remover through one pipe and waits on the other until
// the folders are gone: write() and poll() are async-signal-safe, and the
// interrupted thread (the main one, see passedToMainThread) creates nothing in
// a folder meanwhile.
int wakePipe[2] = {-1, -1};
int donePipe[2] = {-1, -1};
pid_t owner = 0;

sigset_t removalSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kSignals) sigaddset(&set, signal);
  return set;
}

std::mutex& registryMutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<std::filesystem::path>& registry() {
  static std::vector<std::filesystem::path> folders;
  return folders;
}

// The registry's lock, taken with the signals held off in this thread: the
// handler must never wait for a remover that waits for this lock.
class RegistryLock {
 public:
  RegistryLock() {
    const auto signals = removalSignals();
    pthread_sigmask(SIG_BLOCK, &signals, &previous_);
    registryMutex().lock();
  }
  ~RegistryLock() {
    registryMutex().unlock();
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
  }
  RegistryLock(const RegistryLock&) = delete;
  RegistryLock& operator=(const RegistryLock&) = delete;

 private:
  sigset_t previous_;
};

void removeFolder(const std::filesystem::path& folder) {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

// Long enough for any removal; a remover stuck on a lock the interrupted
// thread holds must not keep the process from ending.
constexpr int kRemovalWaitMilliseconds = 10'000;

// The main thread is the one that makes folders and files in them: a signal
// the kernel gave another thread is passed to it, so that it is held in this
// handler while its folders are removed instead of making them again. An
// abort() is the calling thread's own and ends the process once its handler
// returns, so that thread waits for the removal itself.
bool passedToMainThread(int signal) {
  const pid_t process = ::getpid();
  if (signal == SIGABRT || static_cast<pid_t>(::syscall(SYS_gettid)) == process) return false;
  return ::syscall(SYS_tgkill, process, process, signal) == 0;
}

void onSignal(int signal) {
  const int savedErrno = errno;
  // A forked child has its parent's handlers but not the remover: it ends as
  // it would have without them.
  if (::getpid() == owner && passedToMainThread(signal)) {
    errno = savedErrno;
    return;
  }
  if (::getpid() == owner) {
    const auto byte = static_cast<unsigned char>(signal);
    if (::write(wakePipe[1], &byte, 1) == 1) {
      pollfd done{donePipe[0], POLLIN, 0};
      while (::poll(&done, 1, kRemovalWaitMilliseconds) < 0 && errno == EINTR) {
      }
    }
  }
  // Raised while it is blocked in this handler, the signal ends the process
  // with its default action as soon as the handler returns.
  ::signal(signal, SIG_DFL);
  ::raise(signal);
  errno = savedErrno;
}

void removeAll() {
  {
    const std::lock_guard lock(registryMutex());
    for (const auto& folder : registry()) removeFolder(folder);
  }
  const unsigned char done = 1;
  [[maybe_unused]] const auto written = ::write(donePipe[1], &done, 1);
}

// Set by the remover once it runs. Its start is waited for: a thread still
// starting may hold the sanitizers' allocator lock, and a process forked
// then (the command's workers are forked right after their scratch folder is
// made) would wait on that lock for good.
std::mutex startMutex;
std::condition_variable started;
bool running = false;

void waitForSignals() {
  {
    const std::lock_guard lock(startMutex);
    running = true;
  }
  started.notify_one();
  for (;;) {
    unsigned char byte = 0;
    const auto count = ::read(wakePipe[0], &byte, 1);
    if (count == 1) removeAll();
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
  }
}

void installOnce() {
  static const bool installed = [] {
    if (::pipe2(wakePipe, O_CLOEXEC) != 0 || ::pipe2(donePipe, O_CLOEXEC) != 0) {
      throw std::runtime_error(std::string("cannot watch for signals: ") + std::strerror(errno));
    }
    owner = ::getpid();
    // Signals go to the other threads, whose handler wakes this one: it starts
    // with them blocked, for a handler run here would wait for itself.
    sigset_t all, previous;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &previous);
    std::thread(waitForSignals).detach();
    {
      std::unique_lock lock(startMutex);
      started.wait(lock, [] { return running; });
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    struct sigaction action {};
    action.sa_handler = onSignal;
    // One removal at a time: a second signal waits until the first has ended the process.
    action.sa_mask = removalSignals();
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
    return true;
  }();
  (void)installed;
}

}  // namespace

std::filesystem::path registerCreated(const std::function<std::filesystem::path()>& create) {
  installOnce();
  const RegistryLock lock;
  auto folder = create();
  registry().push_back(folder);
  return folder;
}

void removeNow(const std::filesystem::path& folder) {
  const RegistryLock lock;
  removeFolder(folder);
  auto& folders = registry();
  folders.erase(std::remove(folders.begin(), folders.end(), folder), folders.end());
}

}  // namespace quillan::hosting::RemovalOnSignal
