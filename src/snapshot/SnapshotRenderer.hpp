#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "render/DrawingFunctions.hpp"
#include "snapshot/SnapshotCase.hpp"
#include "snapshot/SnapshotConfig.hpp"

namespace quillan::snapshot {

// What one case draws: its view tree as JSON and its PNG.
struct SnapshotPicture {
  std::string viewJson;
  std::vector<std::uint8_t> png;
};

// Draws cases in this process with the config's journal, clock, zone and
// seed made the process defaults. Each case starts from the seed again and
// sets its own locale, so a case draws the same whatever was drawn before it.
class SnapshotRenderer {
 public:
  explicit SnapshotRenderer(const SnapshotConfig& config);
  SnapshotPicture draw(const SnapshotCase& snapshotCase, const render::DrawingFunctions& drawing) const;

 private:
  const SnapshotConfig& config_;
};

}  // namespace quillan::snapshot
