#pragma once

#include <optional>
#include <string>
#include <vector>

#include "render/Geometry.hpp"
#include "render/RenderContext.hpp"
#include "views/Node.hpp"

namespace quillan::render {

// Where a tap goes, as the phone's host decides: in medium (and larger)
// widgets the innermost Link under the point, else the widget's widgetURL;
// small and accessory widgets are one target, their widgetURL. Nothing when
// the point is outside the widget or no URL applies.
std::optional<std::string> hitTest(const views::Node& tree, const RenderContext& context, Point point);

struct HitRegion {
  Rect rect;
  std::string url;
};

// The tap targets as rectangles, for an image map: the first region holding a
// point is what hitTest answers for it. Inner links come before outer ones;
// the whole-widget widgetURL region comes last.
std::vector<HitRegion> hitRegions(const views::Node& tree, const RenderContext& context);

struct WidgetLayout;
// The same, for a widget already laid out in `context`.
std::vector<HitRegion> hitRegionsOf(const WidgetLayout& widget, const RenderContext& context);

}  // namespace quillan::render
