#include "views/ViewTreeJson.hpp"

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>
#include <type_traits>
#include <utility>

#include "views/Overload.hpp"
#include "views/ViewTreeLimits.hpp"

namespace quillan::views {
namespace {

using Json = nlohmann::ordered_json;

struct NamedPoint {
  UnitPoint point;
  std::string_view name;
};

constexpr std::array<NamedPoint, 9> kNamedPoints{{{UnitPoint::topLeading(), "topLeading"},
                                                  {UnitPoint::top(), "top"},
                                                  {UnitPoint::topTrailing(), "topTrailing"},
                                                  {UnitPoint::leading(), "leading"},
                                                  {UnitPoint::center(), "center"},
                                                  {UnitPoint::trailing(), "trailing"},
                                                  {UnitPoint::bottomLeading(), "bottomLeading"},
                                                  {UnitPoint::bottom(), "bottom"},
                                                  {UnitPoint::bottomTrailing(), "bottomTrailing"}}};

struct NamedEdgeSet {
  EdgeSet edges;
  std::string_view name;
};

const std::array<NamedEdgeSet, 7> kNamedEdgeSets{{{EdgeSet::all(), "all"},
                                                  {EdgeSet::horizontal(), "horizontal"},
                                                  {EdgeSet::vertical(), "vertical"},
                                                  {EdgeSet::top(), "top"},
                                                  {EdgeSet::leading(), "leading"},
                                                  {EdgeSet::bottom(), "bottom"},
                                                  {EdgeSet::trailing(), "trailing"}}};

constexpr std::array<Edge, 4> kEdgeOrder{Edge::top, Edge::leading, Edge::bottom, Edge::trailing};

// ---------------------------------------------------------------- encoding

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
                             [](HierarchicalShapeStyle level) { return Json{{"hierarchical", named(level)}}; }},
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

// ---------------------------------------------------------------- decoding

[[noreturn]] void fail(const std::string& path, const std::string& message) {
  throw ViewTreeJsonError("view tree: at " + (path.empty() ? std::string("/") : path) + ": " + message);
}

std::string inQuotes(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string decimal(double value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

class ObjectReader;

// A JSON value, where it sits in the document (a JSON pointer), and how many
// levels of views and modifiers lie above it, its own node's included.
struct Value {
  const Json& json;
  std::string path;
  std::size_t depth = 0;

  std::string string() const {
    if (!json.is_string()) fail(path, "expected a string");
    return json.get<std::string>();
  }
  double number(bool allowInfinity = false) const {
    if (allowInfinity && json == "infinity") return std::numeric_limits<double>::infinity();
    if (!json.is_number()) fail(path, allowInfinity ? "expected a number or \"infinity\"" : "expected a number");
    return json.get<double>();
  }
  // NaN and infinities (which only a JSON value built in code can hold) are
  // out of every range.
  double numberWithin(double low, double high, std::string_view what, bool allowInfinity = false) const {
    const double value = number(allowInfinity);
    if (allowInfinity && json.is_string()) return value;
    if (!(value >= low && value <= high)) {
      fail(path, std::string(what) + " " + json.dump() + " out of range (expected " + decimal(low) + " to " +
                     decimal(high) + ")");
    }
    return value;
  }
  // A position or distance that may be negative: an offset, padding, spacing.
  double length() const { return numberWithin(-limits::kMaxLength, limits::kMaxLength, "length"); }
  // A size: a frame, a minimum length, a stroke's width.
  double size(bool allowInfinity = false) const {
    return numberWithin(0, limits::kMaxLength, "size", allowInfinity);
  }
  double fraction(std::string_view what) const { return numberWithin(0, 1, what); }
  int integerWithin(int low, int high, std::string_view what) const {
    if (!json.is_number_integer()) fail(path, "expected an integer");
    return static_cast<int>(numberWithin(low, high, what));
  }
  bool boolean() const {
    if (!json.is_boolean()) fail(path, "expected true or false");
    return json.get<bool>();
  }
  template <NamedEnum E>
  E enumeration(std::string_view what) const {
    const std::string name = string();
    if (const auto value = fromString<E>(name)) return *value;
    fail(path, "unknown " + std::string(what) + " " + inQuotes(name) + " (expected " + acceptedNames<E>() + ")");
  }
  std::vector<Value> array() const {
    if (!json.is_array()) fail(path, "expected an array");
    std::vector<Value> items;
    for (std::size_t i = 0; i < json.size(); ++i) items.push_back({json[i], path + "/" + std::to_string(i), depth});
    return items;
  }
  ObjectReader object() const;
};

// Reads an object's keys and, at the end, rejects any it did not read: a
// misspelt key is an error, never a silently dropped argument.
class ObjectReader {
 public:
  explicit ObjectReader(Value value) : value_(std::move(value)) {
    if (!value_.json.is_object()) fail(value_.path, "expected an object");
  }

  bool has(const std::string& key) const { return value_.json.contains(key); }

  std::optional<Value> optional(const std::string& key) {
    if (!has(key)) return std::nullopt;
    read_.insert(key);
    return Value{value_.json.at(key), value_.path + "/" + key, value_.depth};
  }

  Value required(const std::string& key) {
    if (auto value = optional(key)) return *value;
    fail(value_.path, "missing " + inQuotes(key));
  }

  template <typename T, typename Read>
  std::optional<T> optional(const std::string& key, Read read) {
    if (auto value = optional(key)) return read(*value);
    return std::nullopt;
  }

  const std::string& path() const { return value_.path; }

  void finish() const {
    for (const auto& item : value_.json.items()) {
      if (!read_.contains(item.key())) fail(value_.path, "unexpected key " + inQuotes(item.key()));
    }
  }

 private:
  Value value_;
  std::set<std::string> read_;
};

ObjectReader Value::object() const { return ObjectReader(*this); }

Node decodeNode(const Value& value);

Color readColor(ObjectReader& reader) {
  Color color = Color::named(reader.required("color").enumeration<ColorName>("color"));
  if (auto opacity = reader.optional("opacity")) color.opacity = opacity->fraction("opacity");
  return color;
}

UnitPoint decodeUnitPoint(const Value& value) {
  if (value.json.is_string()) {
    const std::string name = value.string();
    for (const auto& [point, pointName] : kNamedPoints) {
      if (pointName == name) return point;
    }
    fail(value.path, "unknown unit point " + inQuotes(name));
  }
  ObjectReader reader = value.object();
  const UnitPoint point{reader.required("x").length(), reader.required("y").length()};
  reader.finish();
  return point;
}

EdgeSet decodeEdgeSet(const Value& value) {
  if (value.json.is_string()) {
    const std::string name = value.string();
    for (const auto& [edges, setName] : kNamedEdgeSets) {
      if (setName == name) return edges;
    }
    fail(value.path, "unknown edge set " + inQuotes(name) +
                         " (expected all, horizontal, vertical, top, leading, bottom, trailing or an array of edges)");
  }
  EdgeSet edges;
  for (const auto& item : value.array()) edges = edges | item.enumeration<Edge>("edge");
  return edges;
}

LinearGradient readGradient(ObjectReader& reader) {
  LinearGradient gradient;
  for (const auto& item : reader.required("stops").array()) {
    ObjectReader stop = item.object();
    const Color color = readColor(stop);
    gradient.stops.push_back({color, stop.required("location").fraction("location")});
    stop.finish();
  }
  gradient.startPoint = decodeUnitPoint(reader.required("startPoint"));
  gradient.endPoint = decodeUnitPoint(reader.required("endPoint"));
  return gradient;
}

ShapeStyle decodeStyle(const Value& value) {
  ObjectReader reader = value.object();
  ShapeStyle style;
  if (reader.has("color")) {
    style = readColor(reader);
  } else if (auto gradient = reader.optional("linearGradient")) {
    ObjectReader body = gradient->object();
    style = readGradient(body);
    body.finish();
  } else if (auto level = reader.optional("hierarchical")) {
    style = level->enumeration<HierarchicalShapeStyle>("hierarchical style");
  } else {
    fail(value.path, "expected a style: \"color\", \"linearGradient\" or \"hierarchical\"");
  }
  reader.finish();
  return style;
}

Font decodeFont(const Value& value) {
  ObjectReader reader = value.object();
  Font font;
  font.size = reader.optional<double>(
      "size", [](const Value& v) { return v.numberWithin(limits::kMinFontSize, limits::kMaxFontSize, "font size"); });
  font.textStyle =
      reader.optional<TextStyle>("textStyle", [](const Value& v) { return v.enumeration<TextStyle>("text style"); });
  if (font.size.has_value() == font.textStyle.has_value()) {
    fail(value.path, "a font has either \"size\" or \"textStyle\"");
  }
  font.fontWeight =
      reader.optional<Weight>("weight", [](const Value& v) { return v.enumeration<Weight>("weight"); });
  font.design =
      reader.optional<FontDesign>("design", [](const Value& v) { return v.enumeration<FontDesign>("font design"); });
  reader.finish();
  return font;
}

StrokeStyle decodeStrokeStyle(const Value& value) {
  ObjectReader reader = value.object();
  StrokeStyle stroke;
  if (auto v = reader.optional("lineWidth")) stroke.lineWidth = v->size();
  if (auto v = reader.optional("lineCap")) stroke.lineCap = v->enumeration<LineCap>("line cap");
  if (auto v = reader.optional("lineJoin")) stroke.lineJoin = v->enumeration<LineJoin>("line join");
  if (auto v = reader.optional("miterLimit")) stroke.miterLimit = v->size();
  if (auto v = reader.optional("dash")) {
    for (const auto& item : v->array()) stroke.dash.push_back(item.size());
    // Cairo refuses such a pattern and then draws nothing more at all.
    const bool allZero = std::all_of(stroke.dash.begin(), stroke.dash.end(), [](double d) { return d == 0; });
    if (!stroke.dash.empty() && allZero) fail(v->path, "a dash pattern needs a length above 0");
  }
  if (auto v = reader.optional("dashPhase")) stroke.dashPhase = v->length();
  reader.finish();
  return stroke;
}

platform::TextRun decodeRun(const Value& value) {
  ObjectReader reader = value.object();
  platform::TextRun run;
  run.text = reader.required("text").string();
  if (auto v = reader.optional("bold")) run.bold = v->boolean();
  if (auto v = reader.optional("italic")) run.italic = v->boolean();
  if (auto v = reader.optional("strikethrough")) run.strikethrough = v->boolean();
  if (auto v = reader.optional("code")) run.code = v->boolean();
  if (auto v = reader.optional("link")) run.link = v->string();
  reader.finish();
  return run;
}

std::vector<Node> readChildren(ObjectReader& reader) {
  std::vector<Node> children;
  if (auto list = reader.optional("children")) {
    for (const auto& item : list->array()) children.push_back(decodeNode(item));
  }
  return children;
}

std::vector<Node> readOneChild(ObjectReader& reader, std::string_view type) {
  std::vector<Node> children = readChildren(reader);
  if (children.size() != 1) fail(reader.path(), "a " + std::string(type) + " has exactly one child");
  return children;
}

Alignment readAlignment(ObjectReader& reader) {
  auto alignment = reader.optional("alignment");
  return alignment ? alignment->enumeration<Alignment>("alignment") : Alignment::center;
}

Node decodeModifiedContent(ObjectReader& reader) { return decodeNode(reader.required("content")); }

// One overload per kind; reads the kind's own keys.
VStack decodeKind(ObjectReader& reader, std::type_identity<VStack>) {
  VStack stack;
  if (auto v = reader.optional("alignment")) stack.alignment = v->enumeration<HorizontalAlignment>("alignment");
  if (auto v = reader.optional("spacing")) stack.spacing = v->length();
  stack.children = readChildren(reader);
  return stack;
}

HStack decodeKind(ObjectReader& reader, std::type_identity<HStack>) {
  HStack stack;
  if (auto v = reader.optional("alignment")) stack.alignment = v->enumeration<VerticalAlignment>("alignment");
  if (auto v = reader.optional("spacing")) stack.spacing = v->length();
  stack.children = readChildren(reader);
  return stack;
}

ZStack decodeKind(ObjectReader& reader, std::type_identity<ZStack>) {
  ZStack stack;
  stack.alignment = readAlignment(reader);
  stack.children = readChildren(reader);
  return stack;
}

Text decodeKind(ObjectReader& reader, std::type_identity<Text>) {
  Text text;
  if (auto runs = reader.optional("runs")) {
    for (const auto& item : runs->array()) text.runs.push_back(decodeRun(item));
    for (const auto& run : text.runs) text.text += run.text;
    if (auto shown = reader.optional("text"); shown && shown->string() != text.text) {
      fail(shown->path, "the text is not the concatenation of its runs");
    }
  } else {
    text.text = reader.required("text").string();
  }
  if (auto key = reader.optional("key")) text.key = key->string();
  return text;
}

Image decodeKind(ObjectReader& reader, std::type_identity<Image>) {
  return Image{reader.required("systemName").string()};
}

Circle decodeKind(ObjectReader&, std::type_identity<Circle>) { return {}; }

Capsule decodeKind(ObjectReader& reader, std::type_identity<Capsule>) {
  Capsule capsule;
  if (auto v = reader.optional("style")) capsule.style = v->enumeration<RoundedCornerStyle>("corner style");
  return capsule;
}

ContainerRelativeShape decodeKind(ObjectReader&, std::type_identity<ContainerRelativeShape>) { return {}; }

LinearGradient decodeKind(ObjectReader& reader, std::type_identity<LinearGradient>) { return readGradient(reader); }

Color decodeKind(ObjectReader& reader, std::type_identity<Color>) { return readColor(reader); }

Spacer decodeKind(ObjectReader& reader, std::type_identity<Spacer>) {
  Spacer spacer;
  if (auto v = reader.optional("minLength")) spacer.minLength = v->size();
  return spacer;
}

Link decodeKind(ObjectReader& reader, std::type_identity<Link>) {
  Link link;
  link.destination = reader.required("destination").string();
  link.children = readOneChild(reader, Link::type);
  return link;
}

AnyView decodeKind(ObjectReader& reader, std::type_identity<AnyView>) {
  return AnyView{readOneChild(reader, AnyView::type)};
}

template <std::size_t I = 0>
Node::Kind decodeKindNamed(const Value& type, ObjectReader& reader) {
  if constexpr (I == std::variant_size_v<Node::Kind>) {
    fail(type.path, "unknown view type " + inQuotes(type.string()));
  } else {
    using Kind = std::variant_alternative_t<I, Node::Kind>;
    if (type.string() == Kind::type) return decodeKind(reader, std::type_identity<Kind>{});
    return decodeKindNamed<I + 1>(type, reader);
  }
}

// One overload per modifier; reads its arguments.
modifiers::Font decodeModifier(ObjectReader& r, std::type_identity<modifiers::Font>) {
  return {decodeFont(r.required("font"))};
}

modifiers::FontWeight decodeModifier(ObjectReader& r, std::type_identity<modifiers::FontWeight>) {
  return {r.optional<Weight>("weight", [](const Value& v) { return v.enumeration<Weight>("weight"); })};
}

modifiers::ForegroundColor decodeModifier(ObjectReader& r, std::type_identity<modifiers::ForegroundColor>) {
  return {readColor(r)};
}

modifiers::ForegroundStyle decodeModifier(ObjectReader& r, std::type_identity<modifiers::ForegroundStyle>) {
  const Value styles = r.required("styles");
  const auto items = styles.array();
  if (items.empty() || items.size() > 2) fail(styles.path, "expected one or two styles");
  modifiers::ForegroundStyle modifier{decodeStyle(items[0]), std::nullopt};
  if (items.size() == 2) modifier.secondary = decodeStyle(items[1]);
  return modifier;
}

modifiers::Padding decodeModifier(ObjectReader& r, std::type_identity<modifiers::Padding>) {
  modifiers::Padding padding;
  if (auto v = r.optional("edges")) padding.edges = decodeEdgeSet(*v);
  if (auto v = r.optional("length")) padding.length = v->length();
  return padding;
}

modifiers::Offset decodeModifier(ObjectReader& r, std::type_identity<modifiers::Offset>) {
  return {r.required("x").length(), r.required("y").length()};
}

modifiers::Frame decodeModifier(ObjectReader& r, std::type_identity<modifiers::Frame>) {
  modifiers::Frame frame;
  if (auto v = r.optional("width")) frame.width = v->size();
  if (auto v = r.optional("height")) frame.height = v->size();
  frame.alignment = readAlignment(r);
  return frame;
}

modifiers::FlexFrame decodeModifier(ObjectReader& r, std::type_identity<modifiers::FlexFrame>) {
  const auto bound = [&r](const char* key) {
    return r.optional<double>(key, [](const Value& v) { return v.size(true); });
  };
  FlexibleFrame frame;
  frame.minWidth = bound("minWidth");
  frame.idealWidth = bound("idealWidth");
  frame.maxWidth = bound("maxWidth");
  frame.minHeight = bound("minHeight");
  frame.idealHeight = bound("idealHeight");
  frame.maxHeight = bound("maxHeight");
  frame.alignment = readAlignment(r);
  return {frame};
}

modifiers::Background decodeModifier(ObjectReader& r, std::type_identity<modifiers::Background>) {
  modifiers::Background background;
  background.alignment = readAlignment(r);
  if (auto v = r.optional("ignoresSafeAreaEdges")) background.ignoresSafeAreaEdges = decodeEdgeSet(*v);
  background.content = decodeModifiedContent(r);
  return background;
}

modifiers::Overlay decodeModifier(ObjectReader& r, std::type_identity<modifiers::Overlay>) {
  modifiers::Overlay overlay;
  overlay.alignment = readAlignment(r);
  overlay.content = decodeModifiedContent(r);
  return overlay;
}

modifiers::ContainerBackground decodeModifier(ObjectReader& r, std::type_identity<modifiers::ContainerBackground>) {
  modifiers::ContainerBackground background;
  background.placement = r.required("placement").enumeration<ContainerBackgroundPlacement>("placement");
  background.alignment = readAlignment(r);
  background.content = decodeModifiedContent(r);
  return background;
}

modifiers::WidgetURL decodeModifier(ObjectReader& r, std::type_identity<modifiers::WidgetURL>) {
  return {r.required("url").string()};
}

modifiers::PrivacySensitive decodeModifier(ObjectReader& r, std::type_identity<modifiers::PrivacySensitive>) {
  auto sensitive = r.optional("sensitive");
  return {sensitive ? sensitive->boolean() : true};
}

modifiers::LineLimit decodeModifier(ObjectReader& r, std::type_identity<modifiers::LineLimit>) {
  return {r.optional<int>("lines", [](const Value& v) {
    return v.integerWithin(1, limits::kMaxLineLimit, "line limit");
  })};
}

modifiers::ImageScale decodeModifier(ObjectReader& r, std::type_identity<modifiers::ImageScale>) {
  return {r.required("scale").enumeration<ImageScale>("image scale")};
}

modifiers::ButtonStyle decodeModifier(ObjectReader& r, std::type_identity<modifiers::ButtonStyle>) {
  return {r.required("style").enumeration<ButtonStyle>("button style")};
}

modifiers::Resizable decodeModifier(ObjectReader& r, std::type_identity<modifiers::Resizable>) {
  modifiers::Resizable resizable;
  if (auto v = r.optional("capInsets")) {
    ObjectReader insets = v->object();
    resizable.capInsets = {insets.required("top").size(), insets.required("leading").size(),
                           insets.required("bottom").size(), insets.required("trailing").size()};
    insets.finish();
  }
  if (auto v = r.optional("resizingMode")) resizable.resizingMode = v->enumeration<ResizingMode>("resizing mode");
  return resizable;
}

modifiers::Fill decodeModifier(ObjectReader& r, std::type_identity<modifiers::Fill>) {
  return {decodeStyle(r.required("style"))};
}

modifiers::StrokeBorder decodeModifier(ObjectReader& r, std::type_identity<modifiers::StrokeBorder>) {
  modifiers::StrokeBorder stroke{decodeStyle(r.required("style")), StrokeStyle{}};
  if (auto v = r.optional("strokeStyle")) stroke.strokeStyle = decodeStrokeStyle(*v);
  return stroke;
}

modifiers::Opacity decodeModifier(ObjectReader& r, std::type_identity<modifiers::Opacity>) {
  return {r.required("opacity").fraction("opacity")};
}

template <std::size_t I = 0>
Modifier::Kind decodeModifierNamed(const Value& name, ObjectReader& reader) {
  if constexpr (I == std::variant_size_v<Modifier::Kind>) {
    fail(name.path, "unknown modifier " + inQuotes(name.string()));
  } else {
    using Kind = std::variant_alternative_t<I, Modifier::Kind>;
    if (name.string() == Kind::name) return decodeModifier(reader, std::type_identity<Kind>{});
    return decodeModifierNamed<I + 1>(name, reader);
  }
}

Modifier decodeModifierValue(const Value& value) {
  ObjectReader reader = value.object();
  Modifier modifier{decodeModifierNamed(reader.required("modifier"), reader)};
  reader.finish();
  return modifier;
}

std::size_t modifierCount(const Json& node) {
  if (!node.is_object()) return 0;
  const auto modifiers = node.find("modifiers");
  return modifiers != node.end() && modifiers->is_array() ? modifiers->size() : 0;
}

// The depth is checked before anything below the node is decoded: the
// decoder, the host's layout and drawing, and freeing a tree all recurse as
// deep as it nests.
Node decodeNode(const Value& value) {
  const std::size_t depth = value.depth + 1 + modifierCount(value.json);
  if (depth > limits::kMaxDepth) {
    fail(value.path, "views nest more than " + std::to_string(limits::kMaxDepth) +
                         " levels deep (each modifier counts as a level)");
  }
  ObjectReader reader = Value{value.json, value.path, depth}.object();
  Node node;
  node.kind = decodeKindNamed(reader.required("type"), reader);
  if (auto list = reader.optional("modifiers")) {
    for (const auto& item : list->array()) node.modifiers.push_back(decodeModifierValue(item));
  }
  reader.finish();
  return node;
}

}  // namespace

nlohmann::ordered_json toJson(const Node& node) {
  Json json = Json::object();
  std::visit([&json](const auto& kind) { json["type"] = std::string(std::decay_t<decltype(kind)>::type); },
             node.kind);
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

Node nodeFromJson(const nlohmann::ordered_json& json) { return decodeNode(Value{json, "", 0}); }

std::string encodeViewTree(const Node& node) { return toJson(node).dump(2) + "\n"; }

Node decodeViewTree(std::string_view text) {
  Json json;
  try {
    json = Json::parse(text);
  } catch (const nlohmann::json::exception& error) {
    // A syntax error, or a number too large for a double (1e999).
    throw ViewTreeJsonError(std::string("view tree: malformed JSON: ") + error.what());
  }
  return nodeFromJson(json);
}

}  // namespace quillan::views
