#include <gtest/gtest.h>

#include "compose/ComposeButtonSmallView.hpp"
#include "compose/ComposeButtonWidget.hpp"
#include "compose/ComposeLockScreenWidget.hpp"
#include "compose/TodayCheck.hpp"
#include "platform/RandomSource.hpp"
#include "support/GoldenQuestion.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"
#include "views/GoldenTree.hpp"

namespace quillan::compose {
namespace {

using testing::ProcessEnvironment;
using views::Environment;

class ComposeButton : public testing::JournalTest {
 protected:
  void TearDown() override { platform::RandomSource::useSystem(); }

  static Environment environment(int major, views::WidgetRenderingMode mode = views::WidgetRenderingMode::fullColor) {
    return {.renderingMode = mode, .platformVersion = {major, 0}};
  }
  // The prompt is drawn afresh, from the same seed, for every tree.
  static views::Node drawn(const Environment& environment, std::optional<std::ptrdiff_t> knownCount = std::nullopt) {
    platform::RandomSource::seed(1);
    return ComposeButtonSmallView(environment, composeButtonWidgetPrompts(), false, knownCount).body(environment);
  }
};

TEST_F(ComposeButton, ACountTakenByTheCallerDecidesWithoutAnotherRead) {
  ProcessEnvironment environment("2026-11-22T12:00:00Z", "UTC");
  const auto env = this->environment(17);
  const auto orange = drawn(env);
  // Nothing written today: only a given count makes it grey.
  const auto givenTwo = drawn(env, 2);
  journal.addNote("2026-11-22T08:00:00Z");
  const auto grey = drawn(env);
  EXPECT_NE(grey, orange);
  EXPECT_EQ(givenTwo, grey);
  // A given count is taken as it is; the journal is not read again.
  EXPECT_EQ(drawn(env, 0), orange);
}

// The stand-alone widgets on either side of platform 17 (which moved the
// gradient and the lock screen's background into the container): the button
// orange and grey, its icon leading in vibrant rendering, and the lock screen's
// symbol filling its circular slot. The embedded button is in the golden trees
// of the on-this-day medium widget.
TEST_F(ComposeButton, StandAloneWidgetsMatchTheGoldenTrees) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  quillan::testing::forEachCase("compose_button_trees.txt", [this](const std::vector<std::string>& cells) {
    journal.clear();
    if (cells[3] == "written today") journal.addNote("2026-11-22T07:00:00+01:00");
    platform::RandomSource::seed(1);
    auto env = this->environment(std::stoi(cells[1]), views::parseRenderingMode(cells[2]));
    if (cells.at(4) == "lock screen") env.family = views::WidgetFamily::accessoryCircular;
    views::testing::expectGoldenTree(env.family == views::WidgetFamily::accessoryCircular
                                         ? ComposeLockScreenWidgetEntryView({platform::Clock::now()}).body(env)
                                         : ComposeButtonWidgetEntryView({platform::Clock::now()}).body(env),
                                     cells[0]);
  });
}

using TodayCheckDeathTest = testing::JournalTest;

TEST_F(TodayCheckDeathTest, NoteWithoutDateStops) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  journal.addNote(std::optional<platform::Date>{});
  EXPECT_DEATH(todayNoteCount(), "Fatal error: Unexpectedly found nil while unwrapping an Optional value");
}

}  // namespace
}  // namespace quillan::compose
