#pragma once

#include <optional>
#include <string>

#include "render/PixelImage.hpp"
#include "snapshot/SnapshotCase.hpp"
#include "snapshot/SnapshotFolder.hpp"
#include "snapshot/SnapshotRenderer.hpp"

namespace quillan::snapshot {

// How close a new picture must be to its recording to pass.
struct SnapshotTolerance {
  double precision = 1.0;            // share of pixels that must match
  double perceptualPrecision = 1.0;  // 1 - ΔE / 100 a pixel may differ by and match
};

// Why a case failed; empty problems mean it passed. `difference` (recording,
// new picture, difference) is drawn for a failing case whose recording could
// be read; once written, `differenceImage` names it relative to the suite.
struct SnapshotVerdict {
  std::string caseName;
  std::string problem;
  std::optional<render::PixelImage> difference;
  std::optional<std::string> differenceImage;

  bool passed() const { return problem.empty(); }
};

// Compares a case drawn again with its recording: the view tree exactly, the
// picture within `tolerance`, both pictures decoded with `drawing`. Only reads
// the suite's folder. A recording that is missing, no regular file or no
// picture fails its own case.
SnapshotVerdict judgeSnapshot(const SnapshotCase& snapshotCase, const SnapshotPicture& picture,
                              const SnapshotFolder& folder, const SnapshotTolerance& tolerance,
                              const render::DrawingFunctions& drawing);

}  // namespace quillan::snapshot
