#include <gtest/gtest.h>

#include "StreakTree.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakDays.hpp"
#include "streak/StreakMediumView.hpp"
#include "streak/StreakWidget.hpp"
#include "streak/StreakWidgetWidgetEntryView.hpp"
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

struct TickCase {
  const char* now;
  std::vector<const char*> notes;
  std::vector<bool> ticks;
};

const TickCase kTicks[] = {
    {"2026-03-06T12:00:00+01:00", {}, std::vector<bool>(5, false)},
    {"2026-03-06T12:00:00+01:00",
     {"2026-03-02T07:00:00+01:00", "2026-03-03T07:00:00+01:00", "2026-03-04T07:00:00+01:00",
      "2026-03-05T07:00:00+01:00", "2026-03-06T07:00:00+01:00"},
     std::vector<bool>(5, true)},
    // Yesterday two minutes ago, two notes on one day, five days ago (never
    // shown) and tomorrow (marks nothing).
    {"2026-03-06T00:01:00+01:00",
     {"2026-03-05T23:59:00+01:00", "2026-03-03T08:00:00+01:00", "2026-03-03T20:00:00+01:00",
      "2026-03-01T12:00:00+01:00", "2026-03-07T09:00:00+01:00"},
     {false, true, false, true, false}},
};

TEST_F(StreakMediumViewTest, TicksTheDaysWithNotesOnly) {
  for (const auto& c : kTicks) {
    journal.clear();
    for (const char* note : c.notes) journal.addNote(note);
    ProcessEnvironment environment(c.now, "Europe/Berlin");
    EXPECT_EQ(ticks(readRow(drawEntryView())), c.ticks) << c.now << " " << c.notes.size() << " notes";
  }
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

struct GoldenCase {
  const char* file;
  ColorScheme scheme;
  PlatformVersion version;
  std::vector<const char*> notes;
};

// The whole face in both schemes, on and before platform 17 (which moved the
// background and margins into the container), with written and unwritten
// past days and today both ways.
const GoldenCase kGoldenTrees[] = {
    {"streak_medium_dark_16.json",
     ColorScheme::dark,
     {16, 4},
     {"2026-03-05T21:00:00+01:00", "2026-03-06T07:30:00+01:00"}},
    {"streak_medium_light_16.json", ColorScheme::light, {16, 0}, {"2026-03-02T08:00:00+01:00"}},
    {"streak_medium_light_17.json", ColorScheme::light, {17, 0}, {"2026-03-04T21:00:00+01:00"}},
    {"streak_medium_dark_17.json", ColorScheme::dark, {17, 0}, {"2026-03-03T12:00:00+01:00"}},
};

TEST_F(StreakMediumViewTest, MatchesTheGoldenTrees) {
  ProcessEnvironment environment("2026-03-06T18:00:00+01:00", "Europe/Berlin");
  for (const auto& c : kGoldenTrees) {
    SCOPED_TRACE(c.file);
    journal.clear();
    for (const char* note : c.notes) journal.addNote(note);
    views::testing::expectGoldenTree(drawEntryView(c.scheme, c.version), c.file);
  }
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
