// The budgets of the design, measured on a journal of 100,000 notes with
// images: the widgets' one query, each widget's whole view-tree evaluation,
// each widget drawn to PNG, and the real `quillan-widgets render` command run
// as a child process (its peak RSS and wall time, from wait4's rusage).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchJournal.hpp"
#include "ChildProcess.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "platform/Calendar.hpp"
#include "platform/Clock.hpp"
#include "platform/Fatal.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "render/Renderer.hpp"
#include "store/CoreDataStack.hpp"
#include "store/NoteDateFilter.hpp"
#include "widgets/AllNotes.hpp"

namespace {

using namespace quillan;

using namespace quillan::bench;

void setUpProcess() {
  static const bool done = [] {
    ensureJournal();
    platform::FileManager::setGroupContainerDirectory(groupDirectory());
    platform::FileManager::setApplicationSupportDirectory(supportDirectory());
    platform::Locale::setCurrent(*platform::Locale::named(kLocale));
    platform::TimeZone::setCurrent(*platform::TimeZone::named(kTimeZone));
    platform::Clock::pin(platform::Date::fromReferenceSeconds(kNow));
    return true;
  }();
  (void)done;
}

double peakRSSMegabytes(const rusage& usage) { return static_cast<double>(usage.ru_maxrss) / 1024.0; }

void reportOwnPeakRSS(benchmark::State& state) {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  state.counters["peakRSS_MB"] = peakRSSMegabytes(usage);
}

const widgets::WidgetConfiguration& widgetOf(const std::string& kind) {
  const auto* widget = bundle::TimelineWidgetBundle::widget(kind);
  if (!widget) std::abort();
  return *widget;
}

views::Environment environmentOf(const widgets::WidgetConfiguration& widget) {
  views::Environment environment;
  environment.family = widget.supportedFamilies.front();
  return environment;
}

void BM_FetchAllNotes(benchmark::State& state) {
  setUpProcess();
  std::size_t count = 0;
  for (auto _ : state) {
    auto notes = widgets::fetchAllNotes();
    count = notes.size();
    benchmark::DoNotOptimize(notes);
  }
  if (count != kNotes) state.SkipWithError("the fetch did not return every note");
  reportOwnPeakRSS(state);
}

// The narrowed reads the features can use instead (same answers, see
// tests/store/NoteDateFilterTest.cpp): a day test read near the day, and the
// memories' month-and-day test over every date without making objects of
// the notes it passes over.
std::shared_ptr<store::ManagedObjectContext> viewContext() {
  return store::CoreDataStack::shared().persistentContainer().viewContext();
}

void BM_NarrowedTodayRead(benchmark::State& state) {
  setUpProcess();
  const auto calendar = platform::Calendar::current();
  const auto now = platform::Clock::now();
  const store::NoteDateTest today = [&](const std::optional<platform::Date>& date) {
    return calendar.isDate(now, platform::unwrap(date, "bench"), platform::CalendarComponent::day);
  };
  for (auto _ : state) {
    auto notes = store::fetchNotesWhereDate(*viewContext(), store::NoteDateWindow::aroundDayOf(now), today);
    benchmark::DoNotOptimize(notes);
  }
  reportOwnPeakRSS(state);
}

void BM_NarrowedMonthAndDayRead(benchmark::State& state) {
  setUpProcess();
  const auto calendar = platform::Calendar::current();
  const auto now = platform::Clock::now();
  const auto month = calendar.component(platform::CalendarComponent::month, now);
  const auto day = calendar.component(platform::CalendarComponent::day, now);
  const store::NoteDateTest onThisDay = [&](const std::optional<platform::Date>& date) {
    const auto noteDate = platform::unwrap(date, "bench");
    return noteDate < now && calendar.component(platform::CalendarComponent::day, noteDate) == day &&
           calendar.component(platform::CalendarComponent::month, noteDate) == month;
  };
  for (auto _ : state) {
    auto notes = store::fetchNotesWhereDate(*viewContext(), onThisDay);
    benchmark::DoNotOptimize(notes);
  }
  reportOwnPeakRSS(state);
}

void BM_ViewTree(benchmark::State& state, const std::string& kind) {
  setUpProcess();
  const auto& widget = widgetOf(kind);
  const auto environment = environmentOf(widget);
  for (auto _ : state) benchmark::DoNotOptimize(widget.content(platform::Clock::now(), environment));
  reportOwnPeakRSS(state);
}

void BM_RenderPNG(benchmark::State& state, const std::string& kind) {
  setUpProcess();
  const auto& widget = widgetOf(kind);
  render::RenderContext context;
  context.env = environmentOf(widget);
  for (auto _ : state) {
    const auto tree = widget.content(platform::Clock::now(), context.env);
    benchmark::DoNotOptimize(render::renderToPNGBytes(tree, context));
  }
  reportOwnPeakRSS(state);
}

std::filesystem::path commandPath() {
  // bench/bench_budget_commands beside src/quillan-widgets in one build tree.
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "src" / "quillan-widgets";
}

void BM_Command(benchmark::State& state, const std::string& kind) {
  setUpProcess();
  const auto output = benchRoot() / (kind + ".png");
  const std::vector<std::string> arguments = {commandPath().string(),
                                              "--group-container",
                                              groupDirectory().string(),
                                              "--app-support",
                                              supportDirectory().string(),
                                              "--now",
                                              platform::ISO8601::format(platform::Date::fromReferenceSeconds(kNow), 0),
                                              "--time-zone",
                                              kTimeZone,
                                              "--locale",
                                              kLocale,
                                              "--seed",
                                              "7",
                                              "render",
                                              "--kind",
                                              kind,
                                              "--format",
                                              "png",
                                              "--output",
                                              output.string()};
  double peak = 0;
  double wall = 0;
  for (auto _ : state) {
    const auto run = runQuietly(arguments);
    if (!run.succeeded()) {
      state.SkipWithError("the command failed");
      return;
    }
    state.SetIterationTime(run.wallSeconds);
    peak = std::max(peak, run.peakRSSMegabytes());
    wall += run.wallSeconds;
  }
  state.counters["childPeakRSS_MB"] = peak;
  reportOwnPeakRSS(state);
  state.counters["launcherRSS_MB"] = state.counters["peakRSS_MB"];
  state.counters.erase("peakRSS_MB");
  state.counters["childWall_ms"] = 1e3 * wall / static_cast<double>(state.iterations());
}

const char* const kKinds[] = {"OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "ComposeButtonLockScreen",
                              "StreakWidget"};

// The commands run first, while this process is small: a child's ru_maxrss
// starts from the RSS it was forked with, so it is exact only while that is
// below the command's own peak (launcherRSS_MB shows it).
const bool kRegistered = [] {
  for (const auto* kind : kKinds) {
    benchmark::RegisterBenchmark((std::string("BM_Command/") + kind).c_str(), BM_Command, std::string(kind))
        ->UseManualTime()
        ->Iterations(5)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark("BM_NarrowedTodayRead", BM_NarrowedTodayRead)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("BM_NarrowedMonthAndDayRead", BM_NarrowedMonthAndDayRead)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("BM_FetchAllNotes", BM_FetchAllNotes)->Unit(benchmark::kMillisecond);
  for (const auto* kind : kKinds) {
    benchmark::RegisterBenchmark((std::string("BM_ViewTree/") + kind).c_str(), BM_ViewTree, std::string(kind))
        ->Unit(benchmark::kMillisecond);
  }
  for (const auto* kind : kKinds) {
    benchmark::RegisterBenchmark((std::string("BM_RenderPNG/") + kind).c_str(), BM_RenderPNG, std::string(kind))
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace

BENCHMARK_MAIN();
