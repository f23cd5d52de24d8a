#include <gtest/gtest.h>

#include "StreakTree.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakDays.hpp"
#include "streak/StreakMediumView.hpp"
#include "streak/StreakWidget.hpp"
#include "streak/StreakWidgetWidgetEntryView.hpp"
#include "support/GoldenQuestion.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"
#include "views/GoldenTree.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::streak {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;
using testing::DrawnCircle;
using testing::readRow;

Environment environmentFor(ColorScheme scheme, PlatformVersion version) {
  Environment environment;
  environment.colorScheme = scheme;
  environment.platformVersion = version;
  environment.family = WidgetFamily::systemMedium;
  return environment;
}

Node drawEntryView(ColorScheme scheme = ColorScheme::light, PlatformVersion version = {17, 0}) {
  return StreakWidgetWidgetEntryView(StreakEntry{platform::Clock::now()}).body(environmentFor(scheme, version));
}

std::vector<bool> ticks(const std::vector<DrawnCircle>& row) {
  std::vector<bool> result;
  for (const auto& circle : row) result.push_back(circle.ticked);
  return result;
}

class StreakMediumViewTest : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
  TestJournal& journal = TestJournal::shared();
};

// NOW | NOTES => the five circles, oldest first, x where ticked.
TEST_F(StreakMediumViewTest, TicksTheDaysWithNotesOnly) {
  quillan::testing::expectGoldenAnswers("streak_ticks.txt", [this](const std::string& question) {
    const auto cells = quillan::testing::cells(question);
    journal.clear();
    for (const auto& note : quillan::testing::words(cells.at(1))) journal.addNote(note);
    ProcessEnvironment environment(cells[0], "Europe/Berlin");
    std::string marks;
    for (const bool ticked : ticks(readRow(drawEntryView()))) marks += ticked ? 'x' : '-';
    return marks;
  });
}

TEST_F(StreakMediumViewTest, TicksAreThoseOfAFetchPerDay) {
  const char* notes[] = {"2026-03-26T23:59:59+01:00", "2026-03-28T00:00:00+01:00", "2026-03-29T01:59:00+01:00",
                         "2026-03-29T03:00:00+02:00", "2026-03-30T23:59:59+02:00", "2026-03-31T00:00:00+02:00",
                         "2026-04-02T00:00:00+02:00", "2025-03-29T12:00:00+01:00"};
  for (const char* note : notes) journal.addNote(note);
  for (const char* now : {"2026-03-28T00:00:00+01:00", "2026-03-30T12:00:00+02:00", "2026-03-31T00:00:00+02:00",
                          "2026-04-01T23:59:59+02:00", "2026-04-02T00:00:01+02:00"}) {
    ProcessEnvironment environment(now, "Europe/Berlin");
    std::vector<bool> perDay;
    for (const auto offset : kPastDateRange) perDay.push_back(hasNotes(dayMoment(offset)));
    perDay.push_back(hasNotes(platform::Clock::now()));
    EXPECT_EQ(ticks(readRow(drawEntryView())), perDay) << now;
  }
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
  const auto view = widget.content(entryDate, environmentFor(ColorScheme::light, {17, 0}));
  EXPECT_EQ(view, StreakMediumView(environmentFor(ColorScheme::light, {17, 0}), {-4, -3, -2, -1})
                      .body(environmentFor(ColorScheme::light, {17, 0})));
  EXPECT_TRUE(readRow(view).back().ticked);
}

}  // namespace
}  // namespace quillan::streak
