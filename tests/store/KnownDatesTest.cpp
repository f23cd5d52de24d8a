// A read of the note dates handed to an evaluation (DateColumnRead): judged
// scans answered from it must agree with the table's own scan, and it must
// stop counting as current as soon as the journal's files change.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "StoreTestSupport.hpp"
#include "fixtures/JournalAppender.hpp"
#include "store/DateColumnRead.hpp"
#include "store/NoteDateFilter.hpp"

namespace quillan::store {
namespace {

using testing::contextFor;
using testing::kMoment;
using testing::TemporaryDirectory;
using testing::writeOddlyDatedJournal;
using Dates = std::vector<std::optional<platform::Date>>;

struct Judged {
  Dates seen;
  std::vector<std::int64_t> kept;
};

// Every date the test is asked about, and the kept notes' keys; keeps every other one.
Judged judge(const std::filesystem::path& journal, const testing::NoteDateNarrowing& narrowing = {}) {
  Judged judged;
  const NoteDateTest keep = [&](const std::optional<platform::Date>& date) {
    judged.seen.push_back(date);
    return judged.seen.size() % 2 == 1;
  };
  for (const auto& note : testing::narrowed(*contextFor(journal), keep, narrowing)) {
    judged.kept.push_back(note->objectID().primaryKey);
  }
  return judged;
}

std::shared_ptr<const DateColumnRead> readDates(const std::filesystem::path& journal) {
  auto read = DateColumnRead::read(journal, "Note", "date");
  EXPECT_TRUE(read.has_value());
  return read ? std::make_shared<const DateColumnRead>(std::move(*read)) : nullptr;
}

class KnownDates : public ::testing::Test {
 protected:
  void TearDown() override { useKnownDateColumn(nullptr); }
  TemporaryDirectory directory_;
  std::filesystem::path journal_ = directory_ / "Quillan.sqlite";
};

TEST_F(KnownDates, JudgeEveryStorageClassAsTheTableScanDoes) {
  writeOddlyDatedJournal(journal_);
  const double moment = kMoment.timeIntervalSinceReferenceDate();
  const KeepRanges dayOfTheMoment({moment - 1e9, moment + 1e9}, {{moment - 86400, moment + 86400}});
  const std::pair<const char*, testing::NoteDateNarrowing> reads[] = {
      {"everything", {}}, {"window", NoteDateWindow::aroundDayOf(kMoment)}, {"ranges", dayOfTheMoment}};
  for (const auto& [name, narrowing] : reads) {
    SCOPED_TRACE(name);
    useKnownDateColumn(nullptr);
    const auto scanned = judge(journal_, narrowing);
    useKnownDateColumn(readDates(journal_));
    const auto known = judge(journal_, narrowing);
    EXPECT_EQ(known.seen, scanned.seen);
    EXPECT_EQ(known.kept, scanned.kept);
    EXPECT_GT(scanned.kept.size(), 2u);
  }
  // The read is what the judged scan consults: a date planted in its last (undated) row is the one judged.
  auto bytes = readDates(journal_)->encode();
  const double planted = 12345.0;
  std::memcpy(bytes.data() + bytes.size() - sizeof planted - 1, &planted, sizeof planted);
  bytes.back() = static_cast<char>(DateColumnRead::Storage::number);
  useKnownDateColumn(std::make_shared<const DateColumnRead>(*DateColumnRead::decode(bytes)));
  EXPECT_EQ(judge(journal_).seen.back(), platform::Date::fromReferenceSeconds(planted));
}

TEST_F(KnownDates, StopBeingCurrentWhenTheJournalIsCommittedToReplacedOrRewritten) {
  const auto replacement = directory_ / "replacement.sqlite";
  std::optional<fixtures::JournalAppender> app;  // the app's connection, kept open as the app keeps it
  const auto openApp = [&](const std::filesystem::path& journal) {
    app.emplace(journal);
    app->addNote({.date = kMoment});
  };
  const auto none = [](const std::filesystem::path&) {};
  const struct {
    const char* change;
    std::function<void(const std::filesystem::path&)> before;  // before the read
    std::function<void(const std::filesystem::path&)> apply;   // after it
    bool current;
  } changes[] = {
      {"read by another reader", none, [](const auto& journal) { judge(journal); }, true},
      {"read while the app has it open", openApp, [](const auto& journal) { judge(journal); }, true},
      {"committed through the WAL", openApp, [&](const auto&) { app->addNote({.date = kMoment}); }, false},
      {"committed and closed by the app", none,
       [](const auto& journal) { fixtures::JournalAppender(journal).addNote({.date = kMoment}); }, false},
      {"replaced by rename", none, [&](const auto& journal) { std::filesystem::rename(replacement, journal); }, false},
      {"rewritten in place", none,
       [&](const auto& journal) {
         std::ofstream(journal, std::ios::binary | std::ios::trunc) << std::ifstream(replacement).rdbuf();
       },
       false},
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(change.change);
    writeOddlyDatedJournal(journal_);
    writeOddlyDatedJournal(replacement);
    change.before(journal_);
    const auto read = readDates(journal_);
    ASSERT_TRUE(read->isCurrentFor(journal_, "ZNOTE", "ZDATE"));
    change.apply(journal_);
    EXPECT_EQ(read->isCurrentFor(journal_, "ZNOTE", "ZDATE"), change.current);
    app.reset();
  }
}

}  // namespace
}  // namespace quillan::store
