#include "views/Node.hpp"

#include <utility>

namespace quillan::views {
namespace {

template <typename M>
Node appended(Node node, M modifier) {
  node.modifiers.push_back(Modifier{std::move(modifier)});
  return node;
}

const std::vector<Node> kNoChildren;

}  // namespace

Node::Node(Kind kind, std::vector<Modifier> modifiers) : kind(std::move(kind)), modifiers(std::move(modifiers)) {}

const std::vector<Node>& Node::children() const {
  return std::visit(
      [](const auto& kind) -> const std::vector<Node>& {
        if constexpr (requires { kind.children; }) {
          return kind.children;
        } else {
          return kNoChildren;
        }
      },
      kind);
}

Node Node::modifier(Modifier modifier) const& { return appended(*this, std::move(modifier.kind)); }
Node Node::modifier(Modifier modifier) && { return appended(std::move(*this), std::move(modifier.kind)); }

Node Node::font(Font font) const& { return appended(*this, modifiers::Font{font}); }
Node Node::font(Font font) && { return appended(std::move(*this), modifiers::Font{font}); }

Node Node::fontWeight(std::optional<Weight> weight) const& { return appended(*this, modifiers::FontWeight{weight}); }
Node Node::fontWeight(std::optional<Weight> weight) && {
  return appended(std::move(*this), modifiers::FontWeight{weight});
}

Node Node::foregroundColor(Color color) const& { return appended(*this, modifiers::ForegroundColor{color}); }
Node Node::foregroundColor(Color color) && { return appended(std::move(*this), modifiers::ForegroundColor{color}); }

Node Node::foregroundStyle(ShapeStyle style) const& {
  return appended(*this, modifiers::ForegroundStyle{std::move(style), std::nullopt});
}
Node Node::foregroundStyle(ShapeStyle style) && {
  return appended(std::move(*this), modifiers::ForegroundStyle{std::move(style), std::nullopt});
}

Node Node::foregroundStyle(ShapeStyle primary, ShapeStyle secondary) const& {
  return appended(*this, modifiers::ForegroundStyle{std::move(primary), std::move(secondary)});
}
Node Node::foregroundStyle(ShapeStyle primary, ShapeStyle secondary) && {
  return appended(std::move(*this), modifiers::ForegroundStyle{std::move(primary), std::move(secondary)});
}

Node Node::padding(EdgeSet edges, std::optional<double> length) const& {
  return appended(*this, modifiers::Padding{edges, length});
}
Node Node::padding(EdgeSet edges, std::optional<double> length) && {
  return appended(std::move(*this), modifiers::Padding{edges, length});
}

Node Node::padding(double length) const& { return appended(*this, modifiers::Padding{EdgeSet::all(), length}); }
Node Node::padding(double length) && { return appended(std::move(*this), modifiers::Padding{EdgeSet::all(), length}); }

Node Node::offset(double x, double y) const& { return appended(*this, modifiers::Offset{x, y}); }
Node Node::offset(double x, double y) && { return appended(std::move(*this), modifiers::Offset{x, y}); }

Node Node::frame(std::optional<double> width, std::optional<double> height, Alignment alignment) const& {
  return appended(*this, modifiers::Frame{width, height, alignment});
}
Node Node::frame(std::optional<double> width, std::optional<double> height, Alignment alignment) && {
  return appended(std::move(*this), modifiers::Frame{width, height, alignment});
}

Node Node::frame(FlexibleFrame frame) const& { return appended(*this, modifiers::FlexFrame{frame}); }
Node Node::frame(FlexibleFrame frame) && { return appended(std::move(*this), modifiers::FlexFrame{frame}); }

Node Node::background(Node content, Alignment alignment, EdgeSet ignoresSafeAreaEdges) const& {
  return appended(*this, modifiers::Background{std::move(content), alignment, ignoresSafeAreaEdges});
}
Node Node::background(Node content, Alignment alignment, EdgeSet ignoresSafeAreaEdges) && {
  return appended(std::move(*this), modifiers::Background{std::move(content), alignment, ignoresSafeAreaEdges});
}

Node Node::overlay(Node content, Alignment alignment) const& {
  return appended(*this, modifiers::Overlay{std::move(content), alignment});
}
Node Node::overlay(Node content, Alignment alignment) && {
  return appended(std::move(*this), modifiers::Overlay{std::move(content), alignment});
}

Node Node::containerBackground(ContainerBackgroundPlacement placement, Alignment alignment, Node content) const& {
  return appended(*this, modifiers::ContainerBackground{placement, alignment, std::move(content)});
}
Node Node::containerBackground(ContainerBackgroundPlacement placement, Alignment alignment, Node content) && {
  return appended(std::move(*this), modifiers::ContainerBackground{placement, alignment, std::move(content)});
}

Node Node::widgetURL(std::string url) const& { return appended(*this, modifiers::WidgetURL{std::move(url)}); }
Node Node::widgetURL(std::string url) && { return appended(std::move(*this), modifiers::WidgetURL{std::move(url)}); }

Node Node::privacySensitive(bool sensitive) const& { return appended(*this, modifiers::PrivacySensitive{sensitive}); }
Node Node::privacySensitive(bool sensitive) && {
  return appended(std::move(*this), modifiers::PrivacySensitive{sensitive});
}

Node Node::lineLimit(std::optional<int> lines) const& { return appended(*this, modifiers::LineLimit{lines}); }
Node Node::lineLimit(std::optional<int> lines) && { return appended(std::move(*this), modifiers::LineLimit{lines}); }

Node Node::imageScale(ImageScale scale) const& { return appended(*this, modifiers::ImageScale{scale}); }
Node Node::imageScale(ImageScale scale) && { return appended(std::move(*this), modifiers::ImageScale{scale}); }

Node Node::buttonStyle(ButtonStyle style) const& { return appended(*this, modifiers::ButtonStyle{style}); }
Node Node::buttonStyle(ButtonStyle style) && { return appended(std::move(*this), modifiers::ButtonStyle{style}); }

Node Node::resizable(EdgeInsets capInsets, ResizingMode resizingMode) const& {
  return appended(*this, modifiers::Resizable{capInsets, resizingMode});
}
Node Node::resizable(EdgeInsets capInsets, ResizingMode resizingMode) && {
  return appended(std::move(*this), modifiers::Resizable{capInsets, resizingMode});
}

Node Node::fill(ShapeStyle style) const& { return appended(*this, modifiers::Fill{std::move(style)}); }
Node Node::fill(ShapeStyle style) && { return appended(std::move(*this), modifiers::Fill{std::move(style)}); }

Node Node::strokeBorder(ShapeStyle style, StrokeStyle strokeStyle) const& {
  return appended(*this, modifiers::StrokeBorder{std::move(style), std::move(strokeStyle)});
}
Node Node::strokeBorder(ShapeStyle style, StrokeStyle strokeStyle) && {
  return appended(std::move(*this), modifiers::StrokeBorder{std::move(style), std::move(strokeStyle)});
}

Node Node::opacity(double opacity) const& { return appended(*this, modifiers::Opacity{opacity}); }
Node Node::opacity(double opacity) && { return appended(std::move(*this), modifiers::Opacity{opacity}); }

}  // namespace quillan::views
