#include "render/PangoLineDrawing.hpp"

#include <pango/pangocairo.h>

#include "render/PangoParagraph.hpp"

namespace quillan::render {

namespace {

guint16 channel(double value) { return static_cast<guint16>(value * 65535.0); }

// The layout to show: the measured one itself, or a copy with the links
// coloured (the colour depends on the scheme, which measuring never sees).
GObjectPtr<PangoLayout> drawable(const ShapedParagraph& shaped, Rgba linkColor) {
  if (shaped.links.empty()) return GObjectPtr<PangoLayout>(PANGO_LAYOUT(g_object_ref(shaped.layout.get())));
  GObjectPtr<PangoLayout> copy(pango_layout_copy(shaped.layout.get()));
  PangoAttrList* attrs = pango_attr_list_copy(pango_layout_get_attributes(copy.get()));
  for (const auto& [start, end] : shaped.links) {
    PangoAttribute* attr = pango_attr_foreground_new(channel(linkColor.red), channel(linkColor.green),
                                                     channel(linkColor.blue));
    attr->start_index = start;
    attr->end_index = end;
    pango_attr_list_insert(attrs, attr);
  }
  pango_layout_set_attributes(copy.get(), attrs);
  pango_attr_list_unref(attrs);
  return copy;
}

}  // namespace

double lineOffset(const TextLayout& text, std::size_t index, double frameWidth, LineAlignment alignment) {
  if (alignment == LineAlignment::left || index >= text.lines.size()) return 0;
  return frameWidth - text.lines[index].width;
}

void PangoLineDrawing::drawText(cairo_t* cr, const TextLayout& text, Rect frame, LineAlignment alignment, Rgba color,
                                Rgba linkColor) {
  if (!text.shaped) return;
  const auto layout = drawable(*text.shaped, linkColor);
  cairo_save(cr);
  cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
  PangoLayoutIter* iter = pango_layout_get_iter(layout.get());
  std::size_t index = 0;
  do {
    PangoLayoutLine* line = pango_layout_iter_get_line_readonly(iter);
    const double baseline = static_cast<double>(pango_layout_iter_get_baseline(iter)) / PANGO_SCALE;
    const LineExtent extent = visibleExtent(line);
    cairo_move_to(cr, frame.x + lineOffset(text, index, frame.width, alignment) - extent.left, frame.y + baseline);
    pango_cairo_show_layout_line(cr, line);
    ++index;
  } while (pango_layout_iter_next_line(iter));
  pango_layout_iter_free(iter);
  cairo_restore(cr);
}

}  // namespace quillan::render
