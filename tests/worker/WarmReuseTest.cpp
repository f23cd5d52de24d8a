// The warm worker keeps a read of the note dates from one evaluation to the
// next (NoteDatesKeeper): whichever way the app changes the journal, the next
// evaluation must show the journal as it now is.
#include <gtest/gtest.h>

#include <fstream>

#include "WorkerFixture.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "fixtures/JournalAppender.hpp"
#include "fixtures/JournalWriter.hpp"

namespace quillan::worker {
namespace {

using testing::at;
using testing::JournalFolders;

const char* const kNow = "2026-11-22T09:00:00+01:00";
// Its memories and its compose button judge the notes by date, over the whole
// journal and near today.
const char* const kKind = "OTDComposeWidget";

fixtures::NoteRow note(const char* date, const char* info, std::uint8_t id) {
  return {.date = at(date), .info = std::string(info), .uuid = fixtures::Bytes(16, id)};
}

const fixtures::NoteRow kFirst[] = {note("2025-11-22T10:00:00+01:00", "a year ago", 1),
                                    note("2026-11-20T10:00:00+01:00", "two days ago", 2)};
// Another memory, and a note today, which turns the compose button grey.
const fixtures::NoteRow kLater[] = {note("2024-11-22T08:00:00+01:00", "two years ago", 3),
                                    note("2026-11-22T08:30:00+01:00", "this morning", 4)};

void writeJournal(const std::filesystem::path& path, bool withLater) {
  fixtures::JournalWriter writer(path);
  for (const auto& row : kFirst) writer.addNote(row);
  if (withLater) {
    for (const auto& row : kLater) writer.addNote(row);
  }
}

class WarmReuseTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folders_ = std::make_unique<JournalFolders>();
    writeJournal(folders_->makeContainer("first") / "Quillan.sqlite", false);
    writeJournal(folders_->makeContainer("later") / "Quillan.sqlite", true);
    worker_ = std::make_unique<WidgetWorker>(testing::answeringOptions());
  }
  static void TearDownTestSuite() {
    worker_.reset();
    folders_.reset();
  }

  // The view of the widget's first entry, or the failure's reason.
  static std::string view(const std::string& container) {
    const auto shown = testing::firstView(*worker_, kKind, at(kNow), folders_->settings(container));
    return shown.value() ? *shown.value() : shown.failure()->reason;
  }

  static inline std::unique_ptr<JournalFolders> folders_;
  static inline std::unique_ptr<WidgetWorker> worker_;
};

TEST_F(WarmReuseTest, EachWayTheAppChangesTheJournalIsSeenByTheNextEvaluation) {
  const auto first = view("first");
  const auto later = view("later");
  ASSERT_NE(first, later);
  std::optional<fixtures::JournalAppender> app;  // the app's connection, kept open as the app keeps it
  // A journal replaced or rewritten whole is one the app had closed: a -wal
  // left beside it would be replayed onto the new file.
  const struct {
    const char* change;
    bool appOpen;
    std::function<void(const std::filesystem::path& journal, const std::filesystem::path& scratch)> apply;
  } changes[] = {
      {"committed through the WAL", true,
       [&](const auto&, const auto&) {
         for (const auto& row : kLater) app->addNote(row);
       }},
      {"replaced by rename", false,
       [](const auto& journal, const auto& scratch) {
         writeJournal(scratch, true);
         std::filesystem::rename(scratch, journal);
       }},
      {"rewritten in place", false,
       [](const auto& journal, const auto& scratch) {
         writeJournal(scratch, true);
         std::ofstream(journal, std::ios::binary | std::ios::trunc) << std::ifstream(scratch).rdbuf();
       }},
  };
  for (const auto& change : changes) {
    SCOPED_TRACE(change.change);
    const std::string container = change.change;
    const auto journal = folders_->makeContainer(container) / "Quillan.sqlite";
    writeJournal(journal, false);
    if (change.appOpen) app.emplace(journal);
    EXPECT_EQ(view(container), first);
    EXPECT_EQ(view(container), first) << "kept read";
    change.apply(journal, journal.parent_path().parent_path() / "scratch.sqlite");
    EXPECT_EQ(view(container), later);
    app.reset();
  }
}

// A replay tells the warm worker of its own writes (JournalWriteNotice), and
// the worker adds the notes to its read instead of reading the journal again:
// only while its read was current as the write began.
TEST_F(WarmReuseTest, TheHostsOwnWriteToldAroundItIsSeenByTheNextEvaluation) {
  const auto later = view("later");
  const struct {
    const char* name;
    std::size_t untoldBeforeBegins;  // of kLater, committed before the write is told to begin
  } cases[] = {{"every note told", 0}, {"a commit before the write began", 1}};
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const std::string container = test.name;
    const auto journal = folders_->makeContainer(container) / "Quillan.sqlite";
    writeJournal(journal, false);
    fixtures::JournalAppender app(journal);
    ASSERT_NE(view(container), later);
    JournalWriteNotice notice{JournalWriteNotice::Stage::begins, journal, {}};
    for (std::size_t row = 0; row < test.untoldBeforeBegins; ++row) app.addNote(kLater[row]);
    worker_->hear(notice);
    for (std::size_t row = test.untoldBeforeBegins; row < std::size(kLater); ++row) {
      const auto key = app.addNote(kLater[row]);
      notice.rowsAdded.push_back({key, kLater[row].date->timeIntervalSinceReferenceDate(),
                                  store::DateColumnRead::Storage::number});
    }
    notice.stage = JournalWriteNotice::Stage::ended;
    worker_->hear(notice);
    EXPECT_EQ(view(container), later);
  }
}

}  // namespace
}  // namespace quillan::worker
