#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <mutex>

#include "ServerFixture.hpp"
#include "fixtures/JournalWriter.hpp"
#include "server/PortInUse.hpp"
#include "server/Server.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
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

  ServerFolder folder_;
  std::unique_ptr<Server> server_;
  std::unique_ptr<fixtures::JournalWriter> writer_;
  int port_ = 0;
  std::unique_ptr<httplib::Client> client_;
  nlohmann::json widgets_;
};

// The page's files are compiled in at build time: each must come out byte
// for byte, under its own path and type.
TEST_F(ServerTest, ServesThePageFilesAsWritten) {
  const std::filesystem::path pageFolder = std::filesystem::path(QUILLAN_TEST_DATA_DIR) / "../../src/server/page";
  struct PageFile {
    std::string path;
    std::string file;
    std::string type;
  };
  const std::vector<PageFile> files = {{"/", "index.html", "text/html; charset=utf-8"},
                                       {"/page.js", "page.js", "text/javascript; charset=utf-8"},
                                       {"/page.css", "page.css", "text/css; charset=utf-8"}};
  for (const auto& [path, file, type] : files) {
    SCOPED_TRACE(path);
    std::ifstream written(pageFolder / file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(written), {}};
    const auto served = client_->Get(path);
    ASSERT_TRUE(served);
    EXPECT_EQ(served->status, 200);
    EXPECT_EQ(served->get_header_value("Content-Type"), type);
    EXPECT_FALSE(bytes.empty());
    EXPECT_EQ(served->body, bytes);
  }
}

TEST_F(ServerTest, ListsTheFiveWidgetsAndDrawsEachAsPngSvgAndJson) {
  EXPECT_EQ(widgets_["now"], "2026-11-22T09:00:00+01:00");
  EXPECT_EQ(widgetOf(widgets_, "ComposeButtonLockScreen")["family"], "accessoryCircular");
  for (const auto& widget : widgets_["widgets"]) {
    const std::string kind = widget["kind"];
    SCOPED_TRACE(widget.dump());
    EXPECT_EQ(widget["state"], "ok");
    EXPECT_TRUE(widget["entry"]["date"].is_string());
    EXPECT_TRUE(widget["policy"]["type"].is_string());
    EXPECT_GE(widget["version"].get<int>(), 1);
    const auto png = client_->Get("/api/render?kind=" + kind + "&format=png");
    ASSERT_TRUE(png);
    EXPECT_EQ(png->status, 200);
    EXPECT_EQ(png->get_header_value("Content-Type"), "image/png");
    EXPECT_THAT(png->body, StartsWith("\x89PNG"));
    const auto svg = client_->Get("/api/render?kind=" + kind + "&format=svg&colorScheme=dark&scale=1");
    ASSERT_TRUE(svg);
    EXPECT_EQ(svg->status, 200);
    EXPECT_THAT(svg->body, HasSubstr("<svg"));
    const auto json = jsonOf(client_->Get("/api/render?kind=" + kind + "&format=json"));
    EXPECT_EQ(json["kind"], kind);
    EXPECT_TRUE(json["view"].is_object());
    EXPECT_TRUE(json["regions"].is_array());
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

// Each parser's own refusals are in ApiRequestsTest; here, that every route
// answers them with its status and one line.
TEST_F(ServerTest, BadRequestsAreRefusedWithOneLineNamingTheProblem) {
  struct Case {
    std::string method;
    std::string path;
    std::string body;
    int status;
    std::string message;
  };
  const std::vector<Case> cases = {
      {"GET", "/api/render?format=png", "", 400, "kind: required"},
      {"GET", "/api/render?kind=StreakWidget&colour=red", "", 400, "unknown parameter \"colour\""},
      {"GET", "/api/render?kind=StreakWidget&timeZone=Mars%2FOlympus", "", 400, "timeZone: unknown time zone"},
      {"GET", "/api/tap?kind=StreakWidget&x=1e3&y=2", "", 400, "x: expected a decimal number"},
      {"GET", "/api/nothing", "", 404, "/api/nothing"},
      {"POST", "/api/clock", R"({"rate": 0})", 400, "rate:"},
      {"POST", "/api/clock", std::string(64 * 1024, ' '), 413, "16 KiB"},
      {"POST", "/api/environment", "{colorScheme", 400, "not JSON"},
  };
  for (const auto& [method, path, body, status, message] : cases) {
    SCOPED_TRACE(method + " " + path);
    const auto result = method == "GET" ? client_->Get(path) : client_->Post(path, body, "application/json");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, status);
    EXPECT_EQ(result->body.find('\n'), std::string::npos);
    EXPECT_THAT(jsonOf(result)["error"].get<std::string>(), HasSubstr(message));
  }
  EXPECT_EQ(jsonOf(client_->Get("/api/clock"))["now"], kServerNow);
}

TEST_F(ServerTest, OnlyThePageItselfMayChangeTheHost) {
  const std::string own = "http://127.0.0.1:" + std::to_string(port_);
  struct Case {
    std::string path;
    httplib::Headers headers;
    std::string contentType;
    int status;
  };
  const std::vector<Case> cases = {
      {"/api/clock", {{"Origin", "http://evil.example"}}, "text/plain", 403},
      {"/api/clock", {{"Origin", "http://evil.example"}}, "application/json", 403},
      {"/api/environment", {{"Sec-Fetch-Site", "cross-site"}}, "text/plain", 403},
      {"/api/clock", {}, "text/plain", 415},
      {"/api/environment", {}, "application/x-www-form-urlencoded", 415},
  };
  const auto clockBefore = jsonOf(client_->Get("/api/clock"));
  for (const auto& [path, headers, contentType, status] : cases) {
    SCOPED_TRACE(path + " " + contentType + " " + (headers.empty() ? "" : headers.begin()->second));
    const auto body = path == "/api/clock" ? R"({"rate": 1000})" : R"({"colorScheme": "dark"})";
    const auto refused = client_->Post(path.c_str(), headers, body, contentType.c_str());
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, status);
    EXPECT_FALSE(refused->has_header("Access-Control-Allow-Origin"));
    EXPECT_TRUE(jsonOf(refused)["error"].is_string()) << refused->body;
  }
  EXPECT_EQ(jsonOf(client_->Get("/api/clock")), clockBefore);
  EXPECT_EQ(jsonOf(client_->Get("/api/environment"))["colorScheme"], nullptr);
  const auto preflight = client_->Options("/api/clock", {{"Origin", "http://evil.example"}});
  ASSERT_TRUE(preflight);
  EXPECT_EQ(preflight->status, 405);
  EXPECT_EQ(preflight->get_header_value("Allow"), "GET, HEAD, POST");
  EXPECT_FALSE(preflight->has_header("Access-Control-Allow-Origin"));
  const auto pinned = client_->Post("/api/clock", {{"Origin", own}, {"Sec-Fetch-Site", "same-origin"}},
                                    R"({"now": "2026-11-22T18:00:00+01:00"})", "application/json");
  ASSERT_TRUE(pinned);
  EXPECT_EQ(pinned->status, 200);
  EXPECT_EQ(jsonOf(client_->Get("/api/widgets"))["now"], "2026-11-22T18:00:00+01:00");
}

TEST_F(ServerTest, OnlyTheNamesTheServerIsReachedByAreAnswered) {
  const auto port = ":" + std::to_string(port_);
  const std::string path = "/api/render?kind=OnThisDayWidget&format=json";
  for (const auto& host : std::vector<std::string>{"127.0.0.1" + port, "localhost" + port, "LocalHost" + port}) {
    const auto answered = client_->Get(path.c_str(), {{"Host", host}});
    ASSERT_TRUE(answered);
    EXPECT_EQ(answered->status, 200) << host;
    EXPECT_THAT(answered->body, HasSubstr("a year ago")) << host;
  }
  for (const auto& host : std::vector<std::string>{"evil.example" + port, "127.0.0.1:1", "127.0.0.1"}) {
    const auto refused = client_->Get(path.c_str(), {{"Host", host}});
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->status, 421) << host;
    EXPECT_THAT(refused->body, Not(HasSubstr("a year ago")));
  }
}

TEST_F(ServerTest, MalformedRequestsAreRefusedWithTheirOwnStatus) {
  const auto host = "Host: 127.0.0.1:" + std::to_string(port_) + "\r\nConnection: close\r\n";
  struct Case {
    std::string request;
    int status;
    std::string message;
  };
  const std::vector<Case> cases = {
      {"PUT /api/clock HTTP/1.1\r\n" + host + "Content-Length: 2\r\n\r\n{}", 405, "not allowed on /api/clock"},
      {"DELETE /api/widgets HTTP/1.1\r\n" + host + "\r\n", 405, "not allowed on /api/widgets"},
      {"POST /api/clock HTTP/1.1\r\n" + host + "Content-Type: application/json\r\nContent-Length: -1\r\n\r\n{}", 400,
       "Content-Length: not a byte count"},
      {"POST /api/clock HTTP/1.1\r\n" + host + "Content-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n",
       411, "Content-Length"},
      {"GET /api/render?kind=Streak=Widget HTTP/1.1\r\n" + host + "\r\n", 400, "a second '='"},
      {"POST /api/environment HTTP/1.1\r\n" + host + "Content-Type: application/json\r\nContent-Length: 40\r\n\r\n" +
           R"({"locale": "en_US@calendar=martian"}    )",
       400, "unknown calendar keyword"},
  };
  for (const auto& [request, status, message] : cases) {
    SCOPED_TRACE(request.substr(0, 60));
    RawClient raw(port_);
    ASSERT_TRUE(raw.send(request));
    const auto answer = raw.receive(std::chrono::seconds(10));
    EXPECT_EQ(statusOf(answer), status) << answer.substr(0, 300);
    const auto body = answer.substr(std::min(answer.find("\r\n\r\n"), answer.size()));
    EXPECT_THAT(jsonOf(client_->Get("/api/clock")), Not(nullptr));
    EXPECT_THAT(body, HasSubstr(message));
    if (status == 405) {
      EXPECT_THAT(answer, HasSubstr("Allow: GET, HEAD"));
    }
  }
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
  const auto command = "timeout 30 " + std::string(QUILLAN_CLI_PATH) + " serve --group-container " +
                       folder_.journal().parent_path().string() + " --port " + std::to_string(port_) + " 2>&1";
  FILE* output = popen(command.c_str(), "r");
  ASSERT_NE(output, nullptr);
  std::string text;
  char chunk[256];
  while (const auto read = fread(chunk, 1, sizeof chunk, output)) text.append(chunk, read);
  const int status = pclose(output);
  EXPECT_EQ(WEXITSTATUS(status), 2) << text;
  EXPECT_EQ(text, "quillan-widgets: port " + std::to_string(port_) +
                      " is in use; choose another with --port, or 0 for a free one\n");
}

TEST_F(ServerTest, ChangingTheEnvironmentRedrawsEveryWidget) {
  const auto before = widgetOf(widgets_, "OnThisDayWidget")["version"].get<int>();
  const auto changed = client_->Post("/api/environment", R"({"colorScheme": "dark"})", "application/json");
  ASSERT_TRUE(changed);
  EXPECT_EQ(changed->status, 200);
  EXPECT_EQ(jsonOf(client_->Get("/api/environment"))["colorScheme"], "dark");
  EXPECT_TRUE(
      eventually([&] { return widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"] > before; },
                 std::chrono::seconds(30)));
  const auto dark = widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"].get<int>();
  ASSERT_TRUE(client_->Post("/api/environment", R"({"colorScheme": null})", "application/json"));
  EXPECT_TRUE(
      eventually([&] { return widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"] > dark; },
                 std::chrono::seconds(30)));
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
  const auto widgets = jsonOf(client_->Get("/api/widgets"));
  const auto before = widgetOf(widgets, "ComposeButtonWidget")["version"].get<int>();
  const auto appReloads = widgetOf(widgets, "ComposeButtonWidget")["reloads"]["app"].get<int>();
  const auto pictureBefore = jsonOf(client_->Get("/api/render?kind=ComposeButtonWidget&format=json"))["view"];
  writer_->addNote({.date = at(kServerNow), .info = std::string("written today")});
  const bool heard = eventually(
      [&] {
        events += stream.receive(std::chrono::milliseconds(100));
        return announcedVersion(events, "ComposeButtonWidget") > before;
      },
      std::chrono::seconds(60));
  ASSERT_TRUE(heard) << events;
  EXPECT_THAT(events, HasSubstr("event: widget\ndata: {"));
  const auto after = jsonOf(client_->Get("/api/widgets"));
  EXPECT_GT(widgetOf(after, "ComposeButtonWidget")["reloads"]["app"], appReloads);
  const auto pictureAfter = jsonOf(client_->Get("/api/render?kind=ComposeButtonWidget&format=json"))["view"];
  EXPECT_NE(pictureBefore, pictureAfter);
}

TEST_F(ServerTest, ManyConcurrentPicturesAreAllAnsweredWithBoundedMemory) {
  constexpr int kRequests = 200;
  const auto residentBefore = residentKilobytes();
  std::atomic<int> answered{0};
  std::vector<std::thread> clients;
  const std::vector<std::string> kinds = {"OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "StreakWidget",
                                          "ComposeButtonLockScreen"};
  for (int index = 0; index < kRequests; ++index) {
    clients.emplace_back([&, index] {
      auto client = clientOf(port_);
      const auto result = client->Get("/api/render?kind=" + kinds[index % kinds.size()] + "&format=png");
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
