#include <cmath>
#include <string>
#include <type_traits>
#include <utility>

#include "views/Overload.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "views/ViewTreeNames.hpp"

namespace quillan::views {
namespace {

using Json = nlohmann::ordered_json;
using names::kEdgeOrder;
using names::kNamedEdgeSets;
using names::kNamedPoints;

template <NamedEnum E>
Json named(E value) {
  return std::string(toString(value));
}

Json length(double value) {
  if (std::isinf(value)) return value > 0 ? "infinity" : "-infinity";
  return value;
}

void putColor(Json& into, Color color) {
  into["color"] = named(color.name);
  if (color.opacity != 1) into["opacity"] = color.opacity;
}

Json colorJson(Color color) {
  Json json = Json::object();
  putColor(json, color);
  return json;
}

Json unitPointJson(UnitPoint point) {
  for (const auto& [named, name] : kNamedPoints) {
    if (named == point) return std::string(name);
  }
  return Json{{"x", point.x}, {"y", point.y}};
}

Json edgeSetJson(EdgeSet edges) {
  for (const auto& [named, name] : kNamedEdgeSets) {
    if (named == edges) return std::string(name);
  }
  Json list = Json::array();
  for (Edge edge : kEdgeOrder) {
    if (edges.contains(edge)) list.push_back(named(edge));
  }
  return list;
}

void putGradient(Json& into, const LinearGradient& gradient) {
  Json stops = Json::array();
  for (const auto& stop : gradient.stops) {
    Json json = colorJson(stop.color);
    json["location"] = stop.location;
    stops.push_back(std::move(json));
  }
  into["stops"] = std::move(stops);
  into["startPoint"] = unitPointJson(gradient.startPoint);
  into["endPoint"] = unitPointJson(gradient.endPoint);
}

Json styleJson(const ShapeStyle& style) {
  return std::visit(Overload{[](const Color& color) { return colorJson(color); },
                             [](const LinearGradient& gradient) {
                               Json body = Json::object();
                               putGradient(body, gradient);
                               return Json{{"linearGradient", std::move(body)}};
                             },
                             [](HierarchicalShapeStyle level) {
                               return Json{{"hierarchical", named(level)}};
                             }},
                    style);
}

Json fontJson(const Font& font) {
  Json json = Json::object();
  if (font.size) json["size"] = *font.size;
  if (font.textStyle) json["textStyle"] = named(*font.textStyle);
  if (font.fontWeight) json["weight"] = named(*font.fontWeight);
  if (font.design) json["design"] = named(*font.design);
  return json;
}

Json strokeStyleJson(const StrokeStyle& stroke) {
  const StrokeStyle defaults;
  Json json = Json::object();
  if (stroke.lineWidth != defaults.lineWidth) json["lineWidth"] = stroke.lineWidth;
  if (stroke.lineCap != defaults.lineCap) json["lineCap"] = named(stroke.lineCap);
  if (stroke.lineJoin != defaults.lineJoin) json["lineJoin"] = named(stroke.lineJoin);
  if (stroke.miterLimit != defaults.miterLimit) json["miterLimit"] = stroke.miterLimit;
  if (!stroke.dash.empty()) json["dash"] = stroke.dash;
  if (stroke.dashPhase != defaults.dashPhase) json["dashPhase"] = stroke.dashPhase;
  return json;
}

Json runJson(const platform::TextRun& run) {
  Json json{{"text", run.text}};
  if (run.bold) json["bold"] = true;
  if (run.italic) json["italic"] = true;
  if (run.strikethrough) json["strikethrough"] = true;
  if (run.code) json["code"] = true;
  if (run.link) json["link"] = *run.link;
  return json;
}

// A node's type and own properties; children and modifiers are added after.
struct KindEncoder {
  template <typename Stack>
  requires std::same_as<Stack, VStack> || std::same_as<Stack, HStack>
  void operator()(const Stack& stack) const {
    if (stack.alignment != decltype(stack.alignment)::center) json["alignment"] = named(stack.alignment);
    if (stack.spacing) json["spacing"] = *stack.spacing;
  }
  void operator()(const ZStack& stack) const {
    if (stack.alignment != Alignment::center) json["alignment"] = named(stack.alignment);
  }
  void operator()(const Text& text) const {
    json["text"] = text.text;
    if (text.key) json["key"] = *text.key;
    if (text.isAttributed()) {
      Json runs = Json::array();
      for (const auto& run : text.runs) runs.push_back(runJson(run));
      json["runs"] = std::move(runs);
    }
  }
  void operator()(const Image& image) const { json["systemName"] = image.systemName; }
  void operator()(const Circle&) const {}
  void operator()(const Capsule& capsule) const {
    if (capsule.style != RoundedCornerStyle::circular) json["style"] = named(capsule.style);
  }
  void operator()(const ContainerRelativeShape&) const {}
  void operator()(const LinearGradient& gradient) const { putGradient(json, gradient); }
  void operator()(const Color& color) const { putColor(json, color); }
  void operator()(const Spacer& spacer) const {
    if (spacer.minLength) json["minLength"] = *spacer.minLength;
  }
  void operator()(const Link& link) const { json["destination"] = link.destination; }
  void operator()(const AnyView&) const {}

  Json& json;
};

// A modifier's arguments, after its name.
struct ModifierEncoder {
  void operator()(const modifiers::Font& m) const { json["font"] = fontJson(m.font); }
  void operator()(const modifiers::FontWeight& m) const {
    if (m.weight) json["weight"] = named(*m.weight);
  }
  void operator()(const modifiers::ForegroundColor& m) const { putColor(json, m.color); }
  void operator()(const modifiers::ForegroundStyle& m) const {
    Json styles = Json::array({styleJson(m.primary)});
    if (m.secondary) styles.push_back(styleJson(*m.secondary));
    json["styles"] = std::move(styles);
  }
  void operator()(const modifiers::Padding& m) const {
    if (m.edges != EdgeSet::all()) json["edges"] = edgeSetJson(m.edges);
    if (m.length) json["length"] = *m.length;
  }
  void operator()(const modifiers::Offset& m) const {
    json["x"] = m.x;
    json["y"] = m.y;
  }
  void operator()(const modifiers::Frame& m) const {
    if (m.width) json["width"] = *m.width;
    if (m.height) json["height"] = *m.height;
    if (m.alignment != Alignment::center) json["alignment"] = named(m.alignment);
  }
  void operator()(const modifiers::FlexFrame& m) const {
    const auto put = [this](const char* key, const std::optional<double>& value) {
      if (value) json[key] = length(*value);
    };
    put("minWidth", m.frame.minWidth);
    put("idealWidth", m.frame.idealWidth);
    put("maxWidth", m.frame.maxWidth);
    put("minHeight", m.frame.minHeight);
    put("idealHeight", m.frame.idealHeight);
    put("maxHeight", m.frame.maxHeight);
    if (m.frame.alignment != Alignment::center) json["alignment"] = named(m.frame.alignment);
  }
  void operator()(const modifiers::Background& m) const {
    if (m.alignment != Alignment::center) json["alignment"] = named(m.alignment);
    if (!m.ignoresSafeAreaEdges.empty()) json["ignoresSafeAreaEdges"] = edgeSetJson(m.ignoresSafeAreaEdges);
    json["content"] = toJson(m.content);
  }
  void operator()(const modifiers::Overlay& m) const {
    if (m.alignment != Alignment::center) json["alignment"] = named(m.alignment);
    json["content"] = toJson(m.content);
  }
  void operator()(const modifiers::ContainerBackground& m) const {
    json["placement"] = named(m.placement);
    if (m.alignment != Alignment::center) json["alignment"] = named(m.alignment);
    json["content"] = toJson(m.content);
  }
  void operator()(const modifiers::WidgetURL& m) const { json["url"] = m.url; }
  void operator()(const modifiers::PrivacySensitive& m) const {
    if (!m.sensitive) json["sensitive"] = false;
  }
  void operator()(const modifiers::LineLimit& m) const {
    if (m.lines) json["lines"] = *m.lines;
  }
  void operator()(const modifiers::ImageScale& m) const { json["scale"] = named(m.scale); }
  void operator()(const modifiers::ButtonStyle& m) const { json["style"] = named(m.style); }
  void operator()(const modifiers::Resizable& m) const {
    if (m.capInsets != EdgeInsets{}) {
      json["capInsets"] = Json{{"top", m.capInsets.top},
                               {"leading", m.capInsets.leading},
                               {"bottom", m.capInsets.bottom},
                               {"trailing", m.capInsets.trailing}};
    }
    if (m.resizingMode != ResizingMode::stretch) json["resizingMode"] = named(m.resizingMode);
  }
  void operator()(const modifiers::Fill& m) const { json["style"] = styleJson(m.style); }
  void operator()(const modifiers::StrokeBorder& m) const {
    json["style"] = styleJson(m.style);
    const Json stroke = strokeStyleJson(m.strokeStyle);
    if (!stroke.empty()) json["strokeStyle"] = stroke;
  }
  void operator()(const modifiers::Opacity& m) const { json["opacity"] = m.opacity; }

  Json& json;
};

}  // namespace

nlohmann::ordered_json toJson(const Node& node) {
  Json json = Json::object();
  std::visit([&json](const auto& kind) { json["type"] = std::string(std::decay_t<decltype(kind)>::type); }, node.kind);
  std::visit(KindEncoder{json}, node.kind);
  if (const auto& children = node.children(); !children.empty()) {
    Json list = Json::array();
    for (const auto& child : children) list.push_back(toJson(child));
    json["children"] = std::move(list);
  }
  if (!node.modifiers.empty()) {
    Json list = Json::array();
    for (const auto& modifier : node.modifiers) {
      Json entry = Json::object();
      std::visit([&entry](const auto& m) { entry["modifier"] = std::string(std::decay_t<decltype(m)>::name); },
                 modifier.kind);
      std::visit(ModifierEncoder{entry}, modifier.kind);
      list.push_back(std::move(entry));
    }
    json["modifiers"] = std::move(list);
  }
  return json;
}

std::string encodeViewTree(const Node& node) { return toJson(node).dump(2) + "\n"; }

}  // namespace quillan::views
