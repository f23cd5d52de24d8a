#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "snapshot/SnapshotCase.hpp"

namespace quillan::render {
struct PixelImage;
struct DrawingFunctions;
}  // namespace quillan::render

namespace quillan::snapshot {

// Where a suite keeps its recordings, its difference images and its report,
// and the only way the command writes there. The suite's folder is the user's
// to name (a link to it is followed), but nothing in it is followed out of
// it: an entry that is a symbolic link is refused, and every file is replaced
// whole, never written through. A folder that cannot be used is a UsageError
// naming --dir and the entry.
struct SnapshotFolder {
  std::filesystem::path root;

  std::filesystem::path config() const { return root / "snapshots.json"; }
  std::filesystem::path cases() const { return root / "cases"; }
  std::filesystem::path differences() const { return root / "diffs"; }
  std::filesystem::path report() const { return root / "report.html"; }
  std::filesystem::path recordedView(const SnapshotCase& c) const { return cases() / (c.name + ".json"); }
  std::filesystem::path recordedPicture(const SnapshotCase& c) const { return cases() / (c.name + ".png"); }
  std::filesystem::path differenceImage(const SnapshotCase& c) const { return differences() / (c.name + ".png"); }

  // Refuses the first entry the command would read or write that is a
  // symbolic link: the config (when it is the suite's own), cases/, diffs/,
  // report.html and every case's recordings.
  void refuseLinks(const std::vector<SnapshotCase>& cases, bool ownConfig) const;

  void makeFolder(const std::filesystem::path& folder) const;
  void write(const std::filesystem::path& file, std::string_view contents) const;
  // Encodes the picture as PNG with `drawing`.
  void writePicture(const std::filesystem::path& file, const render::PixelImage& picture,
                    const render::DrawingFunctions& drawing) const;
  // Removes a file or a folder with everything in it; a missing one is no error.
  void remove(const std::filesystem::path& entry) const;
};

}  // namespace quillan::snapshot
