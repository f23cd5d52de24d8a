#pragma once

// The view tree: what every entry view returns and every host draws.
//
// A Node is one view: its kind (a stack, a text, a shape, ...) with the kind's
// own properties and children, and the modifiers applied to it, in the order
// the view applied them (`text("x").font(f).padding()` pads the styled text).
// Nodes are plain values: children are held by value, trees compare with ==,
// and every pass over them (JSON, layout, drawing) is a visitor over
// `Node::Kind` and `Modifier::Kind`, so adding a kind breaks every pass that
// does not yet handle it.

#include <array>
#include <concepts>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/AttributedString.hpp"
#include "views/Alignment.hpp"
#include "views/Color.hpp"
#include "views/Edge.hpp"
#include "views/EnumNames.hpp"
#include "views/Font.hpp"
#include "views/LinearGradient.hpp"
#include "views/ShapeStyle.hpp"
#include "views/StrokeStyle.hpp"

namespace quillan::views {

struct Node;
struct Modifier;
struct FlexibleFrame;
enum class ImageScale;
enum class ButtonStyle;
enum class ResizingMode;
enum class ContainerBackgroundPlacement;

struct VStack {
  static constexpr std::string_view type = "VStack";
  HorizontalAlignment alignment = HorizontalAlignment::center;
  std::optional<double> spacing;  // none: the toolkit's default spacing
  std::vector<Node> children;

  bool operator==(const VStack&) const = default;
};

struct HStack {
  static constexpr std::string_view type = "HStack";
  VerticalAlignment alignment = VerticalAlignment::center;
  std::optional<double> spacing;
  std::vector<Node> children;

  bool operator==(const HStack&) const = default;
};

struct ZStack {
  static constexpr std::string_view type = "ZStack";
  Alignment alignment = Alignment::center;
  std::vector<Node> children;

  bool operator==(const ZStack&) const = default;
};

// Text as shown. Three forms: verbatim (only `text`); localisable, where `key`
// is the lookup key ("%lld more", "On This Day") and `text` what it shows
// ("3 more"); attributed, where `runs` carry the styles and `text` is their
// concatenation.
struct Text {
  static constexpr std::string_view type = "Text";
  std::string text;
  std::optional<std::string> key;
  std::vector<platform::TextRun> runs;

  bool isAttributed() const { return !runs.empty(); }
  bool operator==(const Text&) const = default;
};

// A symbol image (`Image(systemName:)`); resizing is a modifier.
struct Image {
  static constexpr std::string_view type = "Image";
  std::string systemName;

  bool operator==(const Image&) const = default;
};

struct Circle {
  static constexpr std::string_view type = "Circle";
  bool operator==(const Circle&) const = default;
};

enum class RoundedCornerStyle { circular, continuous };

constexpr auto enumNames(RoundedCornerStyle) {
  using enum RoundedCornerStyle;
  return std::array<EnumName<RoundedCornerStyle>, 2>{{{circular, "circular"}, {continuous, "continuous"}}};
}

struct Capsule {
  static constexpr std::string_view type = "Capsule";
  RoundedCornerStyle style = RoundedCornerStyle::circular;

  bool operator==(const Capsule&) const = default;
};

// The widget container's rounded rectangle, inset to the view's frame.
struct ContainerRelativeShape {
  static constexpr std::string_view type = "ContainerRelativeShape";
  bool operator==(const ContainerRelativeShape&) const = default;
};

struct Spacer {
  static constexpr std::string_view type = "Spacer";
  std::optional<double> minLength;  // none: the toolkit's default

  bool operator==(const Spacer&) const = default;
};

// A tap target: tapping inside its label opens `destination`. `children`
// holds exactly one node, the label.
struct Link {
  static constexpr std::string_view type = "Link";
  std::string destination;
  std::vector<Node> children;

  bool operator==(const Link&) const = default;
};

// A type-erased view. It draws its one child unchanged; it is kept in the tree
// because the views erase types there and the tree records what they did.
struct AnyView {
  static constexpr std::string_view type = "AnyView";
  std::vector<Node> children;

  bool operator==(const AnyView&) const = default;
};

struct Node {
  using Kind = std::variant<VStack, HStack, ZStack, Text, Image, Circle, Capsule, ContainerRelativeShape,
                            LinearGradient, Color, Spacer, Link, AnyView>;

  Kind kind;
  std::vector<Modifier> modifiers;

  Node() = default;
  // Any kind is a node without modifiers, so a colour or a shape can be passed
  // where a view is expected (`.background(Color::white())`).
  template <typename K>
  requires std::constructible_from<Kind, K&&> &&(!std::same_as<std::remove_cvref_t<K>, Node>)Node(K&& kind)
      : kind(std::forward<K>(kind)) {}  // NOLINT: implicit on purpose
  Node(Kind kind, std::vector<Modifier> modifiers);

  bool operator==(const Node&) const = default;

  // The children of stacks, links and type-erased views; empty for leaves.
  const std::vector<Node>& children() const;

  // Chainable modifiers: each returns the node with one more modifier
  // appended. Rvalue overloads move the tree instead of copying it.
  Node modifier(Modifier modifier) const&;
  Node modifier(Modifier modifier) &&;

  Node font(Font font) const&;
  Node font(Font font) &&;
  Node fontWeight(std::optional<Weight> weight) const&;
  Node fontWeight(std::optional<Weight> weight) &&;
  Node foregroundColor(Color color) const&;
  Node foregroundColor(Color color) &&;
  Node foregroundStyle(ShapeStyle style) const&;
  Node foregroundStyle(ShapeStyle style) &&;
  Node foregroundStyle(ShapeStyle primary, ShapeStyle secondary) const&;
  Node foregroundStyle(ShapeStyle primary, ShapeStyle secondary) &&;
  // No length: the toolkit's default amount.
  Node padding(EdgeSet edges = EdgeSet::all(), std::optional<double> length = std::nullopt) const&;
  Node padding(EdgeSet edges = EdgeSet::all(), std::optional<double> length = std::nullopt) &&;
  Node padding(double length) const&;
  Node padding(double length) &&;
  Node offset(double x, double y) const&;
  Node offset(double x, double y) &&;
  Node frame(std::optional<double> width, std::optional<double> height, Alignment alignment = Alignment::center) const&;
  Node frame(std::optional<double> width, std::optional<double> height, Alignment alignment = Alignment::center) &&;
  Node frame(FlexibleFrame frame) const&;
  Node frame(FlexibleFrame frame) &&;
  Node background(Node content, Alignment alignment = Alignment::center,
                  EdgeSet ignoresSafeAreaEdges = EdgeSet::none()) const&;
  Node background(Node content, Alignment alignment = Alignment::center,
                  EdgeSet ignoresSafeAreaEdges = EdgeSet::none()) &&;
  Node overlay(Node content, Alignment alignment = Alignment::center) const&;
  Node overlay(Node content, Alignment alignment = Alignment::center) &&;
  Node containerBackground(ContainerBackgroundPlacement placement, Alignment alignment, Node content) const&;
  Node containerBackground(ContainerBackgroundPlacement placement, Alignment alignment, Node content) &&;
  Node widgetURL(std::string url) const&;
  Node widgetURL(std::string url) &&;
  Node privacySensitive(bool sensitive = true) const&;
  Node privacySensitive(bool sensitive = true) &&;
  Node lineLimit(std::optional<int> lines) const&;
  Node lineLimit(std::optional<int> lines) &&;
  Node imageScale(ImageScale scale) const&;
  Node imageScale(ImageScale scale) &&;
  Node buttonStyle(ButtonStyle style) const&;
  Node buttonStyle(ButtonStyle style) &&;
  Node resizable(EdgeInsets capInsets = {}, ResizingMode resizingMode = ResizingMode{}) const&;
  Node resizable(EdgeInsets capInsets = {}, ResizingMode resizingMode = ResizingMode{}) &&;
  Node fill(ShapeStyle style) const&;
  Node fill(ShapeStyle style) &&;
  Node strokeBorder(ShapeStyle style, StrokeStyle strokeStyle) const&;
  Node strokeBorder(ShapeStyle style, StrokeStyle strokeStyle) &&;
  Node opacity(double opacity) const&;
  Node opacity(double opacity) &&;
};

}  // namespace quillan::views

// Modifiers hold nodes by value (a background's content), so they are defined
// once Node is complete; every user of Node needs them.
#include "views/Modifier.hpp"
