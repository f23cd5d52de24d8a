#pragma once

#include <string>
#include <vector>

#include "snapshot/SnapshotVerdict.hpp"

namespace quillan::pages {

// report.html of a verify: how many cases passed, and each failing case with
// why and its difference image (reference, new, difference). All text is escaped.
std::string snapshotReportPage(const std::vector<snapshot::SnapshotVerdict>& verdicts,
                               const snapshot::SnapshotTolerance& tolerance);

}  // namespace quillan::pages
