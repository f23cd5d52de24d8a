#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cmath>

#include "support/GoldenFile.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/MessageFraming.hpp"

namespace quillan::worker {
namespace {

using namespace std::chrono_literals;
using widgets::TimelineReloadPolicy;

std::chrono::steady_clock::time_point soon() { return std::chrono::steady_clock::now() + 50ms; }

// Whole messages arrive in order; a silent peer times out, a closed one (a
// header cut short) is closed, and an oversized or broken message is malformed.
TEST(MessageFraming, MessagesArriveWholeOrFailForTheirReason) {
  int pair[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
  ASSERT_TRUE(writeMessage(pair[0], {{"a", 1}}));
  ASSERT_TRUE(writeMessage(pair[0], {{"log", "caf\xE9"}}));
  EXPECT_EQ(std::get<nlohmann::json>(readMessage(pair[1], soon())), (nlohmann::json{{"a", 1}}));
  EXPECT_EQ(std::get<nlohmann::json>(readMessage(pair[1], soon()))["log"], "caf\xEF\xBF\xBD")
      << "bytes that are not UTF-8 are replaced, not refused";
  EXPECT_EQ(std::get<ReadFailure>(readMessage(pair[1], soon())), ReadFailure::timedOut);
  const std::array<char, 4> huge{'\x7f', '\xff', '\xff', '\xff'};
  ASSERT_EQ(write(pair[0], huge.data(), huge.size()), 4);
  EXPECT_EQ(std::get<ReadFailure>(readMessage(pair[1], soon())), ReadFailure::malformed);
  const char broken[] = "\0\0\0\x03{x}";
  ASSERT_EQ(write(pair[0], broken, 7), 7);
  EXPECT_EQ(std::get<ReadFailure>(readMessage(pair[1], soon())), ReadFailure::malformed);
  ASSERT_EQ(write(pair[0], "\0\0", 2), 2);
  close(pair[0]);
  EXPECT_EQ(std::get<ReadFailure>(readMessage(pair[1], soon())), ReadFailure::closed);
  EXPECT_FALSE(writeMessage(pair[1], {{"a", 1}})) << "no SIGPIPE, just false";
  close(pair[1]);
}

// Answers keep their dates bit for bit, and requests every field.
TEST(EvaluationJson, AnswersAndRequestsSurviveTheTrip) {
  for (const auto& policy : {std::optional(TimelineReloadPolicy::atEnd()), std::optional(TimelineReloadPolicy::never()),
                             std::optional(TimelineReloadPolicy::after(platform::Date::fromReferenceSeconds(1e9 / 3))),
                             std::optional<TimelineReloadPolicy>()}) {
    widgets::TimelineAnswer answer{
        {platform::Date::fromReferenceSeconds(0.1), platform::Date::fromReferenceSeconds(-1.0 / 7)}, policy};
    const auto text = toJson(answer).dump();
    const auto back = timelineAnswerFromJson(nlohmann::json::parse(text));
    EXPECT_EQ(back.entryDates, answer.entryDates);
    EXPECT_EQ(back.policy, answer.policy);
  }
  ViewEvaluation view{"StreakWidget",
                      platform::Date::fromReferenceSeconds(1.5),
                      platform::Date::fromReferenceSeconds(2.25),
                      {views::ColorScheme::dark,
                       views::WidgetRenderingMode::vibrant,
                       {16, 4},
                       views::WidgetFamily::systemMedium,
                       views::LayoutDirection::rightToLeft,
                       views::DynamicTypeSize::accessibility3},
                      {"Asia/Tokyo", "ja_JP@calendar=japanese", 18446744073709551615ull, "/g", "/s"}};
  const auto text = toJson(view).dump();
  EXPECT_EQ(toJson(viewEvaluationFromJson(nlohmann::json::parse(text))).dump(), text);

  TimelineEvaluation timeline{
      "OnThisDayWidget", platform::Date::fromReferenceSeconds(3), widgets::TimelineRequest::placeholder, {}};
  EXPECT_EQ(toJson(timelineEvaluationFromJson(toJson(timeline))), toJson(timeline));
}

// "answer|settings|view JSON" => what reading that worker message says; a NaN
// date is written as null.
std::string readingAnswer(const std::string& question) {
  const auto space = question.find(' ');
  const auto what = question.substr(0, space);
  const auto json = nlohmann::json::parse(question.substr(space + 1));
  try {
    if (what == "answer") timelineAnswerFromJson(json);
    else if (what == "settings") processSettingsFromJson(json);
    else viewEvaluationFromJson(json);
  } catch (const EvaluationJsonError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(EvaluationJson, MalformedMessagesNameWhatWasWrong) {
  quillan::testing::expectGoldenAnswers("worker_messages_refused.txt", readingAnswer);
}

}  // namespace
}  // namespace quillan::worker
