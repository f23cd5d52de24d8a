#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <thread>

#include "WorkerFixture.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "fixtures/JournalWriter.hpp"
#include "fixtures/SampleJournal.hpp"
#include "host/Scheduler.hpp"
#include "host/WorkerTimelineSource.hpp"
#include "hosting/TimelineJson.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/RunCommand.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::worker {
namespace {

using testing::at;
using ::testing::HasSubstr;
using testing::JournalFolders;

const char* const kNow = "2026-11-22T09:00:00+01:00";

// One worker for the whole suite, started before anything reads a journal in
// this process, as a host starts it.
class WidgetWorkerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folders_ = std::make_unique<JournalFolders>();
    {
      fixtures::JournalWriter writer(folders_->makeContainer("dated") / "Quillan.sqlite");
      writer.addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("caf\xE9 au lait")});
      writer.addNote({.date = at("2026-11-21T10:00:00+01:00"), .info = std::string("yesterday")});
    }
    const platform::Calendar berlin(*platform::Locale::named("en_US"), *platform::TimeZone::named("Europe/Berlin"));
    fixtures::SampleJournal::write(folders_->makeContainer("sample"), at(kNow), berlin, 11);
    worker_ = std::make_unique<WidgetWorker>(testing::answeringOptions());
  }
  static void TearDownTestSuite() {
    worker_.reset();
    folders_.reset();
  }

  static Evaluation<widgets::TimelineAnswer> timeline(const std::string& kind, const std::string& journal) {
    return worker_->timeline({kind, at(kNow), widgets::TimelineRequest::timeline, folders_->settings(journal)});
  }

  static inline std::unique_ptr<JournalFolders> folders_;
  static inline std::unique_ptr<WidgetWorker> worker_;
};

TEST_F(WidgetWorkerTest, AMissingGroupContainerStopsWithoutAMessage) {
  const auto view = testing::firstView(*worker_, "OnThisDayWidget", at(kNow), folders_->settings("nowhere"));
  ASSERT_TRUE(view.failure());
  EXPECT_EQ(view.failure()->reason, "stopped without a message");
}

TEST_F(WidgetWorkerTest, AWarmWorkerKilledFromOutsideIsReplacedAndTheLogSaysSo) {
  const pid_t killed = worker_->warmWorkerPid();
  ASSERT_GT(killed, 0);
  ASSERT_EQ(kill(killed, SIGKILL), 0);
  ASSERT_TRUE(testing::waitUntilGone(killed));
  const auto answer = timeline("StreakWidget", "dated");
  ASSERT_TRUE(answer.value()) << answer.failure()->reason;
  EXPECT_THAT(answer.log, ::testing::Contains(HasSubstr("the warm worker had stopped")));
  EXPECT_NE(worker_->warmWorkerPid(), killed);
  EXPECT_TRUE(timeline("StreakWidget", "dated").log.empty()) << "only the first answer after the restart says so";
}

TEST_F(WidgetWorkerTest, BadRequestsAreRefusedBeforeEvaluating) {
  const auto settings = folders_->settings("dated");
  const auto request = widgets::TimelineRequest::timeline;
  EXPECT_THROW(worker_->timeline({"NoSuchWidget", at(kNow), request, settings}), std::invalid_argument);
  EXPECT_THROW(worker_->timeline({"StreakWidget", platform::Date::fromReferenceSeconds(NAN), request, settings}),
               std::invalid_argument);
  EXPECT_THROW(worker_->timeline({"StreakWidget", at(kNow), request, folders_->settings("dated", "Mars/Olympus")}),
               std::invalid_argument);
  auto badLocale = settings;
  badLocale.locale = "xx_YY";
  EXPECT_THROW(worker_->timeline({"StreakWidget", at(kNow), request, badLocale}), std::invalid_argument);
  views::Environment small;
  small.family = views::WidgetFamily::systemSmall;
  EXPECT_THROW(worker_->view({"OTDComposeWidget", at(kNow), at(kNow), small, settings}), std::invalid_argument);
}

// What the command, running the extension in its own process, answers and
// draws from the same journal and settings.
std::string inCommand(std::vector<std::string> words, const ProcessSettings& settings) {
  words.insert(words.end(),
               {"--group-container", settings.groupContainer->string(), "--now", kNow, "--time-zone",
                *settings.timeZone, "--locale", *settings.locale, "--seed", std::to_string(*settings.seed)});
  return quillan::testing::runCommand(words).out;
}

// The dark view is asked for after the light one, together with it, as a
// replay asks: it must not see what the light one's evaluation left behind
// (the random prompts' sequence, say).
TEST_F(WidgetWorkerTest, AnswersEqualThoseOfTheExtensionRunInTheCommand) {
  const auto settings = folders_->settings("sample");
  quillan::testing::ProcessEnvironment berlin(kNow, *settings.timeZone);
  views::Environment light;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    SCOPED_TRACE(widget.kind);
    const auto timeline = worker_->timeline({widget.kind, at(kNow), widgets::TimelineRequest::timeline, settings});
    ASSERT_TRUE(timeline.value());
    light.family = widget.supportedFamilies.front();
    auto dark = light;
    dark.colorScheme = views::ColorScheme::dark;
    const auto entry = timeline.value()->entryDates.front();
    const auto together = worker_->finishViews(worker_->startViews({{widget.kind, entry, at(kNow), light, settings},
                                                                    {widget.kind, entry, at(kNow), dark, settings}}));
    ASSERT_EQ(together.size(), 2u);
    const auto& view = together[1];
    ASSERT_TRUE(view.value());
    EXPECT_EQ(*together[0].value(), *worker_->view({widget.kind, entry, at(kNow), light, settings}).value());
    EXPECT_EQ(hosting::timelineJson(*timeline.value()) + "\n",
              inCommand({"timeline", "--kind", widget.kind}, settings));
    const auto drawn = nlohmann::json::parse(
        inCommand({"render", "--kind", widget.kind, "--format", "json", "--color-scheme", "dark"}, settings), nullptr,
        false);
    EXPECT_EQ(nlohmann::json::parse(*view.value()), drawn["view"]);
  }
}

TEST_F(WidgetWorkerTest, TheSchedulerFollowsTimelinesAskedOfTheWorker) {
  const auto settings = folders_->settings("sample");
  host::Scheduler scheduler(at(kNow), host::workerTimelineSource(*worker_, settings));
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) scheduler.place(widget.kind);
  for (const auto& state : scheduler.widgets()) {
    EXPECT_TRUE(state.ok()) << state.kind << ": " << *state.failure;
    const auto direct = worker_->timeline({state.kind, at(kNow), widgets::TimelineRequest::timeline, settings});
    ASSERT_TRUE(direct.value());
    EXPECT_EQ(state.entryDates, direct.value()->entryDates) << state.kind;
    EXPECT_EQ(state.policy, direct.value()->policy) << state.kind;
  }
  // The next reload of a daily widget is the next local midnight, answered afresh.
  const auto next = scheduler.nextEventTime();
  ASSERT_TRUE(next);
  EXPECT_EQ(*next, at("2026-11-23T00:00:00+01:00"));
  scheduler.advanceTo(*next);
  EXPECT_EQ(scheduler.widget("StreakWidget")->entry, at("2026-11-23T00:00:00+01:00"));
}

}  // namespace
}  // namespace quillan::worker
