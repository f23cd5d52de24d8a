#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "fixtures/JournalWriter.hpp"
#include "platform/ISO8601.hpp"
#include "replay/ViewPipeline.hpp"
#include "support/AnsweringWorkerOptions.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::replay {
namespace {

namespace fs = std::filesystem;
using worker::ViewEvaluation;

platform::Date at(const char* iso) { return *platform::ISO8601::parse(iso); }

// Whatever is expected and however the asking strays from it, each view asked
// for is answered as the worker answers it directly.
class ViewPipelineTest : public ::testing::Test {
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

  static ViewEvaluation evaluation(const char* kind, views::WidgetFamily family, views::ColorScheme scheme) {
    worker::ProcessSettings settings;
    settings.groupContainer = folder_->path() / "group";
    settings.appSupport = folder_->path() / "Application Support";
    settings.timeZone = "Europe/Berlin";
    settings.locale = "en_US";
    settings.seed = 7;
    views::Environment environment;
    environment.family = family;
    environment.colorScheme = scheme;
    return {kind, at("2026-11-22T00:00:00+01:00"), at("2026-11-22T09:00:00+01:00"), environment, settings};
  }

  static std::string answerOf(const worker::Evaluation<std::string>& evaluation) {
    return evaluation.value() ? *evaluation.value() : "failed: " + evaluation.failure()->reason;
  }

  static testing::TemporaryFolder* folder_;
  static worker::WidgetWorker* first_;
  static worker::WidgetWorker* second_;
};

testing::TemporaryFolder* ViewPipelineTest::folder_ = nullptr;
worker::WidgetWorker* ViewPipelineTest::first_ = nullptr;
worker::WidgetWorker* ViewPipelineTest::second_ = nullptr;

TEST_F(ViewPipelineTest, AnswersEveryViewAsTheWorkerDoesHoweverTheAskingStraysFromWhatWasExpected) {
  using views::ColorScheme;
  using views::WidgetFamily;
  const std::vector<ViewEvaluation> views = {
      evaluation("OnThisDayWidget", WidgetFamily::systemSmall, ColorScheme::light),
      evaluation("OnThisDayWidget", WidgetFamily::systemSmall, ColorScheme::dark),
      evaluation("StreakWidget", WidgetFamily::systemMedium, ColorScheme::light),
      evaluation("StreakWidget", WidgetFamily::systemMedium, ColorScheme::dark),
      evaluation("ComposeButtonWidget", WidgetFamily::systemSmall, ColorScheme::light),
  };
  std::vector<std::string> direct;
  for (const auto& view : views) direct.push_back(answerOf(first_->view(view)));
  ASSERT_NE(direct[0], direct[1]);

  const struct {
    const char* name;
    std::vector<std::size_t> expected;
    std::vector<std::size_t> asked;
  } cases[] = {
      {"as expected", {0, 1, 2, 3}, {0, 1, 2, 3}},
      {"one skipped", {0, 1, 2, 3}, {0, 2, 3}},
      {"one never expected", {0, 1}, {0, 4, 1}},
      {"asked twice", {0, 1}, {0, 0, 1}},
      {"nothing expected", {}, {3, 2}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    ViewPipeline pipeline({first_, second_});
    std::vector<ViewEvaluation> expected;
    for (const auto index : test.expected) expected.push_back(views[index]);
    pipeline.expect(expected);
    for (const auto index : test.asked) EXPECT_EQ(answerOf(pipeline.view(views[index])), direct[index]) << index;
    pipeline.forgetExpected();
    // Both workers are free again.
    EXPECT_EQ(answerOf(first_->view(views[2])), direct[2]);
    EXPECT_EQ(answerOf(second_->view(views[3])), direct[3]);
  }
}

// A view the worker refuses is refused in its turn, after those before it are answered.
TEST_F(ViewPipelineTest, AViewTheWorkerRefusesIsRefusedWhenItIsAskedFor) {
  const auto fine = evaluation("OnThisDayWidget", views::WidgetFamily::systemSmall, views::ColorScheme::light);
  const auto refused = evaluation("OnThisDayWidget", views::WidgetFamily::accessoryCircular, views::ColorScheme::light);
  const auto answer = answerOf(first_->view(fine));
  ViewPipeline pipeline({first_, second_});
  pipeline.expect({fine, refused, fine});
  EXPECT_EQ(answerOf(pipeline.view(fine)), answer);
  EXPECT_THROW(pipeline.view(refused), std::invalid_argument);
  EXPECT_EQ(answerOf(pipeline.view(fine)), answer);
}

}  // namespace
}  // namespace quillan::replay
