#include "hosting/WorkerPool.hpp"

#include <poll.h>
#include <signal.h>
#include <stdio_ext.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <deque>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

namespace quillan::hosting {

namespace {

// A chunk's number going down, and a length-prefixed answer coming back.
using ChunkNumber = std::uint64_t;

bool writeAll(int fd, const void* data, std::size_t size) {
  const auto* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = ::write(fd, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

bool readAll(int fd, void* data, std::size_t size) {
  auto* bytes = static_cast<char*>(data);
  while (size > 0) {
    const ssize_t got = ::read(fd, bytes, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    bytes += got;
    size -= static_cast<std::size_t>(got);
  }
  return true;
}

[[noreturn]] void serveChunks(const std::string& name, int tasks, int answers, const WorkerPool::Work& work) {
  try {
    ChunkNumber chunk = 0;
    while (readAll(tasks, &chunk, sizeof chunk)) {
      const std::string output = work(static_cast<std::size_t>(chunk));
      const std::uint64_t length = output.size();
      if (!writeAll(answers, &length, sizeof length) || !writeAll(answers, output.data(), output.size())) _exit(1);
    }
    _exit(0);
  } catch (const std::exception& error) {
    std::cerr << "quillan-widgets: " << name << " worker: " << error.what() << "\n";
    _exit(1);
  }
}

struct PoolWorker {
  pid_t pid = -1;
  int tasks = -1;
  int answers = -1;
  std::string received;  // what has come of the current answer
  std::optional<std::size_t> chunk;
  std::size_t served = 0;
};

// The waitpid status of a worker that is gone, or nothing if it vanished.
std::optional<int> statusOnceStopped(pid_t pid) {
  int status = 0;
  if (waitpid(pid, &status, 0) != pid) return std::nullopt;
  return status;
}

std::string howItStopped(std::optional<int> status) {
  if (!status) return "vanished";
  if (WIFSIGNALED(*status)) return std::string("was killed by signal ") + strsignal(WTERMSIG(*status));
  return "exited with status " + std::to_string(WEXITSTATUS(*status));
}

// What the kernel counts as the process's resident memory (0 if it is gone).
std::size_t residentBytes(pid_t pid) {
  std::ifstream statm("/proc/" + std::to_string(pid) + "/statm");
  std::size_t pages = 0;
  std::size_t resident = 0;
  if (!(statm >> pages >> resident)) return 0;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// The chunks not handed out yet, by share: the earliest of a worker's own
// share (unless asked for the earliest of all), else the earliest left of
// any, and only those before `limit`.
class ChunkQueue {
 public:
  ChunkQueue() = default;
  ChunkQueue(std::size_t chunks, std::size_t shares, const WorkerPool::ShareOf& shareOf) : queues_(shares) {
    for (std::size_t chunk = 0; chunk < chunks; ++chunk)
      queues_[shareOf ? std::min(shareOf(chunk), shares - 1) : 0].push_back(chunk);
  }

  std::optional<std::size_t> next(std::size_t share, std::size_t limit, bool earliestOfAll) {
    auto* queue = &queues_[std::min(share, queues_.size() - 1)];
    if (earliestOfAll || !startsBelow(*queue, limit)) queue = earliest(limit);
    if (!queue) return std::nullopt;
    const auto chunk = queue->front();
    queue->pop_front();
    return chunk;
  }

  bool anyBelow(std::size_t limit) { return earliest(limit) != nullptr; }

 private:
  static bool startsBelow(const std::deque<std::size_t>& queue, std::size_t limit) {
    return !queue.empty() && queue.front() < limit;
  }

  std::deque<std::size_t>* earliest(std::size_t limit) {
    std::deque<std::size_t>* found = nullptr;
    for (auto& queue : queues_)
      if (startsBelow(queue, limit) && (!found || queue.front() < found->front())) found = &queue;
    return found;
  }

  std::vector<std::deque<std::size_t>> queues_;
};

class PoolParent {
 public:
  PoolParent(const std::string& name, std::size_t chunks, const WorkerPool::Work& work,
             const WorkerPool::Deliver& deliver, const WorkerPool::Settings& settings)
      : name_(name), chunks_(chunks), work_(work), deliver_(deliver), settings_(settings) {}

  void start(std::size_t jobs) {
    queue_ = ChunkQueue(chunks_, jobs, settings_.shareOf);
    for (std::size_t i = 0; i < jobs; ++i) workers_.push_back(forked());
    for (auto& worker : workers_) handOut(worker);
  }

  void collect() {
    while (delivered_ < limit()) {
      std::vector<pollfd> polled;
      for (const auto& worker : workers_) polled.push_back({worker.chunk ? worker.answers : -1, POLLIN, 0});
      if (poll(polled.data(), polled.size(), -1) < 0) {
        if (errno == EINTR) continue;
        throw std::runtime_error(name_ + ": waiting for the workers failed");
      }
      for (std::size_t i = 0; i < workers_.size(); ++i)
        if (polled[i].revents != 0) receive(workers_[i]);
    }
    if (stopped_) throw WorkerStopped(stopped_->message, stopped_->waitStatus, stopped_->chunk);
  }

  void stop() {
    for (auto& worker : workers_) {
      if (worker.pid < 0) continue;
      if (worker.tasks >= 0) close(worker.tasks);
      close(worker.answers);
      int status = 0;
      waitpid(worker.pid, &status, 0);
    }
    workers_.clear();
  }

 private:
  PoolWorker forked() {
    int down[2], up[2];
    if (pipe(down) != 0 || pipe(up) != 0) throw std::runtime_error("cannot start the " + name_ + "'s workers: no pipe");
    const pid_t pid = fork();
    if (pid < 0) throw std::runtime_error("cannot start the " + name_ + "'s workers: fork failed");
    if (pid == 0) {
      // What the parent has yet to print is its own to print (or to lose, as
      // an abort loses it), never a child's.
      __fpurge(stdout);
      __fpurge(stderr);
      for (const auto& worker : workers_)
        if (worker.pid >= 0) close(worker.tasks), close(worker.answers);
      close(down[1]);
      close(up[0]);
      serveChunks(name_, down[0], up[1], work_);
    }
    close(down[0]);
    close(up[1]);
    return {pid, down[1], up[0], {}, {}, 0};
  }

  // A worker that served its share ends (its task pipe closes) and a fresh fork takes its place.
  void replace(PoolWorker& worker) {
    close(worker.tasks);
    close(worker.answers);
    int status = 0;
    waitpid(worker.pid, &status, 0);
    worker.tasks = worker.answers = -1;
    worker = forked();
  }

  // Past a stopped worker's chunk nothing is delivered, so nothing is handed out.
  std::size_t limit() const { return stopped_ ? stopped_->chunk : chunks_; }

  void handOut(PoolWorker& worker) {
    worker.chunk.reset();
    if (queue_.anyBelow(limit()) && worker.served > 0 &&
        (worker.served >= settings_.chunksPerWorker || residentBytes(worker.pid) > settings_.residentBytesPerWorker))
      replace(worker);
    // Outputs past the earliest undelivered chunk wait in memory: once they
    // weigh too much, every worker helps with the chunks delivery waits for.
    const bool earliestOfAll = heldBytes_ > settings_.heldBytesBeforeInOrder;
    const auto next = queue_.next(static_cast<std::size_t>(&worker - workers_.data()), limit(), earliestOfAll);
    if (!next) {
      close(worker.tasks);
      worker.tasks = -1;
      return;
    }
    worker.chunk = *next;
    const ChunkNumber chunk = *next;
    if (!writeAll(worker.tasks, &chunk, sizeof chunk)) noteStopped(worker);
  }

  void receive(PoolWorker& worker) {
    char buffer[65536];
    const ssize_t got = ::read(worker.answers, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) return;
    if (got <= 0) return noteStopped(worker);
    worker.received.append(buffer, static_cast<std::size_t>(got));
    std::uint64_t length = 0;
    if (worker.received.size() < sizeof length) return;
    std::memcpy(&length, worker.received.data(), sizeof length);
    if (worker.received.size() < sizeof length + length) return;
    finished_.emplace(*worker.chunk, worker.received.substr(sizeof length, length));
    heldBytes_ += length;
    worker.received.erase(0, sizeof length + length);
    ++worker.served;
    handOut(worker);
    deliverInOrder();
  }

  // The chunks before the stopped worker's go on to be done and delivered (by
  // a fresh fork in its place, while any is left to hand out), and the
  // earliest chunk whose worker stopped is the one reported.
  void noteStopped(PoolWorker& worker) {
    const auto status = statusOnceStopped(worker.pid);
    const std::size_t chunk = *worker.chunk;
    if (!stopped_ || chunk < stopped_->chunk) {
      stopped_ = Stopped{chunk, name_ + " worker " + std::to_string(worker.pid) + " " + howItStopped(status),
                         status.value_or(0)};
    }
    if (worker.tasks >= 0) close(worker.tasks);
    close(worker.answers);
    worker = PoolWorker{};
    if (!queue_.anyBelow(limit())) return;
    worker = forked();
    handOut(worker);
  }

  void deliverInOrder() {
    for (auto found = finished_.find(delivered_); found != finished_.end(); found = finished_.find(delivered_)) {
      deliver_(delivered_, found->second);
      heldBytes_ -= found->second.size();
      finished_.erase(found);
      ++delivered_;
    }
  }

  struct Stopped {
    std::size_t chunk;
    std::string message;
    int waitStatus;
  };

  const std::string& name_;
  std::size_t chunks_;
  const WorkerPool::Work& work_;
  const WorkerPool::Deliver& deliver_;
  const WorkerPool::Settings& settings_;
  std::vector<PoolWorker> workers_;
  ChunkQueue queue_;
  std::size_t delivered_ = 0;
  std::map<std::size_t, std::string> finished_;
  std::size_t heldBytes_ = 0;
  std::optional<Stopped> stopped_;
};

// A worker gone between two chunks leaves the parent writing into a pipe
// nobody reads: that EPIPE is the worker's stop to report, not a signal that
// ends the command.
class BrokenPipesIgnored {
 public:
  BrokenPipesIgnored() {
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    sigaction(SIGPIPE, &ignore, &previous_);
  }
  ~BrokenPipesIgnored() { sigaction(SIGPIPE, &previous_, nullptr); }
  BrokenPipesIgnored(const BrokenPipesIgnored&) = delete;
  BrokenPipesIgnored& operator=(const BrokenPipesIgnored&) = delete;

 private:
  struct sigaction previous_ {};
};

}  // namespace

void WorkerPool::run(const std::string& name, std::size_t jobs, std::size_t chunks, const Work& work,
                     const Deliver& deliver, const Settings& settings) {
  const BrokenPipesIgnored brokenPipesIgnored;
  PoolParent parent(name, chunks, work, deliver, settings);
  try {
    parent.start(std::max<std::size_t>(1, std::min(jobs, chunks)));
    parent.collect();
  } catch (...) {
    parent.stop();
    throw;
  }
  parent.stop();
}

}  // namespace quillan::hosting
