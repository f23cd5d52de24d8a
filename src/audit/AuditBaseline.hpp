#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <unordered_set>

namespace quillan::audit {

// The findings a team has accepted: those of an earlier audit.json. A finding
// is the same one when its check, case, element and unit are; what it
// measured may have moved. Held as hashes, so a baseline of a whole matrix
// costs a few megabytes.
class AuditBaseline {
 public:
  AuditBaseline() = default;

  // Reads an audit.json as this command writes it (one finding a line).
  // Throws UsageError naming --baseline for a file that is missing, or not one.
  static AuditBaseline read(const std::filesystem::path& path);

  // `line` is findingJson()'s.
  bool accepts(std::string_view line) const;

 private:
  std::unordered_set<std::uint64_t> keys_;
};

}  // namespace quillan::audit
