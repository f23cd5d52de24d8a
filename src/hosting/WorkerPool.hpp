#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace quillan::hosting {

// A worker that stopped before answering (a crash, a signal): the message
// names how, `waitStatus` is what waitpid said of it, `chunk` what it was on.
class WorkerStopped : public std::runtime_error {
 public:
  WorkerStopped(const std::string& message, int waitStatus, std::size_t chunk)
      : std::runtime_error(message), waitStatus(waitStatus), chunk(chunk) {}
  int waitStatus;
  std::size_t chunk;
};

// Work split into numbered chunks, done by a fixed set of processes forked
// from this one (so they start with everything it has loaded: the journal's
// connection, the drawing module, the fonts). Each worker is handed one chunk
// at a time over a pipe and answers with the chunk's output; the parent
// receives the outputs in chunk order, whichever worker finished first.
struct WorkerPool {
  using Work = std::function<std::string(std::size_t chunk)>;
  using Deliver = std::function<void(std::size_t chunk, const std::string& output)>;

  // Runs `work` for chunks 0 ... chunks - 1 in `jobs` workers (at least one)
  // and calls `deliver` for each in order. `name` is the command's, as its
  // messages say it ("audit worker 1234 was killed by signal ..."). A worker
  // that has done `chunksPerWorker` chunks, or whose resident memory has
  // passed `residentBytesPerWorker` after a chunk, is replaced by a fresh
  // fork: what it cached on the way (a font for each script it met) goes with
  // it. A worker that stops before answering is a WorkerStopped, thrown once
  // every chunk before its own has been delivered, so what a run delivers
  // does not depend on which worker was quicker.
  static void run(const std::string& name, std::size_t jobs, std::size_t chunks, const Work& work,
                  const Deliver& deliver, std::size_t chunksPerWorker = SIZE_MAX,
                  std::size_t residentBytesPerWorker = SIZE_MAX);
};

}  // namespace quillan::hosting
