#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <regex>
#include <stdexcept>
#include <thread>

#include "WorkerFixture.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "host/Scheduler.hpp"
#include "host/WorkerTimelineSource.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/Fatal.hpp"
#include "support/GoldenFile.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::worker {
namespace {

using testing::at;

constexpr std::int64_t kMebibyte = 1024 * 1024;

// Widgets that misbehave, served beside the bundle's by the workers of this
// test only.
widgets::WidgetConfiguration misbehaving(std::string kind, std::function<void()> behaviour) {
  widgets::WidgetConfiguration widget;
  widget.kind = std::move(kind);
  widget.supportedFamilies = {views::WidgetFamily::systemSmall};
  widget.provider = [behaviour](widgets::TimelineRequest, const widgets::TimelineProviderContext&) {
    platform::ExtensionLog::print("about to misbehave");
    behaviour();
    return widgets::TimelineAnswer{{platform::Date::fromReferenceSeconds(0)}, widgets::TimelineReloadPolicy::never()};
  };
  widget.content = [behaviour](platform::Date, const views::Environment&) {
    platform::ExtensionLog::print("about to draw");
    behaviour();
    return views::Node{};
  };
  return widget;
}

std::vector<widgets::WidgetConfiguration> testWidgets(std::size_t hungryBytes) {
  auto widgets = bundle::TimelineWidgetBundle::body();
  widgets.push_back(misbehaving("Quiet", [] {}));
  widgets.push_back(misbehaving("Sleeping", [] { std::this_thread::sleep_for(std::chrono::seconds(60)); }));
  widgets.push_back(misbehaving("Spinning", [] {
    volatile std::uint64_t spins = 0;
    while (true) spins = spins + 1;
  }));
  widgets.push_back(misbehaving("Hungry", [hungryBytes] { testing::residentBlock(hungryBytes).release(); }));
  widgets.push_back(misbehaving("Terminated", [] { raise(SIGTERM); }));
  widgets.push_back(misbehaving("Silent", [] { platform::silentStop(); }));
  widgets.push_back(misbehaving("Fatal", [] { platform::fatalError("Test/Fatal", "the reason, on one line"); }));
  widgets.push_back(misbehaving("Throwing", [] { throw std::runtime_error("out of range"); }));
  widgets.push_back(misbehaving("Exiting", [] {
    std::fputs("something went wrong\n", stderr);
    std::fflush(stderr);
    _exit(3);
  }));
  return widgets;
}

// The ceiling sits a margin above what a quiet evaluation needs (far more in
// sanitizer builds), and the hungry widget takes far more than the margin.
class EvaluationLimitsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    WorkerOptions probeOptions;
    probeOptions.memoryCeilingBytes = std::int64_t{4096} * kMebibyte;
    probeOptions.widgets = testWidgets(0);
    {
      WidgetWorker probe(probeOptions);
      quietPeakKilobytes_ = probe.timeline(ask("Quiet")).cost.peakKilobytes;
    }
    WorkerOptions options;
    // Long enough for the hungry widget to pass the ceiling first even under
    // the address sanitizer on a busy machine; the sleeping and spinning
    // widgets still meet it.
    options.deadline = std::chrono::milliseconds(3000);
    options.memoryCeilingBytes = quietPeakKilobytes_ * 1024 + 48 * kMebibyte;
    options.widgets = testWidgets(static_cast<std::size_t>(128 * kMebibyte));
    worker_ = new WidgetWorker(options);
  }
  static void TearDownTestSuite() { delete worker_; }

  static TimelineEvaluation ask(const std::string& kind) {
    ProcessSettings settings;
    settings.timeZone = "UTC";
    return {kind, at("2026-11-22T09:00:00Z"), widgets::TimelineRequest::timeline, settings};
  }
  static ViewEvaluation draw(const std::string& kind, views::ColorScheme scheme) {
    views::Environment environment;
    environment.family = views::WidgetFamily::systemSmall;
    environment.colorScheme = scheme;
    return {kind, at("2026-11-22T00:00:00Z"), at("2026-11-22T09:00:00Z"), environment, ask(kind).settings};
  }
  static std::string reasonOf(const std::string& kind) {
    const auto answer = worker_->timeline(ask(kind));
    return answer.failure() ? answer.failure()->reason : "answered";
  }

  // How an evaluation ended (sizes written N), and what it logged.
  template <typename Answer>
  static std::string reasonAndLog(const Answer& answer) {
    const auto reason = answer.failure() ? answer.failure()->reason : "answered";
    return std::regex_replace(reason, std::regex("[0-9.]+ MB"), "N MB") + ", logged " +
           ::testing::PrintToString(answer.log);
  }

  static inline std::int64_t quietPeakKilobytes_ = 0;
  static inline WidgetWorker* worker_ = nullptr;
};

// "KIND" => how its evaluation ended (sizes written N), and what it logged.
// Each failure is that evaluation's only: the quiet widget answers after it,
// from the same warm worker, and the lines logged before it still arrive.
TEST_F(EvaluationLimitsTest, EachWayOfStoppingHasItsReasonAndTheWarmWorkerOutlivesIt) {
  const auto pid = worker_->warmWorkerPid();
  quillan::testing::expectGoldenAnswers("evaluation_endings.txt", [](const std::string& kind) {
    const auto answer = worker_->timeline(ask(kind));
    EXPECT_GT(answer.cost.peakKilobytes, 0) << kind;
    EXPECT_TRUE(kind != "Hungry" || answer.cost.peakKilobytes * 1024 > worker_->options().memoryCeilingBytes);
    const auto reason = reasonAndLog(answer);
    // Timelines or views asked for together that one child cannot answer
    // cleanly are each answered as if alone. (Waiting for the deadline three
    // times more would only repeat the other cases.)
    if (!reason.starts_with("exceeded the deadline")) {
      const auto views = worker_->finishViews(worker_->startViews({draw(kind, views::ColorScheme::light),
                                                                   draw(kind, views::ColorScheme::dark)}));
      const auto timelines = worker_->finishTimelines(worker_->startTimelines({ask(kind), ask(kind)}));
      EXPECT_EQ(views.size(), 2u);
      EXPECT_EQ(timelines.size(), 2u);
      for (const auto& view : views) {
        EXPECT_EQ(reasonAndLog(view), std::regex_replace(reason, std::regex("misbehave"), "draw")) << kind;
      }
      for (const auto& timeline : timelines) EXPECT_EQ(reasonAndLog(timeline), reason) << kind;
    }
    return reason + (reasonOf("Quiet") == "answered" ? "" : ", THE QUIET ONE FAILED AFTER");
  });
  EXPECT_EQ(worker_->warmWorkerPid(), pid);
}

// A warm worker killed during evaluations asked for together fails the one
// it was on; the others are left to be asked for alone, and the next one
// asked for restarts the worker and says so, as after a single evaluation.
TEST_F(EvaluationLimitsTest, AWarmWorkerKilledDuringEvaluationsTogetherFailsTheOneItWasOn) {
  const pid_t killed = worker_->warmWorkerPid();
  auto pending = worker_->startTimelines({ask("Sleeping"), ask("Quiet")});
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  ASSERT_EQ(kill(killed, SIGKILL), 0);
  const auto answers = worker_->finishTimelines(std::move(pending));
  ASSERT_EQ(answers.size(), 1u);
  ASSERT_TRUE(answers[0].failure());
  EXPECT_EQ(answers[0].failure()->reason, "the worker stopped during the evaluation");
  const auto next = worker_->timeline(ask("Quiet"));
  EXPECT_TRUE(next.value());
  EXPECT_THAT(next.log, ::testing::Contains(::testing::HasSubstr("the warm worker had stopped")));
}

TEST_F(EvaluationLimitsTest, AWidgetThatStopsFailsInTheSchedulerWhileTheOthersCarryOn) {
  std::vector<std::string> logged;
  host::Scheduler scheduler(at("2026-11-22T09:00:00Z"),
                            host::workerTimelineSource(*worker_, {}, [&](std::string_view kind, std::string_view line) {
                              logged.push_back(std::string(kind) + ": " + std::string(line));
                            }));
  scheduler.place("Fatal");
  scheduler.place("Quiet");
  EXPECT_EQ(scheduler.widget("Fatal")->failure, "Test/Fatal: Fatal error: the reason, on one line");
  EXPECT_TRUE(scheduler.widget("Quiet")->ok());
  EXPECT_EQ(logged, (std::vector<std::string>{"Fatal: about to misbehave", "Quiet: about to misbehave"}));
}

TEST(WorkerOptionsTest, LimitsThatAreNotPositiveOrAnImageServingMoreThanTheBundleAreRefused) {
  WorkerOptions noDeadline, noMemory, imageWithWidgets;
  noDeadline.deadline = std::chrono::milliseconds(0);
  noMemory.memoryCeilingBytes = -1;
  imageWithWidgets.keeperImage = QUILLAN_CLI_PATH;
  imageWithWidgets.widgets.push_back({});
  for (const auto& options : {noDeadline, noMemory, imageWithWidgets}) {
    EXPECT_THROW(WidgetWorker{options}, std::invalid_argument);
  }
}

}  // namespace
}  // namespace quillan::worker
