#include "render/MissingGlyphs.hpp"

#include <glib.h>
#include <pango/pango.h>
#include <unicode/uchar.h>

namespace quillan::render {

namespace {

bool drawsNothingByDesign(gunichar c) {
  const auto type = static_cast<UCharCategory>(u_charType(static_cast<UChar32>(c)));
  return u_isUWhiteSpace(static_cast<UChar32>(c)) || type == U_CONTROL_CHAR || type == U_FORMAT_CHAR ||
         u_hasBinaryProperty(static_cast<UChar32>(c), UCHAR_DEFAULT_IGNORABLE_CODE_POINT) || type == U_NON_SPACING_MARK;
}

std::size_t missingIn(const PangoGlyphItem* run, const char* text) {
  std::size_t missing = 0;
  const PangoGlyphString* glyphs = run->glyphs;
  for (int i = 0; i < glyphs->num_glyphs; ++i) {
    const PangoGlyph glyph = glyphs->glyphs[i].glyph;
    if (glyph & PANGO_GLYPH_UNKNOWN_FLAG) {
      ++missing;
    } else if (glyph == PANGO_GLYPH_EMPTY) {
      const char* at = text + run->item->offset + glyphs->log_clusters[i];
      if (!drawsNothingByDesign(g_utf8_get_char(at))) ++missing;
    }
  }
  return missing;
}

}  // namespace

std::size_t missingGlyphCount(PangoLayout* layout) {
  const char* text = pango_layout_get_text(layout);
  std::size_t missing = 0;
  for (GSList* l = pango_layout_get_lines_readonly(layout); l; l = l->next) {
    const auto* line = static_cast<const PangoLayoutLine*>(l->data);
    for (GSList* r = line->runs; r; r = r->next)
      missing += missingIn(static_cast<const PangoGlyphItem*>(r->data), text);
  }
  return missing;
}

}  // namespace quillan::render
