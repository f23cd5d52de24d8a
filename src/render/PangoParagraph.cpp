#include "render/PangoParagraph.hpp"

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

#include "render/Ellipsis.hpp"

namespace quillan::render {

namespace {

bool isTrailingSpace(char c) { return c == ' ' || c == '\t'; }

double points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

// Byte offset where the line's trailing spaces begin.
int trimmedEnd(const char* text, const PangoLayoutLine* line) {
  int end = line->start_index + line->length;
  while (end > line->start_index && isTrailingSpace(text[end - 1])) --end;
  return end;
}

// The text runs of `runs` covering bytes [from, to) of their concatenation.
void appendSlice(const StyledText& runs, std::size_t from, std::size_t to, StyledText& out) {
  std::size_t start = 0;
  for (const auto& run : runs) {
    const std::size_t end = start + run.text.size();
    const std::size_t lo = std::max(from, start), hi = std::min(to, end);
    if (lo < hi) {
      StyledRun piece = run;
      piece.text = run.text.substr(lo - start, hi - lo);
      out.push_back(std::move(piece));
    }
    start = end;
    if (start >= to) break;
  }
}

const StyledRun* runAt(const StyledText& runs, std::size_t byte) {
  std::size_t start = 0;
  for (const auto& run : runs) {
    start += run.text.size();
    if (byte < start) return &run;
  }
  return runs.empty() ? nullptr : &runs.back();
}

UsedFont usedFont(PangoFont* font) {
  PangoFontDescription* desc = pango_font_describe(font);
  const char* family = pango_font_description_get_family(desc);
  UsedFont used{family ? family : "", std::round(points(pango_font_description_get_size(desc)) * 1000) / 1000};
  pango_font_description_free(desc);
  return used;
}

struct Item {
  int offset;
  int length;
  bool ellipsis;
  PangoFont* font;
};

std::vector<Item> logicalItems(const PangoLayoutLine* line) {
  std::vector<Item> items;
  for (GSList* r = line->runs; r; r = r->next) {
    const auto* run = static_cast<const PangoGlyphItem*>(r->data);
    const bool ellipsis = (run->item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) != 0;
    items.push_back({run->item->offset, run->item->length, ellipsis, run->item->analysis.font});
  }
  std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.offset < b.offset; });
  return items;
}

TextLine lineOf(const char* text, PangoLayoutLine* line, const StyledText& runs) {
  TextLine out;
  const int end = trimmedEnd(text, line);
  std::set<UsedFont> fonts;
  for (const Item& item : logicalItems(line)) {
    if (item.font) fonts.insert(usedFont(item.font));
    if (item.ellipsis) {
      if (const StyledRun* before = runAt(runs, static_cast<std::size_t>(item.offset))) {
        out.runs.push_back({kEllipsis, before->font, before->strikethrough, std::nullopt});
      }
      continue;
    }
    const int to = std::min(item.offset + item.length, end);
    if (to > item.offset)
      appendSlice(runs, static_cast<std::size_t>(item.offset), static_cast<std::size_t>(to), out.runs);
  }
  out.width = visibleExtent(line).width;
  out.fonts.assign(fonts.begin(), fonts.end());
  return out;
}

}  // namespace

LineExtent visibleExtent(PangoLayoutLine* line) {
  PangoRectangle logical;
  pango_layout_line_get_extents(line, nullptr, &logical);
  const char* text = pango_layout_get_text(line->layout);
  const int end = trimmedEnd(text, line);
  int trailing = 0;
  for (GSList* r = line->runs; r; r = r->next) {
    const auto* run = static_cast<const PangoGlyphItem*>(r->data);
    if (run->item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) continue;
    for (int i = 0; i < run->glyphs->num_glyphs; ++i) {
      if (run->item->offset + run->glyphs->log_clusters[i] >= end) trailing += run->glyphs->glyphs[i].geometry.width;
    }
  }
  // Trailing spaces sit at the line's visual end: the right in a left-to-right
  // line, the left in a right-to-left one.
  const bool rightToLeft = line->resolved_dir == PANGO_DIRECTION_RTL;
  return {points(logical.x + (rightToLeft ? trailing : 0)), std::max(0.0, points(logical.width - trailing))};
}

std::optional<std::size_t> ellipsisStart(PangoLayout* layout) {
  for (GSList* l = pango_layout_get_lines_readonly(layout); l; l = l->next) {
    for (GSList* r = static_cast<PangoLayoutLine*>(l->data)->runs; r; r = r->next) {
      const auto* run = static_cast<const PangoGlyphItem*>(r->data);
      if (run->item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS)
        return static_cast<std::size_t>(run->item->offset);
    }
  }
  return std::nullopt;
}

std::size_t shownEnd(PangoLayout* layout) {
  const GSList* lines = pango_layout_get_lines_readonly(layout);
  if (!lines) return 0;
  const auto* last = static_cast<const PangoLayoutLine*>(g_slist_last(const_cast<GSList*>(lines))->data);
  return static_cast<std::size_t>(last->start_index + last->length);
}

std::vector<TextLine> linesOf(PangoLayout* layout, const StyledText& runs) {
  const char* text = pango_layout_get_text(layout);
  std::vector<TextLine> lines;
  for (GSList* l = pango_layout_get_lines_readonly(layout); l; l = l->next) {
    lines.push_back(lineOf(text, static_cast<PangoLayoutLine*>(l->data), runs));
  }
  return lines;
}

}  // namespace quillan::render
