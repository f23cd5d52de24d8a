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

// How a WorkerPool spreads its chunks over its workers.
struct WorkerPoolSettings {
  using ShareOf = std::function<std::size_t(std::size_t chunk)>;

  // A worker that has done this many chunks, or whose resident memory has
  // passed this many bytes after a chunk, is replaced by a fresh fork: what
  // it cached on the way (a font for each script it met) goes with it.
  std::size_t chunksPerWorker = SIZE_MAX;
  std::size_t residentBytesPerWorker = SIZE_MAX;
  // Which worker (0 ... jobs - 1) a chunk is meant for, so that chunks
  // that share what they load go to one worker; a worker whose share is
  // done takes the earliest chunk left of another's. Without it chunks
  // are handed out in order.
  ShareOf shareOf = {};
  // While the outputs that wait for an earlier chunk's hold more than this,
  // chunks are handed out in order, whatever their share: a worker far ahead
  // of the others must not fill the parent's memory with a suite's pictures.
  std::size_t heldBytesBeforeInOrder = std::size_t{64} << 20;
};

// Work split into numbered chunks, done by a fixed set of processes forked
// from this one (so they start with everything it has loaded: the journal's
// connection, the drawing module, the fonts). Each worker is handed one chunk
// at a time over a pipe and answers with the chunk's output; the parent
// receives the outputs in chunk order, whichever worker finished first.
struct WorkerPool {
  using Work = std::function<std::string(std::size_t chunk)>;
  using Deliver = std::function<void(std::size_t chunk, const std::string& output)>;
  using ShareOf = WorkerPoolSettings::ShareOf;

  using Settings = WorkerPoolSettings;

  // Runs `work` for chunks 0 ... chunks - 1 in `jobs` workers (at least one)
  // and calls `deliver` for each in order. `name` is the command's, as its
  // messages say it ("audit worker 1234 was killed by signal ..."). A worker
  // that stops before answering is a WorkerStopped, thrown once every chunk
  // before its own has been done and delivered, so what a run delivers does
  // not depend on which worker was quicker.
  static void run(const std::string& name, std::size_t jobs, std::size_t chunks, const Work& work,
                  const Deliver& deliver, const Settings& settings = {});
};

}  // namespace quillan::hosting
