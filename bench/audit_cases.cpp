// Cases audited per second in one process (one worker's share of `audit`):
// the sample journal's five widgets in a few locales of both directions,
// every text size, scheme and mode, laid out, drawn at one pixel per point
// and checked. The whole matrix is about 290,000 cases; on two cores in 15
// minutes that needs 161 cases a second from each.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>

#include "audit/AuditMatrix.hpp"
#include "audit/CaseAuditor.hpp"
#include "hosting/SampleJournalFiles.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "render/DrawingFunctions.hpp"

namespace {

using namespace quillan;

const std::filesystem::path& sampleContainer() {
  static const std::filesystem::path container = [] {
    const auto root = std::filesystem::temp_directory_path() / ("quillan-bench-audit-" + std::to_string(::getpid()));
    hosting::writeSampleJournal(root / "group", 2026);
    std::atexit([] { std::filesystem::remove_all(sampleContainer().parent_path()); });
    return root / "group";
  }();
  return container;
}

void BM_AuditCases(benchmark::State& state) {
  platform::FileManager::setGroupContainerDirectory(sampleContainer());
  platform::FileManager::setApplicationSupportDirectory(
      platform::FileManager::applicationSupportBeside(sampleContainer()));
  platform::TimeZone::setCurrent(*platform::TimeZone::named("Europe/Berlin"));
  platform::Clock::pin(*platform::ISO8601::parse("2026-11-22T08:30:00+01:00"));
  const audit::AuditMatrix matrix{audit::parseKinds({}), audit::parseLocales("en_US,ar_EG,ja_JP,hi_IN"),
                                  audit::parseDynamicTypes("all"), audit::parseColorSchemes("all"),
                                  audit::parseRenderingModes("all")};
  audit::CaseAuditor auditor(render::drawingFunctions(), 2026);
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(auditor.audit(audit::caseAt(matrix, next)));
    next = (next + 1) % audit::caseCount(matrix);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_AuditCases)->Unit(benchmark::kMillisecond)->MinTime(5);

}  // namespace

BENCHMARK_MAIN();
