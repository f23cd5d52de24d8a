#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/Geometry.hpp"
#include "views/Environment.hpp"

namespace quillan::render {

// A phone's widget sizes by family, named after its portrait screen size in
// points ("393x852"). Sizes vary by device, so they ship as profiles.
struct DeviceProfile {
  std::string name;
  double scale = 3;  // pixels per point of the real screen
  Size small, medium, large, circular, rectangular, inlineFamily;

  Size sizeOf(views::WidgetFamily family) const;

  // The "393x852" class (the 6.1" phones).
  static DeviceProfile defaultProfile();
  // Nothing for an unknown name; see profileNames().
  static std::optional<DeviceProfile> named(std::string_view name);
  static std::vector<std::string> profileNames();
};

}  // namespace quillan::render
