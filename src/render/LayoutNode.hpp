#pragma once

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "render/FontDescription.hpp"
#include "render/Geometry.hpp"
#include "render/Paint.hpp"
#include "render/StyledRun.hpp"

namespace quillan::render {

// What a layout node is. Modifiers that affect layout are nodes of their own
// wrapping one child (frame, padding, offset, link; group only carries
// opacity and marks); background and overlay hold [primary, secondary].
enum class LayoutKind {
  empty,
  hstack,
  vstack,
  zstack,
  text,
  symbol,
  shape,
  spacer,
  frame,
  flexibleFrame,
  padding,
  background,
  overlay,
  offset,
  link,
  group,
};

enum class ShapeKind { rectangle, roundedRectangle, capsule, circle, ellipse, containerRelative };
enum class SymbolScale { small, medium, large };

struct FrameSpec {
  std::optional<double> width = {};  // fixed frame
  std::optional<double> height = {};
  std::optional<double> minWidth = {};  // flexible frame
  std::optional<double> idealWidth = {};
  std::optional<double> maxWidth = {};
  std::optional<double> minHeight = {};
  std::optional<double> idealHeight = {};
  std::optional<double> maxHeight = {};
};

// The layout engine's input: what the views asked for, resolved to concrete
// fonts and colours. Computed frames live in LayoutBox, never here.
struct LayoutNode {
  LayoutKind kind = LayoutKind::empty;
  std::string name;  // the view's own name, for layout JSON
  std::vector<LayoutNode> children;

  // Stacks (alignment on the minor axis) and frames (both axes).
  std::optional<double> spacing;
  Alignment alignment;
  double layoutPriority = 0;
  std::optional<double> spacerMinLength;
  FrameSpec frame;
  EdgeInsets insets;
  Point offset;

  StyledText text;
  std::optional<int> lineLimit;

  std::string symbolName;
  FontDescription symbolFont;
  SymbolScale symbolScale = SymbolScale::medium;
  bool resizable = false;

  ShapeKind shape = ShapeKind::rectangle;
  double cornerRadius = 0;
  Paint fill;
  std::optional<Stroke> stroke;
  Paint strokePaint;

  // Drawing: text and symbol colour (secondary = a symbol's second layer),
  // group opacity, and the marks rendering modes and redaction look at.
  Paint foreground;
  Paint secondaryForeground;
  double opacity = 1;
  std::optional<std::string> url;  // a Link's destination
  std::optional<std::string> widgetURL;
  bool privacySensitive = false;
  bool unredacted = false;
  bool accentable = false;
  bool isContainerBackground = false;
};

}  // namespace quillan::render
