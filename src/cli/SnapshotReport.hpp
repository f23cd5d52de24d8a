#pragma once

#include <string>
#include <vector>

#include "cli/SnapshotVerdict.hpp"

namespace quillan::cli {

// report.html of a verify: how many cases passed, and each failing case with
// why and its difference image (reference, new, difference). All text is escaped.
std::string snapshotReportPage(const std::vector<SnapshotVerdict>& verdicts, const SnapshotTolerance& tolerance);

}  // namespace quillan::cli
