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
          EXPECT_EQ(output.size() >= chunk * 30000, true);
          EXPECT_EQ(output.find_first_not_of(static_cast<char>('a' + chunk)), chunk * 30000);
          EXPECT_NE(output.substr(chunk * 30000), std::to_string(getpid())) << "chunk drawn in the parent";
          workers.insert(output.substr(chunk * 30000));
        },
        /*chunksPerWorker=*/2);
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8})) << jobs << " jobs";
    // Nine chunks, two a worker: at least five processes, whatever the number of jobs.
    EXPECT_GE(workers.size(), 5u) << jobs << " jobs";
  }
}

TEST(WorkerPoolTest, AWorkerThatDiesIsAnErrorNamingHowOnceTheChunksBeforeItsAreDelivered) {
  const auto crashing = [](std::size_t chunk) -> std::string {
    // The other worker is still on chunk 1 when chunk 3 kills its own.
    if (chunk == 1) usleep(200000);
    if (chunk == 3) raise(SIGKILL);
    return "ok";
  };
  std::vector<std::size_t> delivered;
  try {
    WorkerPool::run("test", 2, 6, crashing, [&](std::size_t chunk, const std::string&) { delivered.push_back(chunk); });
    FAIL() << "no error";
  } catch (const WorkerStopped& error) {
    EXPECT_NE(std::string(error.what()).find("test worker"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find("killed by signal"), std::string::npos) << error.what();
    EXPECT_TRUE(WIFSIGNALED(error.waitStatus) && WTERMSIG(error.waitStatus) == SIGKILL);
    EXPECT_EQ(error.chunk, 3u);
  }
  EXPECT_EQ(delivered, (std::vector<std::size_t>{0, 1, 2}));
}

}  // namespace
}  // namespace quillan::hosting
