#include "render/WidgetPainter.hpp"

#include <cairo.h>

#include <cmath>

#include "render/CairoColor.hpp"
#include "render/PangoLineDrawing.hpp"
#include "render/RenderingConstants.hpp"
#include "render/ShapePath.hpp"
#include "render/SymbolDrawing.hpp"

namespace quillan::render {

namespace {

cairo_line_cap_t cairoLineCap(views::LineCap cap) {
  switch (cap) {
    case views::LineCap::butt: return CAIRO_LINE_CAP_BUTT;
    case views::LineCap::round: return CAIRO_LINE_CAP_ROUND;
    case views::LineCap::square: return CAIRO_LINE_CAP_SQUARE;
  }
  return CAIRO_LINE_CAP_BUTT;
}

cairo_line_join_t cairoLineJoin(views::LineJoin join) {
  switch (join) {
    case views::LineJoin::miter: return CAIRO_LINE_JOIN_MITER;
    case views::LineJoin::round: return CAIRO_LINE_JOIN_ROUND;
    case views::LineJoin::bevel: return CAIRO_LINE_JOIN_BEVEL;
  }
  return CAIRO_LINE_JOIN_MITER;
}

double linearized(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

class Painter {
 public:
  Painter(cairo_t* cr, const WidgetLayout& widget, const RenderContext& context)
      : cr_(cr), widget_(widget), context_(context) {}

  void paint() {
    cairo_save(cr_);
    appendMask();
    cairo_clip(cr_);
    const auto mode = context_.env.renderingMode;
    if (mode != views::WidgetRenderingMode::fullColor) paintBackdrop(mode);
    else if (widget_.background) paintBox(*widget_.background, false);
    paintBox(widget_.content, false);
    cairo_restore(cr_);
  }

 private:
  void appendMask() {
    const Size s = widget_.size;
    if (widget_.circularMask) appendShapePath(cr_, ShapeKind::circle, {0, 0, s.width, s.height}, 0);
    else appendShapePath(cr_, ShapeKind::roundedRectangle, {0, 0, s.width, s.height}, widget_.cornerRadius);
  }

  // The lock screen behind a tinted widget: a dark wallpaper, smoothly shaded
  // as if blurred.
  void paintBackdrop(views::WidgetRenderingMode mode) {
    const Size s = widget_.size;
    cairo_pattern_t* pattern = cairo_pattern_create_linear(0, 0, s.width * 0.3, s.height);
    const bool vibrant = mode == views::WidgetRenderingMode::vibrant;
    const Rgba top = Rgba::fromHex(vibrant ? constants::kVibrantBackdropTop : constants::kAccentedBackdrop);
    const Rgba bottom = Rgba::fromHex(vibrant ? constants::kVibrantBackdropBottom : constants::kAccentedBackdrop);
    cairo_pattern_add_color_stop_rgb(pattern, 0, top.red, top.green, top.blue);
    cairo_pattern_add_color_stop_rgb(pattern, 1, bottom.red, bottom.green, bottom.blue);
    cairo_set_source(cr_, pattern);
    cairo_paint(cr_);
    cairo_pattern_destroy(pattern);
  }

  Rgba tone(Rgba c, bool accent) const { return colorForMode(c, context_.env.renderingMode, accent); }

  bool setPaint(const Paint& paint, Rect rect, bool accent) {
    switch (paint.kind) {
      case Paint::Kind::none: return false;
      case Paint::Kind::solid: setSourceColor(cr_, tone(paint.color, accent)); return paint.color.alpha > 0;
      case Paint::Kind::linearGradient: {
        // Unit points name leading and trailing, which swap under right to left.
        const auto across = [&](double x) { return rect.x + (widget_.rightToLeft ? 1 - x : x) * rect.width; };
        cairo_pattern_t* pattern = cairo_pattern_create_linear(across(paint.start.x),
                                                               rect.y + paint.start.y * rect.height,
                                                               across(paint.end.x), rect.y + paint.end.y * rect.height);
        for (const auto& stop : paint.stops) {
          const Rgba c = tone(stop.color, accent);
          cairo_pattern_add_color_stop_rgba(pattern, stop.location, c.red, c.green, c.blue, c.alpha);
        }
        cairo_set_source(cr_, pattern);
        cairo_pattern_destroy(pattern);
        return true;
      }
    }
    return false;
  }

  Rgba solidOf(const Paint& paint) const {
    if (paint.kind == Paint::Kind::solid) return paint.color;
    if (paint.kind == Paint::Kind::linearGradient && !paint.stops.empty()) return paint.stops.front().color;
    return Rgba::fromHex(0, 0);
  }

  void paintBox(const LayoutBox& box, bool accent) {
    const LayoutNode& node = *box.node;
    accent = accent || node.accentable;
    cairo_save(cr_);
    if (node.kind == LayoutKind::offset)
      cairo_translate(cr_, widget_.rightToLeft ? -node.offset.x : node.offset.x, node.offset.y);
    const bool grouped = node.opacity < 1;
    if (grouped) cairo_push_group(cr_);
    switch (node.kind) {
      case LayoutKind::shape: paintShape(box, accent); break;
      case LayoutKind::text: paintText(box, accent); break;
      case LayoutKind::symbol:
        drawSymbol(cr_, node.symbolName, box.frame, node.symbolFont.weight, tone(solidOf(node.foreground), accent),
                   tone(solidOf(node.secondaryForeground), accent));
        break;
      // Containers and modifiers draw nothing of their own (an offset moved
      // the drawing above, opacity groups it); their children draw.
      case LayoutKind::empty:
      case LayoutKind::hstack:
      case LayoutKind::vstack:
      case LayoutKind::zstack:
      case LayoutKind::spacer:
      case LayoutKind::frame:
      case LayoutKind::flexibleFrame:
      case LayoutKind::padding:
      case LayoutKind::background:
      case LayoutKind::overlay:
      case LayoutKind::offset:
      case LayoutKind::link:
      case LayoutKind::group: break;
    }
    paintChildren(box, accent);
    if (grouped) {
      cairo_pop_group_to_source(cr_);
      cairo_paint_with_alpha(cr_, node.opacity);
    }
    cairo_restore(cr_);
  }

  void paintChildren(const LayoutBox& box, bool accent) {
    if (box.node->kind == LayoutKind::background && !box.children.empty()) {
      for (std::size_t i = 1; i < box.children.size(); ++i) paintBox(box.children[i], accent);
      paintBox(box.children.front(), accent);
      return;
    }
    for (const auto& child : box.children) paintBox(child, accent);
  }

  void paintShape(const LayoutBox& box, bool accent) {
    const LayoutNode& node = *box.node;
    const double radius = node.shape == ShapeKind::containerRelative
                              ? containerRelativeRadius(box.frame, widget_.size, widget_.cornerRadius)
                              : node.cornerRadius;
    if (setPaint(node.fill, box.frame, accent)) {
      appendShapePath(cr_, node.shape, box.frame, radius);
      cairo_fill(cr_);
    }
    if (node.stroke && setPaint(node.strokePaint, box.frame, accent)) {
      const bool inset = node.stroke->inset;
      const views::StrokeStyle& s = node.stroke->style;
      const Rect path = inset ? box.frame.insetBy(s.lineWidth / 2) : box.frame;
      appendShapePath(cr_, node.shape, path, std::max(0.0, radius - (inset ? s.lineWidth / 2 : 0)));
      cairo_set_line_width(cr_, s.lineWidth);
      cairo_set_line_cap(cr_, cairoLineCap(s.lineCap));
      cairo_set_line_join(cr_, cairoLineJoin(s.lineJoin));
      cairo_set_miter_limit(cr_, s.miterLimit);
      std::vector<double> dash = s.dash;
      if (dash.size() == 1) dash.push_back(dash.front());
      cairo_set_dash(cr_, dash.data(), static_cast<int>(dash.size()), s.dashPhase);
      cairo_stroke(cr_);
    }
  }

  void paintText(const LayoutBox& box, bool accent) {
    if (!box.text) return;
    const LayoutNode& node = *box.node;
    const TextLayout& layout = *box.text;
    const Rgba color = tone(solidOf(node.foreground), accent);
    // Lines start at the leading edge.
    const LineAlignment alignment = widget_.rightToLeft ? LineAlignment::right : LineAlignment::left;
    if (!context_.redacted || !node.privacySensitive || node.unredacted) {
      PangoLineDrawing::drawText(cr_, layout, box.frame, alignment, color, tone(linkColor(), accent));
      return;
    }
    for (std::size_t i = 0; i < layout.lines.size(); ++i) {
      const double top = box.frame.y + static_cast<double>(i) * layout.lineHeight;
      const double left = box.frame.x + lineOffset(layout, i, box.frame.width, alignment);
      paintRedactionBar({left, top, layout.lines[i].width, layout.lineHeight}, color);
    }
  }

  // Links take the system blue of the scheme.
  Rgba linkColor() const {
    return Rgba::fromHex(context_.env.colorScheme == views::ColorScheme::dark ? 0x0A84FF : 0x007AFF);
  }

  void paintRedactionBar(Rect line, Rgba color) {
    const double height = line.height * constants::kRedactionBarHeightShare;
    const Rect bar{line.x, line.y + (line.height - height) / 2, line.width, height};
    setSourceColor(cr_, color.multipliedAlpha(constants::kRedactionBarOpacity));
    appendShapePath(cr_, ShapeKind::roundedRectangle, bar, constants::kRedactionBarRadius);
    cairo_fill(cr_);
  }

  cairo_t* cr_;
  const WidgetLayout& widget_;
  const RenderContext& context_;
};

}  // namespace

Rgba colorForMode(Rgba color, views::WidgetRenderingMode mode, bool accentGroup) {
  switch (mode) {
    case views::WidgetRenderingMode::fullColor: return color;
    case views::WidgetRenderingMode::vibrant: {
      const double luma = 0.2126 * linearized(color.red) + 0.7152 * linearized(color.green) +
                          0.0722 * linearized(color.blue);
      return {1, 1, 1, luma * color.alpha};
    }
    case views::WidgetRenderingMode::accented:
      return Rgba::fromHex(accentGroup ? constants::kAccentedAccentColor : constants::kAccentedDefaultColor,
                           color.alpha);
  }
  return color;
}

void paintWidget(cairo_t* cr, const WidgetLayout& widget, const RenderContext& context) {
  Painter(cr, widget, context).paint();
}

}  // namespace quillan::render
