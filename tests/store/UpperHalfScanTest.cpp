// Reads narrowed by ranges against the literal filter, on a journal small
// enough for one scan and on one whose primary keys reach far enough to be
// judged in two halves: the test sees the same dates in the same order, save
// those the ranges rule out, and the same notes come back.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StoreTestSupport.hpp"
#include "platform/ISO8601.hpp"
#include "store/NoteDateFilter.hpp"

namespace quillan::store {
namespace {

using testing::contextFor;
using testing::fetchNotes;
using testing::TemporaryDirectory;
using Dates = std::vector<std::optional<platform::Date>>;

TEST(RangedReads, AskAboutEveryDateTheRangesLeaveInStoreOrderInOneScanOrTwoHalves) {
  const auto moment = *platform::ISO8601::parse("2026-05-01T12:00:00Z");
  const double day = 86400.0;
  const double at = moment.timeIntervalSinceReferenceDate();
  const KeepRanges ranges({at - 1000 * day, at + 1000 * day}, {{at - 400 * day, at - 300 * day}, {at, at + day}});
  for (const std::int64_t keySpacing : {1, 50000}) {
    SCOPED_TRACE("primary keys " + std::to_string(keySpacing) + " apart");
    TemporaryDirectory directory;
    {
      fixtures::JournalWriter writer(directory / "Quillan.sqlite");
      for (int i = 0; i < 24; ++i) {
        // Back and forth across the ranges' edges and beyond their span.
        const double offsets[] = {-1500, -400, -350, -300, -2, 0, 0.5, 1, 2, 1500};
        writer.addNote({.date = moment.addingTimeInterval(offsets[(i * 7) % 10] * day + i), .info = std::to_string(i)});
      }
      writer.execute("UPDATE ZNOTE SET ZDATE = NULL WHERE Z_PK IN (3, 20)");
      writer.execute("UPDATE ZNOTE SET ZDATE = 'soon' WHERE Z_PK IN (5, 17)");
      writer.execute("UPDATE ZNOTE SET ZDATE = CAST(ZDATE AS INTEGER) WHERE Z_PK IN (8, 14)");
      writer.execute("UPDATE ZNOTE SET Z_PK = Z_PK * " + std::to_string(keySpacing));
    }
    auto context = contextFor(directory / "Quillan.sqlite");
    Dates everyDate, asked;
    const auto keepLate = [](Dates& seen) {
      return [&seen](const std::optional<platform::Date>& date) {
        seen.push_back(date);
        return !date || date->timeIntervalSinceReferenceDate() > 0;
      };
    };
    std::vector<std::shared_ptr<Note>> expected;
    const NoteDateTest literal = keepLate(everyDate);
    for (auto& note : fetchNotes(*context)) {
      if (literal(note->date())) expected.push_back(note);
    }
    const auto kept = fetchNotesWhereDate(*context, ranges, keepLate(asked));
    ASSERT_TRUE(kept.ok());
    Dates left;
    for (const auto& date : everyDate) {
      if (!date || ranges.mayKeep(date->timeIntervalSinceReferenceDate())) left.push_back(date);
    }
    EXPECT_EQ(asked, left);
    std::vector<std::shared_ptr<Note>> expectedLeft;
    for (const auto& note : expected) {
      if (!note->date() || ranges.mayKeep(note->date()->timeIntervalSinceReferenceDate())) {
        expectedLeft.push_back(note);
      }
    }
    EXPECT_EQ(kept.value(), expectedLeft);
    EXPECT_LT(asked.size(), everyDate.size());
  }
}

}  // namespace
}  // namespace quillan::store
