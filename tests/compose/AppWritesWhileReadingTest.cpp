#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "compose/TodayCheck.hpp"
#include "store/CoreDataStack.hpp"
#include "store/Note.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"

namespace quillan::compose {
namespace {

using testing::ProcessEnvironment;
using testing::TestJournal;

constexpr int kCommits = 300;

// The app commits one note at a time while the widgets read. Every answer the
// widgets get must be a state the app committed: never a failure, never a
// count outside what was committed before and after the read, never going
// back in time. (jthread: a failed assertion still waits for the app.)
TEST(AppWritesWhileReading, EveryAnswerIsACommittedState) {
  ProcessEnvironment environment("2026-11-22T12:00:00+01:00", "Europe/Berlin");
  TestJournal::shared().clear();
  const auto today = *platform::ISO8601::parse("2026-11-22T09:00:00+01:00");
  std::atomic<int> committed = 0;
  std::jthread app([&] {
    for (int i = 0; i < kCommits; ++i) {
      TestJournal::shared().addNote(today.addingTimeInterval(i), "note " + std::to_string(i));
      committed.store(i + 1);
    }
  });

  auto& context = *store::CoreDataStack::shared().persistentContainer().viewContext();
  int reads = 0;
  std::ptrdiff_t lastCount = 0;
  while (reads < 20 || committed.load() < kCommits) {
    const int before = committed.load();
    const auto count = todayNoteCount();
    auto fetched = context.fetch(store::Note::fetchRequest());
    const int after = committed.load();
    ASSERT_TRUE(fetched.ok()) << fetched.error().description();
    ASSERT_GE(count, before);
    // The note being committed may be seen before the app counts it.
    ASSERT_LE(count, after + 1);
    ASSERT_GE(count, lastCount) << "a later read saw fewer notes";
    ASSERT_GE(static_cast<std::ptrdiff_t>(fetched.value().size()), count);
    ASSERT_LE(static_cast<int>(fetched.value().size()), after + 1);
    lastCount = count;
    ++reads;
  }
  app.join();
  EXPECT_EQ(todayNoteCount(), kCommits);
}

}  // namespace
}  // namespace quillan::compose
