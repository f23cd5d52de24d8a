#pragma once

#include <string>
#include <vector>

#include "snapshot/SnapshotConfig.hpp"

namespace quillan::snapshot {

// One cell of the matrix, and the name its files are recorded under.
struct SnapshotCase {
  std::string name;  // kind_scheme_mode_platform_device_locale, safe as a file name
  std::string kind;
  std::string colorScheme;
  std::string renderingMode;
  std::string platformVersion;
  std::string device;
  std::string locale;
};

// Every combination, kinds varying slowest, in the config's orders. Throws
// UsageError when two combinations would be recorded under one name.
std::vector<SnapshotCase> snapshotCases(const SnapshotConfig& config);

}  // namespace quillan::snapshot
