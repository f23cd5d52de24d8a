#include <gtest/gtest.h>

#include "platform/Clock.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakDays.hpp"
#include "support/GoldenFile.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::streak {
namespace {

using quillan::testing::ProcessEnvironment;
using NotePresence = quillan::testing::JournalTest;

TEST_F(NotePresence, ANoteMarksTheLocalCalendarDayItWasWrittenOn) {
  quillan::testing::expectGoldenAnswers("note_presence.txt", [this](const std::string& question) {
    const auto args = quillan::testing::words(question);
    journal.clear();
    journal.addNote(args[2]);
    ProcessEnvironment environment(args[1], args[0]);
    const auto offset = std::stoll(args[3]);
    return hasNotes(offset == 0 ? platform::Clock::now() : dayMoment(offset)) ? "on that day" : "not on it";
  });
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
