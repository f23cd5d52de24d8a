#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "audit/Finding.hpp"

namespace quillan::audit {

// What the report page shows of a run, gathered as the findings stream past:
// counts by check and widget, by locale and by text size, and a few findings
// to show as pictures, the first of each kind of problem.
class AuditSummary {
 public:
  // At most this many findings are kept to be shown: one of each check,
  // severity, widget and element, in the cases' order.
  static constexpr std::size_t kMaxExamples = 120;

  using SeverityCounts = std::array<std::size_t, 3>;

  // `line` is findingJson()'s.
  void add(std::string_view line);

  const std::map<std::pair<std::string, std::string>, SeverityCounts>& byCheckAndKind() const {
    return byCheckAndKind_;
  }
  const std::map<std::string, SeverityCounts>& byLocale() const { return byLocale_; }
  const std::map<std::string, SeverityCounts>& byDynamicType() const { return byDynamicType_; }
  const std::vector<Finding>& examples() const { return examples_; }

 private:
  std::map<std::pair<std::string, std::string>, SeverityCounts> byCheckAndKind_;
  std::map<std::string, SeverityCounts> byLocale_;
  std::map<std::string, SeverityCounts> byDynamicType_;
  std::set<std::tuple<std::string, std::string, std::string, std::string>> exampleKeys_;
  std::vector<Finding> examples_;
};

// A finding read back from findingJson()'s line.
Finding findingFromJson(std::string_view line);

}  // namespace quillan::audit
