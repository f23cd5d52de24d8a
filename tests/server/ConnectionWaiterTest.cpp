#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <mutex>
#include <optional>
#include <thread>

#include "server/BufferedRequest.hpp"
#include "server/ConnectionWaiter.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// The waiter over socket pairs: the test writes as a client on the other end.
class ConnectionWaiterTest : public ::testing::Test {
 protected:
  void start(ConnectionWaiter::Limits limits) {
    waiter_ = std::make_unique<ConnectionWaiter>(limits, [this](Connection connection) {
      std::lock_guard lock(mutex_);
      handed_.push_back(std::move(connection));
    });
  }
  void TearDown() override {
    waiter_.reset();
    for (auto& connection : handed_) closeConnection(connection);
    for (const int peer : peers_) close(peer);
  }
  // A new connection from `client`; returns the client's end.
  int connect(const std::string& client) {
    int ends[2];
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    peers_.push_back(ends[1]);
    waiter_->add(Connection{ends[0], client, {}, 0});
    return ends[1];
  }
  // What the waiter said before closing the client's end; nullopt while still open.
  static std::optional<std::string> closing(int peer, std::chrono::milliseconds limit) {
    std::string said;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
      char chunk[512];
      const auto received = recv(peer, chunk, sizeof chunk, MSG_DONTWAIT);
      if (received == 0) return said;
      if (received > 0) said.append(chunk, static_cast<std::size_t>(received));
      else std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return std::nullopt;
  }

  std::unique_ptr<ConnectionWaiter> waiter_;
  std::mutex mutex_;
  std::vector<Connection> handed_;
  std::vector<int> peers_;
};

TEST_F(ConnectionWaiterTest, SlowCrowdingAndOversizedClientsAreCutOff) {
  start({.requestDeadline = std::chrono::milliseconds(1500),
         .perClient = 2,
         .overall = 512,
         .evictionGrace = std::chrono::milliseconds(0)});
  const int oldest = connect("crowd");
  const int older = connect("crowd");
  const int other = connect("someone else");
  const int newest = connect("crowd");
  // Long before its deadline.
  EXPECT_EQ(closing(oldest, std::chrono::milliseconds(500)), "");
  EXPECT_EQ(closing(older, std::chrono::milliseconds(100)), std::nullopt);
  EXPECT_EQ(closing(other, std::chrono::milliseconds(100)), std::nullopt);
  const int trickling = connect("slow");
  const auto start = std::chrono::steady_clock::now();
  while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(1800)) {
    ::send(trickling, "G", 1, MSG_NOSIGNAL);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  const auto timedOut = closing(trickling, std::chrono::seconds(2));
  ASSERT_TRUE(timedOut);
  EXPECT_THAT(*timedOut, StartsWith("HTTP/1.1 408 "));
  EXPECT_EQ(closing(newest, std::chrono::seconds(2)), "") << "an idle connection closes without a word";
  const int huge = connect("huge");
  const auto head = "GET / HTTP/1.1\r\nX: " + std::string(kMaxHeadBytes, 'x');
  ASSERT_EQ(::send(huge, head.data(), head.size(), MSG_NOSIGNAL), static_cast<ssize_t>(head.size()));
  const auto refused = closing(huge, std::chrono::seconds(2));
  ASSERT_TRUE(refused);
  EXPECT_THAT(*refused, StartsWith("HTTP/1.1 431 "));
  EXPECT_THAT(*refused, HasSubstr(R"({"error":")"));
  std::lock_guard lock(mutex_);
  EXPECT_TRUE(handed_.empty()) << "no part of these requests reaches a worker";
}

}  // namespace
}  // namespace quillan::server
