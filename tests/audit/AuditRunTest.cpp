#include <gtest/gtest.h>

#include "audit/AuditRun.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::audit {
namespace {

Severity severityNamed(const std::string& name) { return *views::fromString<Severity>(name); }

// "SEVERITY ... | FAIL-ON" (the new findings, "nothing" for none, and
// --fail-on) => whether the run fails.
TEST(AuditRunTest, ARunFailsOnlyWhenANewFindingReachesFailOn) {
  testing::expectGoldenAnswers("audit_fail_on.txt", [](const std::string& question) {
    const auto cells = testing::cells(question);
    AuditOutcome outcome;
    for (const auto& name : testing::words(cells[0]))
      if (name != "nothing") ++outcome.newCounts[static_cast<std::size_t>(severityNamed(name))];
    return outcome.fails(severityNamed(cells[1])) ? "fails" : "passes";
  });
}

}  // namespace
}  // namespace quillan::audit
