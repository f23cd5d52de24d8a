#include <gtest/gtest.h>

#include "compose/ComposeButtonSmallView.hpp"
#include "compose/ComposeButtonWidget.hpp"
#include "compose/TodayCheck.hpp"
#include "platform/RandomSource.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"
#include "views/GoldenTree.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"

namespace quillan::compose {
namespace {

using testing::ProcessEnvironment;
using testing::TestJournal;
using views::Environment;
using Json = nlohmann::ordered_json;

class ComposeButton : public ::testing::Test {
 protected:
  void SetUp() override {
    TestJournal::shared().clear();
    platform::RandomSource::seed(1);
  }
  void TearDown() override { platform::RandomSource::useSystem(); }

  static Environment environment(int major, views::WidgetRenderingMode mode = views::WidgetRenderingMode::fullColor) {
    Environment environment;
    environment.platformVersion = {major, 0};
    environment.renderingMode = mode;
    return environment;
  }
  static Json tree(bool sep, const Environment& environment) {
    return views::toJson(ComposeButtonSmallView(environment, composeButtonWidgetPrompts(), sep).body(environment));
  }
  // The VStack inside the AnyView, with its modifiers.
  static Json content(const Json& tree) { return tree["children"][0]; }
  static const Json* modifier(const Json& node, const std::string& name) {
    for (const auto& modifier : node["modifiers"]) {
      if (modifier["modifier"] == name) return &modifier;
    }
    return nullptr;
  }
  static std::string gradientBase(const Json& node) {
    const auto* background = modifier(node, "containerBackground");
    return (*background)["content"]["stops"][0]["color"];
  }
};

TEST_F(ComposeButton, TodayIsTheLocalCalendarDay) {
  ProcessEnvironment environment("2026-11-22T00:30:00-08:00", "America/Los_Angeles");
  auto& journal = TestJournal::shared();
  journal.addNote("2026-11-21T23:59:59-08:00");  // yesterday locally
  journal.addNote("2026-11-23T00:00:00-08:00");  // tomorrow
  EXPECT_EQ(todayNoteCount(), 0);
  journal.addNote("2026-11-22T23:59:00-08:00");  // later today counts too
  journal.addNote("2026-11-22T00:00:00-08:00");
  EXPECT_EQ(todayNoteCount(), 2);

  // The same instants seen from Tokyo fall on other days.
  environment.set("2026-11-22T17:30:00+09:00", "Asia/Tokyo", "en_US");
  EXPECT_EQ(todayNoteCount(), 2);  // 23:59:59-08:00 and 00:00:00-08:00 are both 22 Nov in Tokyo
}

TEST_F(ComposeButton, ACountTakenByTheCallerDecidesWithoutAnotherRead) {
  ProcessEnvironment environment("2026-11-22T12:00:00Z", "UTC");
  const auto env = ComposeButton::environment(17);
  const auto colored = [&](std::optional<std::ptrdiff_t> known) {
    return gradientBase(content(views::toJson(
        ComposeButtonSmallView(env, composeButtonWidgetPrompts(), /*isSeperateWidget=*/false, known).body(env))));
  };
  // Nothing written today: only a given count makes it grey.
  EXPECT_EQ(colored(2), "gray");
  EXPECT_EQ(colored(std::nullopt), "orange");
  TestJournal::shared().addNote("2026-11-22T08:00:00Z");
  EXPECT_EQ(colored(std::nullopt), "gray");
  // A given count is taken as it is; the journal is not read again.
  EXPECT_EQ(colored(0), "orange");
}

// The stand-alone widget on either side of platform 17 (which moved the
// gradient into the container), orange and grey; the embedded variant is in
// the golden trees of the on-this-day medium widget.
TEST_F(ComposeButton, StandAloneWidgetMatchesTheGoldenTrees) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  for (const int major : {16, 17}) {
    for (const bool writtenToday : {false, true}) {
      TestJournal::shared().clear();
      if (writtenToday) TestJournal::shared().addNote("2026-11-22T07:00:00+01:00");
      platform::RandomSource::seed(1);
      const auto whole = ComposeButtonWidgetEntryView({platform::Clock::now()}).body(this->environment(major));
      views::testing::expectGoldenTree(whole, "compose_button_" + std::to_string(major) +
                                                  (writtenToday ? "_grey.json" : "_orange.json"));
    }
  }
}

TEST_F(ComposeButton, IconSitsTrailingExceptInVibrantRendering) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  const auto row = [&](views::WidgetRenderingMode mode) {
    return content(tree(true, this->environment(17, mode)))["children"][2]["children"];
  };
  EXPECT_EQ(row(views::WidgetRenderingMode::vibrant)[0]["systemName"], "square.and.pencil");
  EXPECT_EQ(row(views::WidgetRenderingMode::vibrant)[1]["type"], "Spacer");
  EXPECT_EQ(row(views::WidgetRenderingMode::accented)[1]["systemName"], "square.and.pencil");
}

TEST(TodayCheckDeathTest, NoteWithoutDateStops) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  TestJournal::shared().clear();
  TestJournal::shared().addNote(std::optional<platform::Date>{});
  EXPECT_DEATH(todayNoteCount(), "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

}  // namespace
}  // namespace quillan::compose
