#pragma once

#include "render/DeviceProfile.hpp"
#include "views/Environment.hpp"

namespace quillan::render {

// The phone's own pixel density, at which a widget is drawn unless its host
// asks for another.
inline constexpr double kDefaultRenderScale = 3;

// Everything the host needs to lay out and draw one widget: the display
// environment (scheme, rendering mode, platform, family), the device, the
// output scale (1-3 pixels per point) and whether privacy-sensitive content is
// redacted (a locked lock screen).
struct RenderContext {
  views::Environment env;
  DeviceProfile device = DeviceProfile::defaultProfile();
  double scale = kDefaultRenderScale;
  bool redacted = false;
};

// The one way the host's commands make a context: `environment` placed in
// `family` (the family a widget is drawn in wins over whatever the environment
// said), unredacted; a caller drawing a locked screen sets `redacted` after.
RenderContext makeRenderContext(views::Environment environment, views::WidgetFamily family,
                                DeviceProfile device = DeviceProfile::defaultProfile(),
                                double scale = kDefaultRenderScale);

}  // namespace quillan::render
