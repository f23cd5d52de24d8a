#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

#include "hosting/WorkerPool.hpp"

namespace quillan::hosting {
namespace {

TEST(WorkerPoolTest, ChunksArriveInOrderWhateverWorkerFinishesFirst) {
  for (const std::size_t jobs : {1u, 2u, 5u}) {
    std::vector<std::size_t> order;
    std::set<std::string> workers;
    std::string outputs;
    WorkerPool::run(
        "test", jobs, 9,
        [](std::size_t chunk) {
          // Early chunks take longest, so later ones finish first.
          usleep(static_cast<useconds_t>((9 - chunk) * 2000));
          return std::string(chunk * 30000, static_cast<char>('a' + chunk)) + std::to_string(getpid());
        },
        [&](std::size_t chunk, const std::string& output) {
          order.push_back(chunk);
          EXPECT_EQ(output.find_first_not_of(static_cast<char>('a' + chunk)), chunk * 30000);
          EXPECT_NE(output.substr(chunk * 30000), std::to_string(getpid())) << "chunk drawn in the parent";
          workers.insert(output.substr(chunk * 30000));
        },
        {.chunksPerWorker = 2});
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8})) << jobs << " jobs";
    // Nine chunks, two a worker: at least five processes, whatever the number of jobs.
    EXPECT_GE(workers.size(), 5u) << jobs << " jobs";
  }
}

TEST(WorkerPoolTest, EachWorkerDrawsItsOwnShareFirst) {
  std::vector<std::string> drawnBy(6);
  WorkerPool::run(
      "test", 2, 6,
      [](std::size_t) {
        usleep(100000);
        return std::to_string(getpid());
      },
      [&](std::size_t chunk, const std::string& output) { drawnBy[chunk] = output; },
      {.shareOf = [](std::size_t chunk) { return chunk < 3 ? 0 : 1; }});
  EXPECT_EQ(drawnBy[0], drawnBy[1]);
  EXPECT_EQ(drawnBy[3], drawnBy[4]);
  EXPECT_NE(drawnBy[0], drawnBy[3]);
}

TEST(WorkerPoolTest, OutputsHeldPastTheirLimitTurnEveryWorkerToTheEarliestChunks) {
  char startedPath[] = "/tmp/worker-pool-started-XXXXXX";
  const int started = mkstemp(startedPath);
  ASSERT_GE(started, 0);
  // Chunk 0 keeps the first worker busy while the second runs through its own
  // share, whose outputs must wait: past 1,500 bytes it turns to chunk 1.
  const auto work = [&](std::size_t chunk) {
    const char mark = static_cast<char>('0' + chunk);
    EXPECT_EQ(write(started, &mark, 1), 1);
    usleep(chunk == 0 ? 1000000 : 10000);
    return std::string(1000, mark);
  };
  WorkerPool::run("test", 2, 8, work, [](std::size_t, const std::string&) {},
                  {.shareOf = [](std::size_t chunk) { return chunk < 4 ? 0 : 1; }, .heldBytesBeforeInOrder = 1500});
  std::string order(8, ' ');
  EXPECT_EQ(pread(started, order.data(), order.size(), 0), 8);
  close(started);
  unlink(startedPath);
  EXPECT_LT(order.find('1'), order.find('6')) << order;
}

TEST(WorkerPoolTest, AWorkerThatDiesIsAnErrorNamingHowOnceTheChunksBeforeItsAreDelivered) {
  const auto crashing = [](std::size_t chunk) -> std::string {
    if (chunk == 3) raise(SIGKILL);
    usleep(50000);
    return "ok";
  };
  // In order, the other worker is still on an earlier chunk when chunk 3 kills
  // its own; in shares, the chunks before it are not even handed out yet.
  for (const auto& shareOf :
       {WorkerPool::ShareOf{}, WorkerPool::ShareOf{[](std::size_t c) { return c < 3 ? 0 : 1; }}}) {
    std::vector<std::size_t> delivered;
    try {
      WorkerPool::run("test", 2, 6, crashing,
                      [&](std::size_t chunk, const std::string&) { delivered.push_back(chunk); }, {.shareOf = shareOf});
      FAIL() << "no error";
    } catch (const WorkerStopped& error) {
      EXPECT_NE(std::string(error.what()).find("test worker"), std::string::npos) << error.what();
      EXPECT_NE(std::string(error.what()).find("killed by signal"), std::string::npos) << error.what();
      EXPECT_TRUE(WIFSIGNALED(error.waitStatus) && WTERMSIG(error.waitStatus) == SIGKILL);
      EXPECT_EQ(error.chunk, 3u);
    }
    EXPECT_EQ(delivered, (std::vector<std::size_t>{0, 1, 2}));
  }
}

TEST(WorkerPoolTest, AWorkerThatStopsReadingItsTasksIsAnErrorNotABrokenPipeThatEndsTheCommand) {
  const auto stopsReading = [](std::size_t) -> std::string {
    // Closes the task pipe's read end: the parent's next chunk meets no reader.
    for (int fd = 3; fd < 1024; ++fd)
      if (const int flags = fcntl(fd, F_GETFL); flags >= 0 && (flags & O_ACCMODE) == O_RDONLY) close(fd);
    return "ok";
  };
  std::vector<std::size_t> delivered;
  try {
    WorkerPool::run("test", 1, 3, stopsReading,
                    [&](std::size_t chunk, const std::string&) { delivered.push_back(chunk); });
    FAIL() << "no error";
  } catch (const WorkerStopped& error) {
    EXPECT_EQ(error.chunk, 1u);
  }
  EXPECT_EQ(delivered, (std::vector<std::size_t>{0}));
}

}  // namespace
}  // namespace quillan::hosting
