#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <tuple>

#include "ServerFixture.hpp"
#include "fixtures/JournalWriter.hpp"
#include "server/PortInUse.hpp"
#include "server/Server.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/IncomingRequestText.hpp"
#include "support/RunCommand.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
using namespace quillan::testing;

std::int64_t residentKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stoll(line.substr(6));
  }
  return 0;
}

platform::Date at(const std::string& iso) { return *platform::ISO8601::parse(iso); }

// A server of its own for each test, over a small journal the test keeps open
// as the app does, so later notes arrive through the WAL.
class ServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // The server forks its workers first: SQLite's per-file state in this
    // process (the writer's shared-memory handle) must not reach them.
    server_ = std::make_unique<Server>(serverOptions(folder_.journal()));
    writer_ = std::make_unique<fixtures::JournalWriter>(folder_.journal());
    writer_->addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
    writer_->addNote({.date = at("2026-11-21T10:00:00+01:00"), .info = std::string("yesterday")});
    port_ = server_->start();
    client_ = clientOf(port_);
    widgets_ = placedWidgets(*client_);
    ASSERT_EQ(widgets_["widgets"].size(), 5u);
  }

  nlohmann::json current(const std::string& kind) const { return widgetOf(jsonOf(client_->Get("/api/widgets")), kind); }
  // Whether `kind`'s picture changes past `version` within 30 s.
  bool redrawnAfter(const std::string& kind, int version) const {
    return eventually([&] { return current(kind)["version"] > version; }, std::chrono::seconds(30));
  }

  ServerFolder folder_;
  std::unique_ptr<Server> server_;
  std::unique_ptr<fixtures::JournalWriter> writer_;
  int port_ = 0;
  std::unique_ptr<httplib::Client> client_;
  nlohmann::json widgets_;
};

// The page's files are compiled in at build time: each must come out byte
// for byte, under its own path and type. Every widget is drawn in each format.
TEST_F(ServerTest, ServesThePageFilesAsWrittenAndDrawsEachWidgetAsPngSvgAndJson) {
  const std::filesystem::path pageFolder = std::filesystem::path(QUILLAN_TEST_DATA_DIR) / "../../src/server/page";
  for (const auto& [path, file, type] : {std::tuple{"/", "index.html", "text/html"},
                                         {"/page.js", "page.js", "text/javascript"},
                                         {"/page.css", "page.css", "text/css"}}) {
    const auto served = client_->Get(path);
    ASSERT_TRUE(served);
    EXPECT_EQ(served->status, 200) << path;
    EXPECT_EQ(served->get_header_value("Content-Type"), std::string(type) + "; charset=utf-8");
    EXPECT_EQ(served->body, readText(pageFolder / file)) << path;
  }
  EXPECT_EQ(widgets_["now"], "2026-11-22T09:00:00+01:00");
  EXPECT_EQ(widgetOf(widgets_, "ComposeButtonLockScreen")["family"], "accessoryCircular");
  for (const auto& widget : widgets_["widgets"]) {
    const std::string kind = widget["kind"];
    SCOPED_TRACE(kind);
    EXPECT_EQ(widget["state"], "ok");
    EXPECT_TRUE(widget["entry"]["date"].is_string() && widget["policy"]["type"].is_string() && widget["version"] >= 1);
    for (const auto& [query, type, start] : {std::tuple{"&format=png", "image/png", "\x89PNG"},
                                             {"&format=svg&colorScheme=dark&scale=1", "image/svg+xml", "<svg"},
                                             {"&format=json", "application/json", "{"}}) {
      const auto drawn = client_->Get("/api/render?kind=" + kind + query);
      ASSERT_TRUE(drawn);
      EXPECT_EQ(drawn->status, 200) << query;
      EXPECT_EQ(drawn->get_header_value("Content-Type"), type);
      EXPECT_THAT(drawn->body.substr(0, 64), HasSubstr(start));
    }
    const auto json = jsonOf(client_->Get("/api/render?kind=" + kind + "&format=json"));
    EXPECT_EQ(json["kind"], kind);
    EXPECT_TRUE(json["view"].is_object() && json["regions"].is_array()) << json.dump().substr(0, 300);
  }
}

TEST_F(ServerTest, TapOnTheStreaksTodayCircleOpensAddRecord) {
  const auto picture = jsonOf(client_->Get("/api/render?kind=StreakWidget&format=json"));
  nlohmann::json today;
  for (const auto& region : picture["regions"]) {
    if (region["url"] == "widget-deeplink://AddRecord") today = region;
  }
  ASSERT_TRUE(today.is_object()) << picture["regions"].dump();
  const double x = today["x"].get<double>() + today["width"].get<double>() / 2;
  const double y = today["y"].get<double>() + today["height"].get<double>() / 2;
  const auto tap =
      jsonOf(client_->Get("/api/tap?kind=StreakWidget&x=" + std::to_string(x) + "&y=" + std::to_string(y)));
  EXPECT_EQ(tap["url"], "widget-deeplink://AddRecord");
  const auto outside = jsonOf(client_->Get("/api/tap?kind=StreakWidget&x=-5&y=-5"));
  EXPECT_TRUE(outside.contains("url") && outside["url"].is_null()) << outside.dump();
}

// "LINE | HEADER | ... [|| BODY]" (see IncomingRequestText.hpp) as raw text
// to the server on `port`: PORT stands for it, Host is the server's unless
// named, and the body's length is given unless a header announces it.
std::string rawRequest(int port, std::string written) {
  for (auto at = written.find("PORT"); at != std::string::npos; at = written.find("PORT")) {
    written.replace(at, 4, std::to_string(port));
  }
  const auto bodyAt = written.find(" || ");
  const auto body = bodyAt == std::string::npos ? "" : written.substr(bodyAt + 4);
  auto head = written.substr(0, bodyAt);
  head.insert(std::min(head.find(" | "), head.size()), " HTTP/1.1 | Connection: close");
  if (head.find("Host:") == std::string::npos) head += " | Host: 127.0.0.1:" + std::to_string(port);
  if (!body.empty() && head.find("Content-Length") == std::string::npos) {
    head += " | Content-Length: " + std::to_string(body.size());
  }
  return requestFromOneLine(head + " || " + body, "\r\n");
}

// The status and one-line error of a raw answer, with its Allow header and
// anything no refusal may carry; the port written PORT.
std::string refusalSeen(const std::string& answer, int port) {
  const auto head = answer.substr(0, answer.find("\r\n\r\n"));
  const auto body = answer.substr(std::min(head.size() + 4, answer.size()));
  const auto allow = head.find("Allow: ");
  std::string seen = std::to_string(statusOf(answer)) + " " +
                     nlohmann::json::parse(body, nullptr, false).value("error", "(no error)");
  if (allow != std::string::npos) seen += " [" + head.substr(allow, head.find("\r\n", allow) - allow) + "]";
  if (head.find("Access-Control-Allow-Origin") != std::string::npos) seen += " [ANOTHER SITE MAY ASK]";
  if (body.find('\n') != std::string::npos) seen += " [SEVERAL LINES]";
  for (auto at = seen.find(std::to_string(port)); at != std::string::npos; at = seen.find(std::to_string(port))) {
    seen.replace(at, std::to_string(port).size(), "PORT");
  }
  return seen;
}

// Each parser's and the screen's own cases are in ApiRequestsTest; here, that
// every route refuses them with its status and one line, changes neither the
// clock nor the environment, and tells no other site it may ask, while the
// page itself may.
TEST_F(ServerTest, RefusedRequestsAreOneLineWithTheirOwnStatusAndChangeNothing) {
  const auto hostState = [&] { return client_->Get("/api/clock")->body + client_->Get("/api/environment")->body; };
  expectGoldenAnswers("served_refusals.txt", [&](const std::string& request) {
    const auto before = hostState();
    RawClient raw(port_);
    const auto seen = raw.send(rawRequest(port_, request)) ? refusalSeen(raw.receive(std::chrono::seconds(10)), port_)
                                                           : "not sent";
    return seen + (hostState() == before ? "" : " [CHANGED THE HOST]");
  });
}

// 100 connections send their request a line at a time, as slowly as the old
// per-read timeout allowed; others are answered meanwhile, and the slow ones
// are cut off once their request is overdue however steadily they send.
TEST_F(ServerTest, SlowClientsCannotStarveOthers) {
  const auto host = "Host: 127.0.0.1:" + std::to_string(port_) + "\r\n";
  std::vector<std::unique_ptr<RawClient>> slow;
  for (int index = 0; index < 100; ++index) {
    slow.push_back(std::make_unique<RawClient>(port_));
    slow.back()->send(index % 2 ? "GET /api/widgets HTTP/1.1\r\n"
                                : "POST /api/clock HTTP/1.1\r\n" + host +
                                      "Content-Type: application/json\r\nContent-Length: 200\r\n\r\n{");
  }
  auto probe = std::make_unique<httplib::Client>("127.0.0.1", port_);
  probe->set_connection_timeout(1, 0);
  probe->set_read_timeout(1, 0);
  const auto start = std::chrono::steady_clock::now();
  int probes = 0;
  while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(7500)) {
    for (auto& client : slow) client->send(" ");
    if (probes < 3) {
      const auto answered = probe->Get("/api/clock");
      ASSERT_TRUE(answered) << "probe " << probes << ": " << httplib::to_string(answered.error());
      EXPECT_EQ(answered->status, 200);
      ++probes;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
  }
  for (std::size_t index = 0; index < slow.size(); ++index) {
    EXPECT_TRUE(slow[index]->closedByServer()) << "slow client " << index << " is still connected";
  }
}

// The page that closed its streams never sends again: each stream must notice
// on its own that it is gone.
TEST_F(ServerTest, AClosedEventStreamFreesItsSlot) {
  const auto host = "Host: 127.0.0.1:" + std::to_string(port_) + "\r\n";
  const auto openStream = [&](RawClient& raw) {
    raw.send("GET /api/events HTTP/1.1\r\n" + host + "\r\n");
    return statusOf(raw.receive(std::chrono::seconds(5), "\r\n"));
  };
  {
    std::vector<std::unique_ptr<RawClient>> streams;
    for (int index = 0; index < 8; ++index) {
      streams.push_back(std::make_unique<RawClient>(port_));
      EXPECT_EQ(openStream(*streams.back()), 200);
    }
    RawClient ninth(port_);
    EXPECT_EQ(openStream(ninth), 503);
  }
  std::vector<std::unique_ptr<RawClient>> reopened;
  EXPECT_TRUE(eventually(
      [&] {
        while (reopened.size() < 8) {
          reopened.push_back(std::make_unique<RawClient>(port_));
          if (openStream(*reopened.back()) != 200) {
            reopened.pop_back();
            return false;
          }
        }
        return true;
      },
      std::chrono::seconds(30)))
      << reopened.size() << " streams reopened";
}

TEST_F(ServerTest, ASecondServerOnTheSamePortIsRefusedInOneLine) {
  const auto second = runProgram("/usr/bin/timeout",
                                 {"30", QUILLAN_CLI_PATH, "serve", "--group-container",
                                  folder_.journal().parent_path().string(), "--port", std::to_string(port_)});
  EXPECT_EQ(second.exitStatus, 2) << second.err;
  EXPECT_EQ(second.out + second.err, "quillan-widgets: port " + std::to_string(port_) +
                                         " is in use; choose another with --port, or 0 for a free one\n");
}

TEST_F(ServerTest, ChangingTheEnvironmentRedrawsEveryWidget) {
  const auto changed = client_->Post("/api/environment", R"({"colorScheme": "dark"})", "application/json");
  ASSERT_TRUE(changed);
  EXPECT_EQ(changed->status, 200);
  EXPECT_EQ(jsonOf(client_->Get("/api/environment"))["colorScheme"], "dark");
  EXPECT_TRUE(redrawnAfter("OnThisDayWidget", widgetOf(widgets_, "OnThisDayWidget")["version"]));
  const int dark = current("OnThisDayWidget")["version"];
  ASSERT_TRUE(client_->Post("/api/environment", R"({"colorScheme": null})", "application/json"));
  EXPECT_TRUE(redrawnAfter("OnThisDayWidget", dark));
}

// The highest version the stream announced for `kind`, 0 if none.
int announcedVersion(const std::string& stream, const std::string& kind) {
  int version = 0;
  const std::string prefix = "data: ";
  for (auto at = stream.find(prefix); at != std::string::npos; at = stream.find(prefix, at + 1)) {
    const auto line = stream.substr(at + prefix.size(), stream.find('\n', at) - at - prefix.size());
    const auto event = nlohmann::json::parse(line, nullptr, false);
    if (event.is_object() && event["kind"] == kind) version = std::max(version, event["version"].get<int>());
  }
  return version;
}

// How soon after the commit the picture changes is measured by the browser
// test (tests/browser/serve_test.py --commits N), not here.
TEST_F(ServerTest, TheAppsCommitRedrawsTheComposeButton) {
  RawClient stream(port_);
  stream.send("GET /api/events HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) + "\r\n\r\n");
  std::string events = stream.receive(std::chrono::seconds(5), "\r\n\r\n");  // the stream is open
  const auto before = current("ComposeButtonWidget");
  const auto pictureBefore = jsonOf(client_->Get("/api/render?kind=ComposeButtonWidget&format=json"))["view"];
  writer_->addNote({.date = at(kServerNow), .info = std::string("written today")});
  const bool heard = eventually(
      [&] {
        events += stream.receive(std::chrono::milliseconds(100));
        return announcedVersion(events, "ComposeButtonWidget") > before["version"];
      },
      std::chrono::seconds(60));
  ASSERT_TRUE(heard) << events;
  EXPECT_THAT(events, HasSubstr("event: widget\ndata: {"));
  EXPECT_GT(current("ComposeButtonWidget")["reloads"]["app"], before["reloads"]["app"]);
  EXPECT_NE(jsonOf(client_->Get("/api/render?kind=ComposeButtonWidget&format=json"))["view"], pictureBefore);
}

// Evaluations run in worker processes: --seed must reach each of them, or
// every run of a seeded host shows other writing prompts.
TEST(SeededServerTest, ShowsTheSamePromptsOnEveryRun) {
  ServerFolder folder;
  fixtures::JournalWriter(folder.journal())
      .addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("x")});
  auto options = serverOptions(folder.journal());
  options.settings.seed = 7;
  std::vector<nlohmann::json> views;
  for (int run = 0; run < 3; ++run) {
    Server server(options);
    const auto client = clientOf(server.start());
    placedWidgets(*client);
    for (const auto* kind : {"ComposeButtonWidget", "OTDComposeWidget"}) {
      views.push_back(jsonOf(client->Get(std::string("/api/render?format=json&kind=") + kind))["view"]);
    }
    server.stop();
  }
  ASSERT_FALSE(views[0].is_null());
  for (std::size_t later = 2; later < views.size(); ++later) EXPECT_EQ(views[later % 2], views[later]);
}

TEST_F(ServerTest, ManyConcurrentPicturesAreAllAnsweredWithBoundedMemory) {
  constexpr int kRequests = 200;
  const auto residentBefore = residentKilobytes();
  std::atomic<int> answered{0};
  std::vector<std::thread> clients;
  for (int index = 0; index < kRequests; ++index) {
    clients.emplace_back([&, index] {
      auto client = clientOf(port_);
      const auto kind = widgets_.at("widgets").at(index % 5).at("kind").get<std::string>();
      const auto result = client->Get("/api/render?kind=" + kind + "&format=png");
      if (result && result->status == 200 && result->body.rfind("\x89PNG", 0) == 0) ++answered;
      else if (result) ADD_FAILURE() << result->status << " " << result->body.substr(0, 200);
      else ADD_FAILURE() << httplib::to_string(result.error());
    });
  }
  for (auto& client : clients) client.join();
  EXPECT_EQ(answered.load(), kRequests);
  // Each picture is about 100 KB and lives only while it is sent; the address
  // sanitizer holds freed memory back in its quarantine.
#if defined(__SANITIZE_ADDRESS__)
  constexpr std::int64_t kGrowthKilobytes = 1024 * 1024;
#else
  constexpr std::int64_t kGrowthKilobytes = 200 * 1024;
#endif
  EXPECT_LT(residentKilobytes() - residentBefore, kGrowthKilobytes);
}

}  // namespace
}  // namespace quillan::server
