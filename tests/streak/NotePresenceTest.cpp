#include <gtest/gtest.h>

#include "platform/Clock.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakDays.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"

namespace quillan::streak {
namespace {

using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;

class NotePresence : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
  TestJournal& journal = TestJournal::shared();
};

struct PresenceCase {
  const char* zone;
  const char* now;
  const char* note;
  std::int64_t offset;  // 0: today
  bool written;
};

// Days are local calendar days: the boundaries fall at local midnight (or the
// first instant after a missing one), never at UTC midnight or now - 24 h.
constexpr PresenceCase kPresence[] = {
    {"Europe/Berlin", "2026-11-22T00:01:00+01:00", "2026-11-21T23:59:00+01:00", -1, true},
    {"Europe/Berlin", "2026-11-22T00:01:00+01:00", "2026-11-21T23:59:00+01:00", 0, false},
    {"Europe/Berlin", "2026-11-22T23:59:00+01:00", "2026-11-22T00:00:00+01:00", 0, true},
    {"Europe/Berlin", "2026-11-22T23:59:00+01:00", "2026-11-21T00:00:00+01:00", -1, true},
    {"Europe/Berlin", "2026-11-22T12:00:00+01:00", "2026-11-23T00:00:00+01:00", 0, false},
    {"Europe/Berlin", "2026-11-22T12:00:00+01:00", "2026-11-18T00:00:00+01:00", -4, true},
    {"Europe/Berlin", "2026-11-22T12:00:00+01:00", "2026-11-17T23:59:59+01:00", -4, false},
    {"Europe/Berlin", "2026-03-30T12:00:00+02:00", "2026-03-29T00:30:00+01:00", -1, true},
    {"Europe/Berlin", "2026-03-30T12:00:00+02:00", "2026-03-29T23:59:00+02:00", -1, true},
    {"Europe/Berlin", "2026-03-30T12:00:00+02:00", "2026-03-30T00:00:00+02:00", -1, false},
    // West of UTC in the evening the UTC date is already tomorrow's.
    {"America/Los_Angeles", "2026-11-22T21:00:00-08:00", "2026-11-22T20:00:00-08:00", 0, true},
    {"America/Los_Angeles", "2026-11-22T21:00:00-08:00", "2026-11-22T20:00:00-08:00", -1, false},
    {"America/Los_Angeles", "2026-11-22T21:00:00-08:00", "2026-11-21T20:00:00-08:00", -1, true},
    // The day of 8 March 2026 in Havana begins at 01:00; its moment seen from
    // four days later at 00:30 (a wall time missing that day) still lies in it.
    {"America/Havana", "2026-03-12T00:30:00-04:00", "2026-03-08T01:00:00-04:00", -4, true},
    {"America/Havana", "2026-03-12T00:30:00-04:00", "2026-03-07T23:59:00-05:00", -4, false},
    {"America/Havana", "2026-03-09T00:00:00-04:00", "2026-03-08T23:59:00-04:00", -1, true},
    {"America/Havana", "2026-03-09T00:00:00-04:00", "2026-03-07T23:59:00-05:00", -1, false},
    {"America/Santiago", "2026-09-09T00:15:00-03:00", "2026-09-06T01:00:00-03:00", -3, true},
    {"America/Santiago", "2026-09-09T00:15:00-03:00", "2026-09-05T23:59:00-04:00", -3, false},
    // 25 hours later, 23 November there; the same day of the month a year before.
    {"Pacific/Kiritimati", "2026-11-22T12:00:00+14:00", "2026-11-22T12:00:00-11:00", 0, false},
    {"Pacific/Kiritimati", "2026-11-22T12:00:00+14:00", "2025-11-22T12:00:00+14:00", 0, false},
};

TEST_F(NotePresence, ANoteMarksTheLocalCalendarDayItWasWrittenOn) {
  for (const auto& c : kPresence) {
    journal.clear();
    journal.addNote(c.note);
    ProcessEnvironment environment(c.now, c.zone);
    const auto moment = c.offset == 0 ? platform::Clock::now() : dayMoment(c.offset);
    EXPECT_EQ(hasNotes(moment), c.written) << c.zone << " now " << c.now << " note " << c.note << " " << c.offset;
  }
}

TEST_F(NotePresence, TheSameNoteMovesDayWithTheCurrentZone) {
  journal.addNote("2026-11-22T06:00:00+00:00");
  ProcessEnvironment environment("2026-11-23T12:00:00+00:00", "Europe/London");
  EXPECT_TRUE(hasNotes(dayMoment(-1)));
  environment.set("2026-11-23T12:00:00+00:00", "America/Los_Angeles", "en_US");
  EXPECT_FALSE(hasNotes(dayMoment(-1)));
  EXPECT_TRUE(hasNotes(dayMoment(-2)));
}

using NotePresenceDeathTest = NotePresence;

TEST_F(NotePresenceDeathTest, ANoteWithoutADateStopsTheProcessWhereverItIs) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  journal.addNote("2026-11-22T10:00:00+01:00");
  journal.addNote(std::nullopt);
  EXPECT_DEATH(hasNotes(platform::Clock::now()),
               "OnThisDayWidgetExtension/StreakMediumView: Fatal error: Unexpectedly found nil");
  journal.clear();
}

}  // namespace
}  // namespace quillan::streak
