#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "hosting/UsageError.hpp"
#include "platform/ISO8601.hpp"
#include "replay/NoteEvents.hpp"
#include "support/CommandAnswers.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::replay {
namespace {

platform::Date at(const std::string& iso) { return *platform::ISO8601::parse(iso); }

class NoteEventsFile : public ::testing::Test {
 protected:
  std::vector<NoteEvent> read(const std::string& text) const {
    std::ofstream(path(), std::ios::trunc) << text;
    return readNoteEvents(path(), at("2026-11-22T00:00:00Z"), at("2026-11-23T00:00:00Z"));
  }
  std::filesystem::path path() const { return folder_.path() / "events.json"; }

 private:
  testing::TemporaryFolder folder_;
};

// Each line of note_events_refused.txt is a file's text => the one line refusing it, the
// file's folder written FOLDER.
TEST_F(NoteEventsFile, EveryBadEventIsOneLineNamingTheEventAndWhatWasWrong) {
  const auto refusal = [this](const std::string& text) {
    try {
      return "accepted " + std::to_string(read(text).size());
    } catch (const hosting::UsageError& error) {
      return testing::escaped(testing::replacedAll(error.what(), path().parent_path().string(), "FOLDER"));
    }
  };
  testing::expectGoldenAnswers("note_events_refused.txt", refusal);
  const auto tooLong = refusal(R"([{"at": "2026-11-22T09:00:00Z", "note": {"date": "2026-11-22T09:00:00Z", "text": ")" +
                               std::string(kMaxNoteTextBytes + 1, 'a') + "\"}}]");
  EXPECT_EQ(tooLong.rfind("--events: event 0: note.text is longer", 0), 0u) << tooLong;
  std::filesystem::remove(path());
  EXPECT_THROW(readNoteEvents(path(), at("2026-11-22T00:00:00Z"), at("2026-11-23T00:00:00Z")), hosting::UsageError);
}

TEST_F(NoteEventsFile, EventsComeInTimeOrderAndThoseOfOneInstantInTheFilesOrder) {
  const auto events = read(R"([
      {"at": "2026-11-22T12:00:00+01:00", "note": {"date": "2026-11-20T08:00:00Z", "text": "second"}},
      {"at": "2026-11-22T09:00:00Z", "note": {"date": "2026-11-21T08:00:00Z", "text": "third"}},
      {"at": "2026-11-22T06:00:00Z", "note": {"date": "2026-11-22T06:00:00Z", "text": "first"}},
      {"at": "2026-11-22T11:00:00Z", "note": {"date": "2026-11-22T06:00:00Z", "text": "fourth"}}])");
  ASSERT_EQ(events.size(), 4u);
  // 12:00+01:00 and 11:00Z are one instant: the file's order decides; 09:00Z comes before both.
  std::vector<std::string> texts;
  for (const auto& event : events) texts.push_back(event.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"first", "third", "second", "fourth"}));
  EXPECT_EQ(events[0].noteDate, at("2026-11-22T06:00:00Z"));
  EXPECT_EQ(events[1].at, at("2026-11-22T09:00:00Z"));
  EXPECT_EQ(events[2].at, events[3].at);
}

}  // namespace
}  // namespace quillan::replay
