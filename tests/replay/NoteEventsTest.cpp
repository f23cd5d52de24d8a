#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "hosting/UsageError.hpp"
#include "platform/ISO8601.hpp"
#include "replay/NoteEvents.hpp"
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

TEST_F(NoteEventsFile, EveryBadEventIsOneLineNamingTheEventAndWhatWasWrong) {
  struct Case {
    std::string text;
    std::string problem;  // what the message says after "--events: "
  };
  const std::string note = R"("note": {"date": "2026-11-22T09:00:00Z", "text": "x"})";
  const std::vector<Case> cases = {
      {"{not json", "not JSON"},
      {R"({"at": "2026-11-22T09:00:00Z"})", "not a JSON array"},
      {R"([{"at": "2026-11-22T09:00:00Z", )" + note + R"(, "mood": 3}])", "event 0: unknown key"},
      {R"([{"at": "2026-11-22T09:00:00Z", )" + note + R"(}, {"at": "tomorrow", )" + note + "}]",
       "event 1: at is not an ISO-8601"},
      {R"([{"at": "2026-11-22T09:00:00Z", "note": {"date": "yesterday", "text": "x"}}])", "event 0: note.date"},
      {R"([{"at": "2026-11-24T09:00:00Z", )" + note + "}]", "event 0: at lies outside"},
      {R"([{"at": "2026-11-21T23:59:59Z", )" + note + "}]", "event 0: at lies outside"},
      {R"([{"at": "2026-11-22T09:00:00Z", "note": {"date": "2026-11-22T09:00:00Z", "text": 5}}])",
       "event 0: note.text is not a string"},
      {R"([{"at": "2026-11-22T09:00:00Z", "note": {"date": "2026-11-22T09:00:00Z"}}])", "event 0: the note has no"},
      {R"([{"at": "2026-11-22T09:00:00Z", "note": {"date": "2026-11-22T09:00:00Z", "text": ")" +
           std::string(kMaxNoteTextBytes + 1, 'a') + "\"}}]",
       "event 0: note.text is longer"},
  };
  for (const auto& c : cases) {
    try {
      read(c.text);
      ADD_FAILURE() << "accepted " << c.text.substr(0, 200);
    } catch (const hosting::UsageError& error) {
      const std::string message = error.what();
      EXPECT_EQ(message.rfind("--events: " + c.problem, 0), 0u) << c.text.substr(0, 200) << "\n" << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }
  }
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
