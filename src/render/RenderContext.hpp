#pragma once

#include "render/DeviceProfile.hpp"
#include "views/Environment.hpp"

namespace quillan::render {

// Everything the host needs to lay out and draw one widget: the display
// environment (scheme, rendering mode, platform, family), the device, the
// output scale (1-3 pixels per point) and whether privacy-sensitive content is
// redacted (a locked lock screen).
struct RenderContext {
  views::Environment env;
  DeviceProfile device = DeviceProfile::defaultProfile();
  double scale = 3;
  bool redacted = false;
};

}  // namespace quillan::render
