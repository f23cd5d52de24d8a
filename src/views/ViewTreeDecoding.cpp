#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "views/ViewTreeLimits.hpp"
#include "views/ViewTreeNames.hpp"

namespace quillan::views {
namespace {

using Json = nlohmann::ordered_json;
using names::kNamedEdgeSets;
using names::kNamedPoints;

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
  double size(bool allowInfinity = false) const { return numberWithin(0, limits::kMaxLength, "size", allowInfinity); }
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
  font.size = reader.optional<double>("size", [](const Value& v) {
    return v.numberWithin(limits::kMinFontSize, limits::kMaxFontSize, "font size");
  });
  font.textStyle = reader.optional<TextStyle>("textStyle",
                                              [](const Value& v) { return v.enumeration<TextStyle>("text style"); });
  if (font.size.has_value() == font.textStyle.has_value()) {
    fail(value.path, "a font has either \"size\" or \"textStyle\"");
  }
  font.fontWeight = reader.optional<Weight>("weight", [](const Value& v) { return v.enumeration<Weight>("weight"); });
  font.design = reader.optional<FontDesign>("design",
                                            [](const Value& v) { return v.enumeration<FontDesign>("font design"); });
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
  return {
      r.optional<int>("lines", [](const Value& v) { return v.integerWithin(1, limits::kMaxLineLimit, "line limit"); })};
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

Node nodeFromJson(const nlohmann::ordered_json& json) { return decodeNode(Value{json, "", 0}); }

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
