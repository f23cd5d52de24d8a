#include "render/HitTest.hpp"

#include <algorithm>

#include "render/PangoTextMeasurer.hpp"
#include "render/WidgetLayout.hpp"

namespace quillan::render {

namespace {

bool linksAreTargets(views::WidgetFamily family) { return family == views::WidgetFamily::systemMedium; }

struct DepthRegion {
  int depth;
  HitRegion region;
};

void collectLinks(const LayoutBox& box, int depth, std::vector<DepthRegion>& out) {
  if (box.node->kind == LayoutKind::link && box.node->url) out.push_back({depth, {box.frame, *box.node->url}});
  for (const auto& child : box.children) collectLinks(child, depth + 1, out);
}

}  // namespace

std::vector<HitRegion> hitRegions(const views::Node& tree, const RenderContext& context) {
  return hitRegionsOf(*layoutWidget(tree, context, PangoTextMeasurer::shared()), context);
}

std::vector<HitRegion> hitRegionsOf(const WidgetLayout& widget, const RenderContext& context) {
  std::vector<HitRegion> regions;
  if (linksAreTargets(context.env.family)) {
    std::vector<DepthRegion> links;
    collectLinks(widget.content, 0, links);
    std::stable_sort(links.begin(), links.end(), [](const auto& a, const auto& b) { return a.depth > b.depth; });
    const Rect bounds{0, 0, widget.size.width, widget.size.height};
    for (auto& link : links) {
      Rect& r = link.region.rect;
      const double x = std::max(r.x, 0.0), y = std::max(r.y, 0.0);
      r = {x, y, std::min(r.maxX(), bounds.width) - x, std::min(r.maxY(), bounds.height) - y};
      if (r.width > 0 && r.height > 0) regions.push_back(std::move(link.region));
    }
  }
  if (widget.adapted.widgetURL)
    regions.push_back({{0, 0, widget.size.width, widget.size.height}, *widget.adapted.widgetURL});
  return regions;
}

std::optional<std::string> hitTest(const views::Node& tree, const RenderContext& context, Point point) {
  for (const auto& region : hitRegions(tree, context))
    if (region.rect.contains(point)) return region.url;
  return std::nullopt;
}

}  // namespace quillan::render
