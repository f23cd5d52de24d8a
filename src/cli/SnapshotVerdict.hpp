#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cli/SnapshotCase.hpp"
#include "cli/SnapshotRenderer.hpp"

namespace quillan::cli {

// Where a suite keeps its recordings, its difference images and its report.
struct SnapshotFolder {
  std::filesystem::path root;

  std::filesystem::path recordedView(const SnapshotCase& c) const { return root / "cases" / (c.name + ".json"); }
  std::filesystem::path recordedPicture(const SnapshotCase& c) const { return root / "cases" / (c.name + ".png"); }
  std::filesystem::path differenceImage(const SnapshotCase& c) const { return root / "diffs" / (c.name + ".png"); }
  std::filesystem::path report() const { return root / "report.html"; }
};

// How close a new picture must be to its recording to pass.
struct SnapshotTolerance {
  double precision = 1.0;             // share of pixels that must match
  double perceptualPrecision = 1.0;  // 1 - ΔE / 100 a pixel may differ by and match
};

// Why a case failed; empty problems mean it passed. The difference image, when
// one was written, is relative to the suite's folder.
struct SnapshotVerdict {
  std::string caseName;
  std::string problem;
  std::optional<std::string> differenceImage;

  bool passed() const { return problem.empty(); }
};

// Compares a case drawn again with its recording: the view tree exactly, the
// picture within `tolerance`. A failing case whose recorded picture exists gets
// a difference image (reference, new, difference) in the suite's folder.
SnapshotVerdict judgeSnapshot(const SnapshotCase& snapshotCase, const SnapshotPicture& picture,
                              const SnapshotFolder& folder, const SnapshotTolerance& tolerance);

}  // namespace quillan::cli
