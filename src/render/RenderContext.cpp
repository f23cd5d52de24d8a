#include "render/RenderContext.hpp"

#include <utility>

namespace quillan::render {

RenderContext makeRenderContext(views::Environment environment, views::WidgetFamily family, DeviceProfile device,
                                double scale) {
  environment.family = family;
  return {std::move(environment), std::move(device), scale, /*redacted=*/false};
}

}  // namespace quillan::render
