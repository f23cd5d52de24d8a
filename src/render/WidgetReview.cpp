#include "render/WidgetReview.hpp"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "render/CairoHandles.hpp"
#include "render/CairoPixels.hpp"
#include "render/PangoLineDrawing.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/WidgetLayout.hpp"
#include "render/WidgetPainter.hpp"

namespace quillan::render {

namespace {

// What the walk down the box tree carries: the painter's translation and
// opacity, and whether an accent group recolours the subtree.
struct ReviewState {
  std::string path;
  Point offset = {};
  double opacity = 1;
  bool accent = false;
};

// The colour the view asks for, before a rendering mode recolours it.
Rgba authoredColorOf(const LayoutNode& node, const ReviewState& state) {
  const Rgba color = node.foreground.kind == Paint::Kind::solid ? node.foreground.color
                     : node.foreground.kind == Paint::Kind::linearGradient && !node.foreground.stops.empty()
                         ? node.foreground.stops.front().color
                         : Rgba::fromHex(0, 0);
  return color.multipliedAlpha(state.opacity);
}

Rgba textColorOf(const LayoutNode& node, const RenderContext& context, const ReviewState& state) {
  const Rgba authored = authoredColorOf(node, state);
  return colorForMode(authored.withAlpha(1), context.env.renderingMode, state.accent).multipliedAlpha(authored.alpha);
}

std::string joinedLines(const TextLayout& layout) {
  std::string shown;
  for (const auto& line : layout.lines) {
    if (!shown.empty()) shown += '\n';
    shown += plainText(line.runs);
  }
  return shown;
}

bool isBold(const StyledText& text) {
  if (text.empty()) return false;
  for (const auto& run : text)
    if (weightClass(run.font.weight) < 600) return false;
  return true;
}

double largestFontSize(const StyledText& text) {
  double size = 0;
  for (const auto& run : text) size = std::max(size, run.font.size);
  return size;
}

// The ink of one text drawn alone, opaque, cropped to where it has any.
InkMask inkOf(const TextLayout& text, Rect frame, bool rightToLeft, double scale) {
  // Glyphs reach past their line box (accents, descenders, italics): a margin
  // of a line's height on every side catches them.
  const double margin = std::ceil(text.lineHeight + 2);
  const int originX = static_cast<int>(std::floor((frame.x - margin) * scale));
  const int originY = static_cast<int>(std::floor((frame.y - margin) * scale));
  const int width = static_cast<int>(std::ceil((frame.width + 2 * margin) * scale));
  const int height = static_cast<int>(std::ceil((frame.height + 2 * margin) * scale));
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, width, height);
  cairo_t* cr = cairo_create(surface);
  cairo_translate(cr, -originX, -originY);
  cairo_scale(cr, scale, scale);
  const Rgba opaque{0, 0, 0, 1};
  PangoLineDrawing::drawText(cr, text, frame, rightToLeft ? LineAlignment::right : LineAlignment::left, opaque, opaque);
  cairo_destroy(cr);
  cairo_surface_flush(surface);
  const unsigned char* data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  int minX = width, minY = height, maxX = -1, maxY = -1;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (data[y * stride + x] != 0) {
        minX = std::min(minX, x), maxX = std::max(maxX, x);
        minY = std::min(minY, y), maxY = std::max(maxY, y);
      }
  InkMask ink;
  if (maxX >= 0) {
    ink = {originX + minX, originY + minY, maxX - minX + 1, maxY - minY + 1, {}};
    ink.coverage.reserve(static_cast<std::size_t>(ink.width) * static_cast<std::size_t>(ink.height));
    for (int y = minY; y <= maxY; ++y)
      ink.coverage.insert(ink.coverage.end(), data + y * stride + minX, data + y * stride + maxX + 1);
  }
  cairo_surface_destroy(surface);
  return ink;
}

class ElementCollector {
 public:
  ElementCollector(const WidgetLayout& widget, const RenderContext& context, bool withInk,
                   std::vector<ReviewedElement>& out)
      : widget_(widget), context_(context), withInk_(withInk), out_(out) {}

  void collect(const LayoutBox& box, ReviewState state) {
    const LayoutNode& node = *box.node;
    state.accent = state.accent || node.accentable;
    state.opacity *= node.opacity;
    if (node.kind == LayoutKind::offset) {
      state.offset.x += widget_.rightToLeft ? -node.offset.x : node.offset.x;
      state.offset.y += node.offset.y;
    }
    if (showsSomething(node)) out_.push_back(elementOf(box, state));
    for (std::size_t i = 0; i < box.children.size(); ++i) {
      ReviewState childState = state;
      childState.path = state.path + "/" + nameOf(*box.children[i].node) + indexSuffix(box, i);
      collect(box.children[i], childState);
    }
  }

 private:
  static bool showsSomething(const LayoutNode& node) {
    return node.kind == LayoutKind::text || node.kind == LayoutKind::symbol || node.kind == LayoutKind::shape;
  }

  static std::string nameOf(const LayoutNode& node) { return node.name.empty() ? "?" : node.name; }

  // Siblings of one name are told apart by their place among their parent's children.
  static std::string indexSuffix(const LayoutBox& parent, std::size_t index) {
    const std::string name = nameOf(*parent.children[index].node);
    std::size_t sameName = 0;
    for (const auto& child : parent.children) sameName += nameOf(*child.node) == name ? 1 : 0;
    return sameName > 1 ? "[" + std::to_string(index) + "]" : "";
  }

  ReviewedElement elementOf(const LayoutBox& box, const ReviewState& state) const {
    const LayoutNode& node = *box.node;
    ReviewedElement element;
    element.path = state.path;
    element.type = nameOf(node);
    element.frame = box.frame.offsetBy(state.offset.x, state.offset.y);
    if (node.kind != LayoutKind::text || !box.text) return element;
    element.isText = true;
    element.text = plainText(node.text);
    element.shownText = joinedLines(*box.text);
    element.truncated = box.text->truncated;
    element.missingGlyphs = box.text->missingGlyphs;
    element.fontSize = largestFontSize(node.text);
    element.bold = isBold(node.text);
    element.color = textColorOf(node, context_, state);
    element.hidden = authoredColorOf(node, state).alpha == 0;
    if (withInk_ && !element.hidden) element.ink = inkOf(*box.text, element.frame, widget_.rightToLeft, context_.scale);
    return element;
  }

  const WidgetLayout& widget_;
  const RenderContext& context_;
  bool withInk_;
  std::vector<ReviewedElement>& out_;
};

PixelImage pictureOf(const WidgetLayout& widget, const RenderContext& context) {
  const int width = static_cast<int>(std::ceil(widget.size.width * context.scale));
  const int height = static_cast<int>(std::ceil(widget.size.height * context.scale));
  CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  {
    CairoContext cr(cairo_create(surface.get()));
    cairo_scale(cr.get(), context.scale, context.scale);
    paintWidget(cr.get(), widget, context);
  }
  return straightPixelsOf(surface.get());
}

}  // namespace

WidgetReview reviewWidget(const views::Node& tree, const RenderContext& context, bool withPicture) {
  const auto widget = layoutWidget(tree, context, PangoTextMeasurer::shared());
  WidgetReview review;
  review.size = widget->size;
  review.rightToLeft = widget->rightToLeft;
  review.circularMask = widget->circularMask;
  review.cornerRadius = widget->cornerRadius;
  review.scale = context.scale;
  ElementCollector collector(*widget, context, withPicture, review.elements);
  if (widget->background) collector.collect(*widget->background, {.path = "background"});
  collector.collect(widget->content, {.path = "content"});
  review.hitRegions = hitRegionsOf(*widget, context);
  if (withPicture) review.picture = pictureOf(*widget, context);
  return review;
}

}  // namespace quillan::render
