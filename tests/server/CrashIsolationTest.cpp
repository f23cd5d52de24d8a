#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "ServerFixture.hpp"
#include "fixtures/JournalWriter.hpp"
#include "server/Server.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
using namespace quillan::testing;

// A note without a date stops every widget that reads notes; the lock-screen
// button reads none, and the server itself never runs the extension.
TEST(CrashIsolationTest, AnUndatedNoteFailsTheWidgetsThatReadNotesAndNothingElse) {
  ServerFolder folder;
  {
    fixtures::JournalWriter writer(folder.journal());
    writer.addNote({.date = platform::ISO8601::parse("2025-11-22T10:00:00+01:00"), .info = std::string("dated")});
    writer.addNote({.date = std::nullopt, .info = std::string("no date")});
  }
  Server server(serverOptions(folder.journal()));
  const int port = server.start();
  auto client = clientOf(port);
  ASSERT_EQ(placedWidgets(*client)["widgets"].size(), 5u);
  // Each view is built as its picture changes, right after the timelines.
  nlohmann::json widgets;
  ASSERT_TRUE(eventually(
      [&] {
        widgets = jsonOf(client->Get("/api/widgets"));
        return widgetOf(widgets, "ComposeButtonLockScreen")["state"] == "ok" &&
               std::count_if(widgets["widgets"].begin(), widgets["widgets"].end(),
                             [](const auto& widget) { return widget["state"] == "failed"; }) == 4;
      },
      std::chrono::seconds(60)))
      << widgets.dump();
  for (const char* kind : {"OnThisDayWidget", "OTDComposeWidget", "StreakWidget", "ComposeButtonWidget"}) {
    SCOPED_TRACE(kind);
    EXPECT_THAT(widgetOf(widgets, kind)["reason"].get<std::string>(), HasSubstr("Fatal error"));
    const auto picture = client->Get(std::string("/api/render?kind=") + kind);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->status, 503);
    EXPECT_THAT(jsonOf(picture)["error"].get<std::string>(), HasSubstr("Fatal error"));
  }
  const auto lock = client->Get("/api/render?kind=ComposeButtonLockScreen&format=png");
  ASSERT_TRUE(lock);
  EXPECT_EQ(lock->status, 200);
}

}  // namespace
}  // namespace quillan::server
