#include "render/LayoutJson.hpp"

#include <cmath>
#include <set>

#include <nlohmann/json.hpp>

#include "render/PangoTextMeasurer.hpp"
#include "render/WidgetLayout.hpp"

namespace quillan::render {

namespace {

// Rounded to a thousandth so goldens do not churn on float noise.
double tidy(double v) { return std::round(v * 1000) / 1000; }

nlohmann::ordered_json boxJSON(const LayoutBox& box) {
  nlohmann::ordered_json out;
  out["type"] = box.node->name.empty() ? "?" : box.node->name;
  out["frame"] = {tidy(box.frame.x), tidy(box.frame.y), tidy(box.frame.width), tidy(box.frame.height)};
  if (box.node->url) out["url"] = *box.node->url;
  if (box.text) {
    nlohmann::ordered_json lines = nlohmann::ordered_json::array();
    std::set<UsedFont> used;
    for (const auto& line : box.text->lines) {
      lines.push_back(plainText(line.runs));
      used.insert(line.fonts.begin(), line.fonts.end());
    }
    out["lines"] = lines;
    // A measurer that does not shape (layout tests) names no fonts.
    if (!used.empty()) {
      nlohmann::ordered_json fonts = nlohmann::ordered_json::array();
      for (const auto& font : used) fonts.push_back({{"family", font.family}, {"size", tidy(font.size)}});
      out["fonts"] = fonts;
      out["missingGlyphs"] = box.text->missingGlyphs;
    }
  }
  if (!box.children.empty()) {
    nlohmann::ordered_json children = nlohmann::ordered_json::array();
    for (const auto& child : box.children) children.push_back(boxJSON(child));
    out["children"] = children;
  }
  return out;
}

}  // namespace

std::string layoutJSON(const views::Node& tree, const RenderContext& context, const TextMeasurer& measurer) {
  const auto widget = layoutWidget(tree, context, measurer);
  nlohmann::ordered_json out;
  out["size"] = {widget->size.width, widget->size.height};
  if (widget->adapted.widgetURL) out["widgetURL"] = *widget->adapted.widgetURL;
  out["layoutDirection"] = widget->rightToLeft ? "rtl" : "ltr";
  if (widget->background) out["background"] = boxJSON(*widget->background);
  out["content"] = boxJSON(widget->content);
  return out.dump(1);
}

std::string layoutJSON(const views::Node& tree, const RenderContext& context) {
  return layoutJSON(tree, context, PangoTextMeasurer::shared());
}

}  // namespace quillan::render
