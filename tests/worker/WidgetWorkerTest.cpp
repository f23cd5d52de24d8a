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
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "platform/TimeZone.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "worker/EvaluationJson.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::worker {
namespace {

using testing::at;
using ::testing::HasSubstr;
using testing::JournalFolders;

const char* const kNow = "2026-11-22T09:00:00+01:00";

std::vector<std::string> bundleKinds() {
  std::vector<std::string> kinds;
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) kinds.push_back(widget.kind);
  return kinds;
}

// One worker for the whole suite, started before anything reads a journal in
// this process, as a host starts it.
class WidgetWorkerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folders_ = new JournalFolders();
    {
      fixtures::JournalWriter writer(folders_->makeContainer("undated") / "Quillan.sqlite");
      writer.addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
      writer.addNote({.date = std::nullopt, .info = std::string("no date")});
    }
    {
      fixtures::JournalWriter writer(folders_->makeContainer("dated") / "Quillan.sqlite");
      writer.addNote({.date = at("2025-11-22T10:00:00+01:00"), .info = std::string("caf\xE9 au lait")});
      writer.addNote({.date = at("2026-11-21T10:00:00+01:00"), .info = std::string("yesterday")});
    }
    const platform::Calendar berlin(*platform::Locale::named("en_US"), *platform::TimeZone::named("Europe/Berlin"));
    fixtures::SampleJournal::write(folders_->makeContainer("sample"), at(kNow), berlin, 11);
    worker_ = new WidgetWorker(testing::answeringOptions());
  }
  static void TearDownTestSuite() {
    delete worker_;
    delete folders_;
  }

  static Evaluation<widgets::TimelineAnswer> timeline(const std::string& kind, const std::string& journal) {
    return worker_->timeline({kind, at(kNow), widgets::TimelineRequest::timeline, folders_->settings(journal)});
  }
  // The view of the widget's first entry, as a host draws it after placing it.
  static Evaluation<std::string> firstView(const std::string& kind, const std::string& journal) {
    const auto answer = timeline(kind, journal);
    if (!answer.value()) return {*answer.failure(), answer.log, answer.cost};
    views::Environment environment;
    environment.family = bundle::TimelineWidgetBundle::widget(kind)->supportedFamilies.front();
    return worker_->view({kind, answer.value()->entryDates.front(), at(kNow), environment,
                          folders_->settings(journal)});
  }

  static JournalFolders* folders_;
  static WidgetWorker* worker_;
};

JournalFolders* WidgetWorkerTest::folders_ = nullptr;
WidgetWorker* WidgetWorkerTest::worker_ = nullptr;

TEST_F(WidgetWorkerTest, ANoteWithoutADateFailsTheJournalsWidgetsWithTheFatalReport) {
  for (const auto& kind : bundleKinds()) {
    const auto view = firstView(kind, "undated");
    if (kind == "ComposeButtonLockScreen") {
      EXPECT_TRUE(view.value()) << view.failure()->reason;
      continue;
    }
    ASSERT_TRUE(view.failure()) << kind << " answered";
    EXPECT_THAT(view.failure()->reason, HasSubstr(": Fatal error: Unexpectedly found nil")) << kind;
    EXPECT_EQ(view.failure()->reason.find('\n'), std::string::npos);
  }
}

TEST_F(WidgetWorkerTest, AMissingGroupContainerStopsWithoutAMessage) {
  const auto view = firstView("OnThisDayWidget", "nowhere");
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
  auto badZone = settings;
  badZone.timeZone = "Mars/Olympus";
  EXPECT_THROW(worker_->timeline({"StreakWidget", at(kNow), request, badZone}), std::invalid_argument);
  auto badLocale = settings;
  badLocale.locale = "xx_YY";
  EXPECT_THROW(worker_->timeline({"StreakWidget", at(kNow), request, badLocale}), std::invalid_argument);
  views::Environment small;
  small.family = views::WidgetFamily::systemSmall;
  EXPECT_THROW(worker_->view({"OTDComposeWidget", at(kNow), at(kNow), small, settings}), std::invalid_argument);
}

// Runs `evaluate` in a forked copy of this process, so that this process never
// opens a journal itself (its worker's keeper was forked from it), and
// returns what it printed.
std::string inForkedProcess(const std::function<std::string()>& evaluate) {
  int pipeFds[2];
  if (pipe(pipeFds) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    close(pipeFds[0]);
    const auto text = evaluate();
    for (std::size_t done = 0; done < text.size();) {
      const auto written = write(pipeFds[1], text.data() + done, text.size() - done);
      if (written <= 0) break;
      done += static_cast<std::size_t>(written);
    }
    _exit(0);
  }
  close(pipeFds[1]);
  std::string text;
  char buffer[4096];
  ssize_t got;
  while ((got = read(pipeFds[0], buffer, sizeof buffer)) > 0) text.append(buffer, static_cast<std::size_t>(got));
  close(pipeFds[0]);
  waitpid(child, nullptr, 0);
  return text;
}

// The settings applied the way the command applies its options.
void applyInProcess(const ProcessSettings& settings, platform::Date now) {
  platform::FileManager::setGroupContainerDirectory(*settings.groupContainer);
  platform::FileManager::setApplicationSupportDirectory(*settings.appSupport);
  platform::TimeZone::setCurrent(*platform::TimeZone::named(*settings.timeZone));
  platform::Locale::setCurrent(*platform::Locale::named(*settings.locale));
  platform::RandomSource::seed(*settings.seed);
  platform::Clock::pin(now);
}

TEST_F(WidgetWorkerTest, AnswersEqualThoseOfTheExtensionRunInProcess) {
  const auto settings = folders_->settings("sample");
  const auto now = at(kNow);
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) {
    views::Environment environment;
    environment.family = widget.supportedFamilies.front();
    environment.colorScheme = views::ColorScheme::dark;
    const auto expected = inForkedProcess([&] {
      applyInProcess(settings, now);
      const auto answer = widget.provider(widgets::TimelineRequest::timeline, {});
      const auto tree = widget.content(answer.entryDates.front(), environment);
      return toJson(answer).dump() + "\n" +
             views::toJson(tree).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
    });
    const auto timeline = worker_->timeline({widget.kind, now, widgets::TimelineRequest::timeline, settings});
    ASSERT_TRUE(timeline.value()) << widget.kind << ": " << timeline.failure()->reason;
    const auto view = worker_->view({widget.kind, timeline.value()->entryDates.front(), now, environment, settings});
    ASSERT_TRUE(view.value()) << widget.kind << ": " << view.failure()->reason;
    EXPECT_EQ(toJson(*timeline.value()).dump() + "\n" + *view.value(), expected) << widget.kind;
  }
}

TEST_F(WidgetWorkerTest, TheSchedulerFollowsTimelinesAskedOfTheWorker) {
  const auto settings = folders_->settings("sample");
  host::Scheduler scheduler(at(kNow), host::workerTimelineSource(*worker_, settings));
  for (const auto& kind : bundleKinds()) scheduler.place(kind);
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
