#include "audit/AuditRun.hpp"

#include <string_view>

#include "audit/AuditJsonWriter.hpp"
#include "audit/CaseAuditor.hpp"
#include "audit/FindingJson.hpp"
#include "audit/ProgressLine.hpp"
#include "hosting/WorkerPool.hpp"

namespace quillan::audit {

namespace {

// Cases a worker is handed at a time: enough that the pipe's round trip is
// noise, few enough that both workers stay busy to the end.
constexpr std::size_t kCasesPerChunk = 48;

// A worker meets a new script's fonts with nearly every few locales, and
// keeps each: past a few hundred cases it would outgrow 100 MB. A fresh fork
// of the command, which drew nothing, starts small again. One chunk adds a
// few MB at most (it spans one or two locales).
constexpr std::size_t kChunksPerWorker = 40;
constexpr std::size_t kResidentBytesPerWorker = std::size_t{60} << 20;

// A worker's answer: a line per finding, its severity's digit, a tab, its JSON.
std::string auditedChunk(CaseAuditor& auditor, const AuditMatrix& matrix, std::size_t chunk) {
  std::string out;
  const std::size_t end = std::min(caseCount(matrix), (chunk + 1) * kCasesPerChunk);
  for (std::size_t i = chunk * kCasesPerChunk; i < end; ++i) {
    for (const auto& finding : auditor.audit(caseAt(matrix, i))) {
      out += static_cast<char>('0' + static_cast<int>(finding.severity));
      out += '\t';
      out += findingJson(finding);
      out += '\n';
    }
  }
  return out;
}

}  // namespace

bool AuditOutcome::fails(Severity failOn) const {
  for (std::size_t severity = static_cast<std::size_t>(failOn); severity < newCounts.size(); ++severity)
    if (newCounts[severity] > 0) return true;
  return false;
}

AuditOutcome runAudit(const AuditRunSettings& settings, const render::DrawingFunctions& drawing, std::ostream& json) {
  const std::size_t cases = caseCount(settings.matrix);
  const std::size_t chunks = (cases + kCasesPerChunk - 1) / kCasesPerChunk;
  AuditJsonWriter writer(json, settings.matrix);
  ProgressLine progress(settings.progress ? *settings.progress : json, settings.progress != nullptr, cases);
  CaseAuditor auditor(drawing, settings.seed, settings.thresholds);
  std::size_t findings = 0;
  hosting::WorkerPool::run(
      "audit", settings.jobs, chunks, [&](std::size_t chunk) { return auditedChunk(auditor, settings.matrix, chunk); },
      [&](std::size_t chunk, const std::string& output) {
        std::string_view rest = output;
        while (!rest.empty()) {
          const auto end = rest.find('\n');
          const std::string_view line = rest.substr(2, end - 2);
          const auto severity = static_cast<Severity>(rest[0] - '0');
          writer.add(line, severity, settings.baseline && settings.baseline->accepts(line));
          if (settings.summary) settings.summary->add(line);
          ++findings;
          rest.remove_prefix(end + 1);
        }
        progress.update(std::min(cases, (chunk + 1) * kCasesPerChunk), findings);
      },
      {.chunksPerWorker = kChunksPerWorker, .residentBytesPerWorker = kResidentBytesPerWorker});
  progress.finish();
  writer.finish(cases);
  return {cases, writer.newCounts()};
}

}  // namespace quillan::audit
