#include <gtest/gtest.h>

#include "StreakTree.hpp"
#include "streak/StreakMediumView.hpp"
#include "streak/StreakWidget.hpp"
#include "streak/StreakWidgetWidgetEntryView.hpp"
#include "support/GoldenQuestion.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"
#include "views/GoldenTree.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::streak {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using testing::tickMarks;

Environment environmentFor(ColorScheme scheme, PlatformVersion version) {
  return {.colorScheme = scheme, .platformVersion = version, .family = WidgetFamily::systemMedium};
}

Node drawEntryView(ColorScheme scheme = ColorScheme::light, PlatformVersion version = {17, 0}) {
  return StreakWidgetWidgetEntryView(StreakEntry{platform::Clock::now()}).body(environmentFor(scheme, version));
}

using StreakMediumViewTest = quillan::testing::JournalTest;

// NOW | NOTES => the five circles, oldest first, x where ticked.
TEST_F(StreakMediumViewTest, TicksTheDaysWithNotesOnly) {
  quillan::testing::expectGoldenAnswers("streak_ticks.txt", [this](const std::string& question) {
    const auto cells = quillan::testing::cells(question);
    journal.clear();
    for (const auto& note : quillan::testing::words(cells.at(1))) journal.addNote(note);
    ProcessEnvironment environment(cells[0], "Europe/Berlin");
    return tickMarks(drawEntryView());
  });
}

// The whole face in both schemes, on and before platform 17 (which moved the
// background and margins into the container), with written and unwritten
// past days and today both ways.
TEST_F(StreakMediumViewTest, MatchesTheGoldenTrees) {
  ProcessEnvironment environment("2026-03-06T18:00:00+01:00", "Europe/Berlin");
  quillan::testing::forEachCase("streak_trees.txt", [this](const std::vector<std::string>& cells) {
    journal.clear();
    for (const auto& note : quillan::testing::words(cells[3])) journal.addNote(note);
    views::testing::expectGoldenTree(drawEntryView(parseColorScheme(cells[1]), parsePlatformVersion(cells[2])),
                                     cells[0]);
  });
}

TEST_F(StreakMediumViewTest, TheWidgetDrawsFromTheMomentOfDrawingNotTheEntry) {
  const auto widget = StreakWidget{}.body();
  ProcessEnvironment environment("2026-03-06T15:00:00+01:00", "Europe/Berlin");
  journal.addNote("2026-03-06T14:00:00+01:00");
  const auto entryDate = widget.provider(widgets::TimelineRequest::timeline, {}).entryDates.at(0);
  const auto light = environmentFor(ColorScheme::light, {17, 0});
  const auto view = widget.content(entryDate, light);
  EXPECT_EQ(view, StreakMediumView(light, {-4, -3, -2, -1}).body(light));
  EXPECT_EQ(tickMarks(view).back(), 'x');
}

}  // namespace
}  // namespace quillan::streak
