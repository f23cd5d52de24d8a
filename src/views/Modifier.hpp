#pragma once

// Modifiers of the view tree. Each kind carries the arguments it was applied
// with, defaults included, so that the tree says exactly what the view said.

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "views/Alignment.hpp"
#include "views/Color.hpp"
#include "views/Edge.hpp"
#include "views/EnumNames.hpp"
#include "views/Font.hpp"
#include "views/Node.hpp"
#include "views/ShapeStyle.hpp"
#include "views/StrokeStyle.hpp"

namespace quillan::views {

enum class ImageScale { small, medium, large };

constexpr auto enumNames(ImageScale) {
  using enum ImageScale;
  return std::array<EnumName<ImageScale>, 3>{{{small, "small"}, {medium, "medium"}, {large, "large"}}};
}

enum class ButtonStyle { plain };

constexpr auto enumNames(ButtonStyle) { return std::array<EnumName<ButtonStyle>, 1>{{{ButtonStyle::plain, "plain"}}}; }

enum class ResizingMode { stretch, tile };

constexpr auto enumNames(ResizingMode) {
  using enum ResizingMode;
  return std::array<EnumName<ResizingMode>, 2>{{{stretch, "stretch"}, {tile, "tile"}}};
}

// Where a container background goes; widgets know one placement.
enum class ContainerBackgroundPlacement { widget };

constexpr auto enumNames(ContainerBackgroundPlacement) {
  return std::array<EnumName<ContainerBackgroundPlacement>, 1>{{{ContainerBackgroundPlacement::widget, "widget"}}};
}

// `.frame(minWidth:idealWidth:maxWidth:minHeight:idealHeight:maxHeight:alignment:)`.
// Unset bounds leave the child's own answer; `infinity` is a valid maximum.
struct FlexibleFrame {
  std::optional<double> minWidth = std::nullopt;
  std::optional<double> idealWidth = std::nullopt;
  std::optional<double> maxWidth = std::nullopt;
  std::optional<double> minHeight = std::nullopt;
  std::optional<double> idealHeight = std::nullopt;
  std::optional<double> maxHeight = std::nullopt;
  Alignment alignment = Alignment::center;

  static constexpr double infinity = std::numeric_limits<double>::infinity();

  bool operator==(const FlexibleFrame&) const = default;
};

namespace modifiers {

struct Font {
  static constexpr std::string_view name = "font";
  views::Font font;
  bool operator==(const Font&) const = default;
};

// `.fontWeight(nil)` is legal and resets the weight, hence optional.
struct FontWeight {
  static constexpr std::string_view name = "fontWeight";
  std::optional<Weight> weight;
  bool operator==(const FontWeight&) const = default;
};

struct ForegroundColor {
  static constexpr std::string_view name = "foregroundColor";
  Color color;
  bool operator==(const ForegroundColor&) const = default;
};

// One style, or a primary and a secondary one for two-layer symbols.
struct ForegroundStyle {
  static constexpr std::string_view name = "foregroundStyle";
  ShapeStyle primary;
  std::optional<ShapeStyle> secondary;
  bool operator==(const ForegroundStyle&) const = default;
};

struct Padding {
  static constexpr std::string_view name = "padding";
  EdgeSet edges = EdgeSet::all();
  std::optional<double> length;  // none: the toolkit's default amount
  bool operator==(const Padding&) const = default;
};

struct Offset {
  static constexpr std::string_view name = "offset";
  double x = 0;
  double y = 0;
  bool operator==(const Offset&) const = default;
};

// `.frame(width:height:alignment:)`: an unset dimension is the child's own.
struct Frame {
  static constexpr std::string_view name = "frame";
  std::optional<double> width;
  std::optional<double> height;
  Alignment alignment = Alignment::center;
  bool operator==(const Frame&) const = default;
};

struct FlexFrame {
  static constexpr std::string_view name = "flexFrame";
  FlexibleFrame frame;
  bool operator==(const FlexFrame&) const = default;
};

// Drawn behind the modified view, in its frame. `ignoresSafeAreaEdges` lets it
// extend under those safe-area edges (the pre-17 widget backgrounds use all).
struct Background {
  static constexpr std::string_view name = "background";
  Node content;
  Alignment alignment = Alignment::center;
  EdgeSet ignoresSafeAreaEdges;
  bool operator==(const Background&) const = default;
};

struct Overlay {
  static constexpr std::string_view name = "overlay";
  Node content;
  Alignment alignment = Alignment::center;
  bool operator==(const Overlay&) const = default;
};

// The widget's own background (platform 17 and later): the host draws it
// under the whole widget, outside the content margins.
struct ContainerBackground {
  static constexpr std::string_view name = "containerBackground";
  ContainerBackgroundPlacement placement = ContainerBackgroundPlacement::widget;
  Alignment alignment = Alignment::center;
  Node content;
  bool operator==(const ContainerBackground&) const = default;
};

// What a tap anywhere on the widget opens, outside any Link.
struct WidgetURL {
  static constexpr std::string_view name = "widgetURL";
  std::string url;
  bool operator==(const WidgetURL&) const = default;
};

struct PrivacySensitive {
  static constexpr std::string_view name = "privacySensitive";
  bool sensitive = true;
  bool operator==(const PrivacySensitive&) const = default;
};

// none: as many lines as needed.
struct LineLimit {
  static constexpr std::string_view name = "lineLimit";
  std::optional<int> lines;
  bool operator==(const LineLimit&) const = default;
};

struct ImageScale {
  static constexpr std::string_view name = "imageScale";
  views::ImageScale scale = views::ImageScale::medium;
  bool operator==(const ImageScale&) const = default;
};

struct ButtonStyle {
  static constexpr std::string_view name = "buttonStyle";
  views::ButtonStyle style = views::ButtonStyle::plain;
  bool operator==(const ButtonStyle&) const = default;
};

struct Resizable {
  static constexpr std::string_view name = "resizable";
  EdgeInsets capInsets;
  ResizingMode resizingMode = ResizingMode::stretch;
  bool operator==(const Resizable&) const = default;
};

// On shapes: the shape filled with a style.
struct Fill {
  static constexpr std::string_view name = "fill";
  ShapeStyle style;
  bool operator==(const Fill&) const = default;
};

// On shapes: the outline stroked inside the frame (inset by half the width).
struct StrokeBorder {
  static constexpr std::string_view name = "strokeBorder";
  ShapeStyle style;
  StrokeStyle strokeStyle;
  bool operator==(const StrokeBorder&) const = default;
};

struct Opacity {
  static constexpr std::string_view name = "opacity";
  double opacity = 1;
  bool operator==(const Opacity&) const = default;
};

}  // namespace modifiers

struct Modifier {
  using Kind =
      std::variant<modifiers::Font, modifiers::FontWeight, modifiers::ForegroundColor, modifiers::ForegroundStyle,
                   modifiers::Padding, modifiers::Offset, modifiers::Frame, modifiers::FlexFrame, modifiers::Background,
                   modifiers::Overlay, modifiers::ContainerBackground, modifiers::WidgetURL,
                   modifiers::PrivacySensitive, modifiers::LineLimit, modifiers::ImageScale, modifiers::ButtonStyle,
                   modifiers::Resizable, modifiers::Fill, modifiers::StrokeBorder, modifiers::Opacity>;

  Kind kind;

  bool operator==(const Modifier&) const = default;
};

}  // namespace quillan::views
