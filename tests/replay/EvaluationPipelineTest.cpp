#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "replay/EvaluationPipeline.hpp"
#include "support/AnsweringWorkerOptions.hpp"
#include "support/TemporaryFolder.hpp"
#include "worker/EvaluationJson.hpp"

namespace quillan::replay {
namespace {

namespace fs = std::filesystem;
using worker::TimelineEvaluation;
using worker::ViewEvaluation;
using Asked = std::variant<ViewEvaluation, TimelineEvaluation>;

platform::Date at(const char* iso) { return *platform::ISO8601::parse(iso); }

// Whatever is expected and however the asking strays from it, each view or
// timeline asked for is answered as the worker answers it directly.
class EvaluationPipelineTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new testing::TemporaryFolder("quillan-pipeline");
    fs::create_directories(folder_->path() / "group");
    fs::create_directories(folder_->path() / "Application Support");
    fixtures::JournalWriter writer(folder_->path() / "group" / "Quillan.sqlite");
    writer.addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
    writer.addNote({.date = at("2026-11-22T08:00:00+01:00"), .info = std::string("this morning")});
    first_ = new worker::WidgetWorker(testing::answeringOptions());
    second_ = new worker::WidgetWorker(testing::answeringOptions());
  }
  static void TearDownTestSuite() {
    delete second_;
    delete first_;
    delete folder_;
  }

  static worker::ProcessSettings settings() {
    worker::ProcessSettings settings;
    settings.groupContainer = folder_->path() / "group";
    settings.appSupport = folder_->path() / "Application Support";
    settings.timeZone = "Europe/Berlin";
    settings.locale = "en_US";
    settings.seed = 7;
    return settings;
  }

  static ViewEvaluation evaluation(const char* kind, views::WidgetFamily family, views::ColorScheme scheme) {
    views::Environment environment;
    environment.family = family;
    environment.colorScheme = scheme;
    return {kind, at("2026-11-22T00:00:00+01:00"), at("2026-11-22T09:00:00+01:00"), environment, settings()};
  }

  static TimelineEvaluation timeline(const char* kind, const char* asOf) {
    return {kind, at(asOf), widgets::TimelineRequest::timeline, settings()};
  }

  static std::string answerOf(const worker::Evaluation<std::string>& evaluation) {
    return evaluation.value() ? *evaluation.value() : "failed: " + evaluation.failure()->reason;
  }
  static std::string answerOf(const worker::Evaluation<widgets::TimelineAnswer>& evaluation) {
    return evaluation.value() ? worker::toJson(*evaluation.value()).dump() : "failed: " + evaluation.failure()->reason;
  }
  template <typename Answerer>
  static std::string answerOf(Answerer& answerer, const Asked& asked) {
    if (const auto* view = std::get_if<ViewEvaluation>(&asked)) return answerOf(answerer.view(*view));
    return answerOf(answerer.timeline(std::get<TimelineEvaluation>(asked)));
  }

  static testing::TemporaryFolder* folder_;
  static worker::WidgetWorker* first_;
  static worker::WidgetWorker* second_;
};

testing::TemporaryFolder* EvaluationPipelineTest::folder_ = nullptr;
worker::WidgetWorker* EvaluationPipelineTest::first_ = nullptr;
worker::WidgetWorker* EvaluationPipelineTest::second_ = nullptr;

TEST_F(EvaluationPipelineTest, AnswersEveryViewAsTheWorkerDoesHoweverTheAskingStraysFromWhatWasExpected) {
  using views::ColorScheme;
  using views::WidgetFamily;
  const std::vector<Asked> asked = {
      evaluation("OnThisDayWidget", WidgetFamily::systemSmall, ColorScheme::light),
      evaluation("OnThisDayWidget", WidgetFamily::systemSmall, ColorScheme::dark),
      evaluation("StreakWidget", WidgetFamily::systemMedium, ColorScheme::light),
      evaluation("StreakWidget", WidgetFamily::systemMedium, ColorScheme::dark),
      evaluation("ComposeButtonWidget", WidgetFamily::systemSmall, ColorScheme::light),
      timeline("OnThisDayWidget", "2026-11-22T09:00:00+01:00"),
      timeline("StreakWidget", "2026-11-23T09:00:00+01:00"),
  };
  std::vector<std::string> direct;
  for (const auto& evaluation : asked) direct.push_back(answerOf(*first_, evaluation));
  ASSERT_NE(direct[0], direct[1]);
  ASSERT_NE(direct[5], direct[6]);

  // Views expected `together` are expected in pairs, as an entry's light and
  // dark, and timelines in one group, as the app's reload of every widget.
  const struct {
    const char* name;
    std::vector<std::size_t> expected;
    std::vector<std::size_t> asked;
    bool together = false;
  } cases[] = {
      {"as expected", {0, 1, 2, 3}, {0, 1, 2, 3}},
      {"one skipped", {0, 1, 2, 3}, {0, 2, 3}},
      {"one never expected", {0, 1}, {0, 4, 1}},
      {"asked twice", {0, 1}, {0, 0, 1}},
      {"nothing expected", {}, {3, 2}},
      {"timelines, then views", {5, 6, 0, 1}, {5, 6, 0, 1}},
      {"a timeline skipped", {5, 6, 2}, {6, 2}},
      {"a view asked as a timeline was expected", {5, 6}, {0, 6}},
      {"in pairs, as expected", {0, 1, 2, 3}, {0, 1, 2, 3}, true},
      {"in pairs, the second of one skipped", {0, 1, 2, 3}, {0, 2, 3}, true},
      {"in pairs, the second asked first", {0, 1, 2, 3}, {1, 0, 2, 3}, true},
      {"in pairs, after timelines", {5, 6, 0, 1}, {5, 6, 0, 1}, true},
      {"in groups, a timeline skipped", {5, 6, 0, 1}, {6, 0, 1}, true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    EvaluationPipeline pipeline({first_, second_});
    std::vector<ViewEvaluation> views;
    std::vector<TimelineEvaluation> timelines;
    for (const auto index : test.expected) {
      if (const auto* view = std::get_if<ViewEvaluation>(&asked[index])) {
        views.push_back(*view);
      } else {
        timelines.push_back(std::get<TimelineEvaluation>(asked[index]));
      }
    }
    // Timelines are expected first in the table's cases.
    if (test.together) {
      pipeline.expectTogether(std::vector<std::vector<TimelineEvaluation>>{timelines});
      std::vector<std::vector<ViewEvaluation>> pairs;
      for (std::size_t first = 0; first + 1 < views.size(); first += 2)
        pairs.push_back({views[first], views[first + 1]});
      pipeline.expectTogether(pairs);
    } else {
      pipeline.expect(timelines);
      pipeline.expect(views);
    }
    for (const auto index : test.asked) EXPECT_EQ(answerOf(pipeline, asked[index]), direct[index]) << index;
    pipeline.forgetExpected();
    // Both workers are free again.
    EXPECT_EQ(answerOf(*first_, asked[2]), direct[2]);
    EXPECT_EQ(answerOf(*second_, asked[3]), direct[3]);
  }
}

// A view the worker refuses is refused in its turn, after those before it are answered.
TEST_F(EvaluationPipelineTest, AViewTheWorkerRefusesIsRefusedWhenItIsAskedFor) {
  const auto fine = evaluation("OnThisDayWidget", views::WidgetFamily::systemSmall, views::ColorScheme::light);
  const auto refused = evaluation("OnThisDayWidget", views::WidgetFamily::accessoryCircular, views::ColorScheme::light);
  const auto answer = answerOf(first_->view(fine));
  EvaluationPipeline pipeline({first_, second_});
  pipeline.expect({fine, refused, fine});
  EXPECT_EQ(answerOf(pipeline.view(fine)), answer);
  EXPECT_THROW(pipeline.view(refused), std::invalid_argument);
  EXPECT_EQ(answerOf(pipeline.view(fine)), answer);
}

}  // namespace
}  // namespace quillan::replay
