#include <gtest/gtest.h>

#include "audit/AuditRun.hpp"

namespace quillan::audit {
namespace {

TEST(AuditRunTest, ARunFailsOnlyWhenANewFindingReachesFailOn) {
  using enum Severity;
  const struct {
    std::vector<Severity> found;
    Severity failOn;
    bool fails;
  } table[] = {
      {{}, info, false},
      {{info}, info, true},
      {{info, warning}, error, false},
      {{warning}, warning, true},
      {{warning, error}, error, true},
      {{error}, info, true},
  };
  for (const auto& row : table) {
    AuditOutcome outcome;
    for (const auto severity : row.found) ++outcome.newCounts[static_cast<std::size_t>(severity)];
    EXPECT_EQ(outcome.fails(row.failOn), row.fails) << views::toString(row.failOn);
  }
}

}  // namespace
}  // namespace quillan::audit
