#include "server/Server.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <mutex>

#include "ServerFixture.hpp"
#include "fixtures/JournalWriter.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
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

// One server for the suite over a small journal the test keeps open as the
// app does, so later notes arrive through the WAL.
class ServerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new ServerFolder();
    // The server forks its workers first: SQLite's per-file state in this
    // process (the writer's shared-memory handle) must not reach them.
    server_ = new Server(serverOptions(folder_->journal()));
    writer_ = new fixtures::JournalWriter(folder_->journal());
    writer_->addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
    writer_->addNote({.date = at("2026-11-21T10:00:00+01:00"), .info = std::string("yesterday")});
    port_ = server_->start();
  }
  static void TearDownTestSuite() {
    delete writer_;
    delete server_;
    delete folder_;
  }
  void SetUp() override {
    client_ = clientOf(port_);
    widgets_ = placedWidgets(*client_);
    ASSERT_EQ(widgets_["widgets"].size(), 5u);
  }

  static ServerFolder* folder_;
  static fixtures::JournalWriter* writer_;
  static Server* server_;
  static int port_;
  std::unique_ptr<httplib::Client> client_;
  nlohmann::json widgets_;
};

ServerFolder* ServerTest::folder_ = nullptr;
fixtures::JournalWriter* ServerTest::writer_ = nullptr;
Server* ServerTest::server_ = nullptr;
int ServerTest::port_ = 0;

TEST_F(ServerTest, ListsTheFiveWidgetsWithTheirTimelineState) {
  EXPECT_EQ(widgets_["now"], "2026-11-22T09:00:00+01:00");
  const auto lock = widgetOf(widgets_, "ComposeButtonLockScreen");
  EXPECT_EQ(lock["family"], "accessoryCircular");
  for (const auto& widget : widgets_["widgets"]) {
    SCOPED_TRACE(widget.dump());
    EXPECT_EQ(widget["state"], "ok");
    EXPECT_FALSE(widget.contains("reason"));
    EXPECT_TRUE(widget["entry"]["date"].is_string());
    EXPECT_TRUE(widget["policy"]["type"].is_string());
    EXPECT_EQ(widget["reloads"]["budget"], 70);
    EXPECT_GE(widget["version"].get<int>(), 1);
  }
}

TEST_F(ServerTest, DrawsEachWidgetAsPngSvgAndJson) {
  for (const auto& widget : widgets_["widgets"]) {
    const std::string kind = widget["kind"];
    SCOPED_TRACE(kind);
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
  const auto tap = jsonOf(client_->Get("/api/tap?kind=StreakWidget&x=" + std::to_string(x) + "&y=" + std::to_string(y)));
  EXPECT_EQ(tap["url"], "widget-deeplink://AddRecord");
  const auto outside = jsonOf(client_->Get("/api/tap?kind=StreakWidget&x=-5&y=-5"));
  EXPECT_TRUE(outside.contains("url") && outside["url"].is_null()) << outside.dump();
}

TEST_F(ServerTest, BadRequestsAreRefusedWithOneLineNamingTheProblem) {
  const std::vector<std::pair<std::string, std::string>> requests = {
      {"/api/render?format=png", "kind: required"},
      {"/api/render?kind=Nope", "kind: unknown widget \"Nope\""},
      {"/api/render?kind=StreakWidget&format=gif", "format: unknown format \"gif\""},
      {"/api/render?kind=StreakWidget&scale=9", "scale:"},
      {"/api/render?kind=StreakWidget&colour=red", "unknown parameter \"colour\""},
      {"/api/render?kind=StreakWidget&kind=OnThisDayWidget", "more than once"},
      {"/api/render?kind=StreakWidget&timeZone=Mars%2FOlympus", "timeZone: unknown time zone"},
      {"/api/tap?kind=StreakWidget&x=1e3&y=2", "x: expected a decimal number"},
      {"/api/tap?kind=StreakWidget&x=1", "y: required"},
  };
  for (const auto& [path, message] : requests) {
    SCOPED_TRACE(path);
    const auto result = client_->Get(path);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 400);
    EXPECT_EQ(result->body.find('\n'), std::string::npos);
    EXPECT_THAT(jsonOf(result)["error"].get<std::string>(), HasSubstr(message));
  }
}

TEST_F(ServerTest, UnknownPathsAndOversizedBodiesAreRefused) {
  const auto missing = client_->Get("/api/nothing");
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->status, 404);
  EXPECT_THAT(jsonOf(missing)["error"].get<std::string>(), HasSubstr("/api/nothing"));
  const auto huge = client_->Post("/api/clock", std::string(64 * 1024, ' '), "application/json");
  ASSERT_TRUE(huge);
  EXPECT_EQ(huge->status, 413);
  const auto notJson = client_->Post("/api/environment", "{colorScheme", "application/json");
  ASSERT_TRUE(notJson);
  EXPECT_EQ(notJson->status, 400);
}

TEST_F(ServerTest, PinningTheClockMovesTheHost) {
  const auto moved = client_->Post("/api/clock", R"({"now": "2026-11-22T18:00:00+01:00"})", "application/json");
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->status, 200);
  EXPECT_EQ(jsonOf(client_->Get("/api/widgets"))["now"], "2026-11-22T18:00:00+01:00");
  const auto bad = client_->Post("/api/clock", R"({"rate": 0})", "application/json");
  ASSERT_TRUE(bad);
  EXPECT_EQ(bad->status, 400);
  ASSERT_TRUE(client_->Post("/api/clock", R"({"now": "2026-11-22T09:00:00+01:00"})", "application/json"));
}

TEST_F(ServerTest, ChangingTheEnvironmentRedrawsEveryWidget) {
  const auto before = widgetOf(widgets_, "OnThisDayWidget")["version"].get<int>();
  const auto changed = client_->Post("/api/environment", R"({"colorScheme": "dark"})", "application/json");
  ASSERT_TRUE(changed);
  EXPECT_EQ(changed->status, 200);
  EXPECT_EQ(jsonOf(client_->Get("/api/environment"))["colorScheme"], "dark");
  EXPECT_TRUE(eventually(
      [&] { return widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"] > before; },
      std::chrono::seconds(30)));
  const auto dark = widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"].get<int>();
  ASSERT_TRUE(client_->Post("/api/environment", R"({"colorScheme": null})", "application/json"));
  EXPECT_TRUE(eventually(
      [&] { return widgetOf(jsonOf(client_->Get("/api/widgets")), "OnThisDayWidget")["version"] > dark; },
      std::chrono::seconds(30)));
}

// Collects the events of /api/events on a thread of its own.
class EventReader {
 public:
  explicit EventReader(int port) : client_(clientOf(port)) {
    thread_ = std::thread([this] {
      client_->Get("/api/events", [this](const char* data, std::size_t length) {
        std::lock_guard lock(mutex_);
        text_.append(data, length);
        return !done_;
      });
    });
  }
  ~EventReader() {
    {
      std::lock_guard lock(mutex_);
      done_ = true;
    }
    client_->stop();
    thread_.join();
  }
  std::string text() {
    std::lock_guard lock(mutex_);
    return text_;
  }

 private:
  std::unique_ptr<httplib::Client> client_;
  std::mutex mutex_;
  std::string text_;
  bool done_ = false;
  std::thread thread_;
};

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

TEST_F(ServerTest, TheAppsCommitRedrawsTheComposeButtonWithinTwoSeconds) {
  EventReader events(port_);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the stream is open
  const auto widgets = jsonOf(client_->Get("/api/widgets"));
  const auto before = widgetOf(widgets, "ComposeButtonWidget")["version"].get<int>();
  const auto appReloads = widgetOf(widgets, "ComposeButtonWidget")["reloads"]["app"].get<int>();
  const auto pictureBefore = jsonOf(client_->Get("/api/render?kind=ComposeButtonWidget&format=json"))["view"];
  const auto committed = std::chrono::steady_clock::now();
  writer_->addNote({.date = at(kServerNow), .info = std::string("written today")});
  const bool heard = eventually([&] { return announcedVersion(events.text(), "ComposeButtonWidget") > before; },
                                std::chrono::seconds(60));
  const auto elapsed = std::chrono::steady_clock::now() - committed;
  ASSERT_TRUE(heard) << events.text();
#if !defined(__SANITIZE_ADDRESS__)
  EXPECT_LT(elapsed, std::chrono::seconds(2));
#endif
  EXPECT_THAT(events.text(), HasSubstr("event: widget\ndata: {"));
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
  const std::vector<std::string> kinds = {"OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget",
                                          "StreakWidget", "ComposeButtonLockScreen"};
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
