#include "render/PangoTextMeasurer.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <string>
#include <unordered_map>

#include "platform/Locale.hpp"
#include "platform/Utf8.hpp"
#include "render/MissingGlyphs.hpp"
#include "render/PangoLineDrawing.hpp"
#include "render/RenderingConstants.hpp"

namespace quillan::render {

namespace {

struct GObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

const char* familyFor(const FontDescription& font) {
  if (font.monospaced) return "DejaVu Sans Mono,monospace";
  return font.size >= constants::kDisplayDesignFromSize ? "Inter Display" : "Inter";
}

PangoFontDescription* describe(const FontDescription& font) {
  PangoFontDescription* desc = pango_font_description_new();
  pango_font_description_set_family(desc, familyFor(font));
  pango_font_description_set_weight(desc, static_cast<PangoWeight>(weightClass(font.weight)));
  pango_font_description_set_style(desc, font.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  pango_font_description_set_absolute_size(desc, font.size * PANGO_SCALE);
  return desc;
}

void insert(PangoAttrList* list, PangoAttribute* attr, std::size_t start, std::size_t end) {
  attr->start_index = static_cast<guint>(start);
  attr->end_index = static_cast<guint>(end);
  pango_attr_list_insert(list, attr);
}

PangoAttrList* attributesFor(const StyledText& runs, const Rgba* linkColor) {
  PangoAttrList* list = pango_attr_list_new();
  std::size_t offset = 0;
  for (const auto& run : runs) {
    const std::size_t end = offset + run.text.size();
    PangoFontDescription* desc = describe(run.font);
    insert(list, pango_attr_font_desc_new(desc), offset, end);
    pango_font_description_free(desc);
    const double tracking = trackingForSize(run.font.size);
    insert(list, pango_attr_letter_spacing_new(static_cast<int>(tracking * PANGO_SCALE)), offset, end);
    if (run.strikethrough) insert(list, pango_attr_strikethrough_new(TRUE), offset, end);
    if (run.link && linkColor) {
      const auto channel = [](double v) { return static_cast<guint16>(v * 65535.0); };
      insert(list, pango_attr_foreground_new(channel(linkColor->red), channel(linkColor->green),
                                             channel(linkColor->blue)), offset, end);
    }
    offset = end;
  }
  return list;
}

// Han characters take the shapes of the rendering locale's language.
PangoAttribute* languageAttribute() {
  const std::string tag = platform::Locale::current().languageTag();
  return pango_attr_language_new(pango_language_from_string(tag.c_str()));
}

std::string cacheKey(const StyledText& runs) {
  std::string key = platform::Locale::current().languageTag() + '\x1d';
  for (const auto& run : runs) {
    key += std::to_string(run.font.size) + '/' + std::to_string(static_cast<int>(run.font.weight)) +
           (run.font.italic ? 'i' : '-') + (run.font.monospaced ? 'm' : '-') + (run.strikethrough ? 's' : '-');
    key += '\x1f' + run.text + '\x1e';
  }
  return key;
}

StyledText withReplacementCharacters(StyledText runs) {
  for (auto& run : runs) run.text = platform::withReplacementCharacters(run.text);
  return runs;
}

}  // namespace

struct PangoTextMeasurer::Impl {
  GObjectPtr<PangoFontMap> fontMap;
  GObjectPtr<PangoContext> context;
  mutable std::unordered_map<std::string, double> widths;

  Impl() : fontMap(pango_cairo_font_map_new()), context(pango_font_map_create_context(fontMap.get())) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    pango_cairo_context_set_resolution(context.get(), 72.0);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
  }

  GObjectPtr<PangoLayout> layoutFor(const StyledText& runs, const Rgba* linkColor) const {
    // Pango takes UTF-8 only; malformed bytes become U+FFFD here, whoever made the runs.
    const auto wellFormed = [](const StyledRun& run) { return platform::isValidUtf8(run.text); };
    if (!std::all_of(runs.begin(), runs.end(), wellFormed)) {
      return layoutFor(withReplacementCharacters(runs), linkColor);
    }
    GObjectPtr<PangoLayout> layout(pango_layout_new(context.get()));
    std::string text;
    for (const auto& run : runs) text += run.text;
    pango_layout_set_text(layout.get(), text.c_str(), static_cast<int>(text.size()));
    PangoAttrList* attrs = attributesFor(runs, linkColor);
    pango_attr_list_insert_before(attrs, languageAttribute());
    pango_layout_set_attributes(layout.get(), attrs);
    pango_attr_list_unref(attrs);
    return layout;
  }
};

PangoTextMeasurer::PangoTextMeasurer() : impl_(std::make_unique<Impl>()) {}
PangoTextMeasurer::~PangoTextMeasurer() = default;

double PangoTextMeasurer::width(const StyledText& runs) const {
  const std::string key = cacheKey(runs);
  if (auto found = impl_->widths.find(key); found != impl_->widths.end()) return found->second;
  auto layout = impl_->layoutFor(runs, nullptr);
  PangoRectangle logical;
  pango_layout_get_extents(layout.get(), nullptr, &logical);
  const double width = static_cast<double>(logical.width) / PANGO_SCALE;
  impl_->widths.emplace(key, width);
  return width;
}

std::size_t PangoTextMeasurer::missingGlyphs(const StyledText& runs) const {
  return missingGlyphCount(impl_->layoutFor(runs, nullptr).get());
}

FontMetrics PangoTextMeasurer::metrics(const FontDescription& font) const {
  const double size = font.size;
  return {constants::kLineHeightPerPoint * size, constants::kAscenderPerPoint * size,
          constants::kDescenderPerPoint * size, constants::kCapHeightPerPoint * size};
}

void PangoLineDrawing::drawLine(cairo_t* cr, const PangoTextMeasurer& text, const StyledText& runs,
                                Point baseline, Rgba color, Rgba linkColor) {
  auto layout = text.impl_->layoutFor(runs, &linkColor);
  const double layoutBaseline = static_cast<double>(pango_layout_get_baseline(layout.get())) / PANGO_SCALE;
  cairo_save(cr);
  cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
  cairo_move_to(cr, baseline.x, baseline.y - layoutBaseline);
  pango_cairo_show_layout(cr, layout.get());
  cairo_restore(cr);
}

const PangoTextMeasurer& PangoTextMeasurer::shared() {
  static const PangoTextMeasurer engine;
  return engine;
}

}  // namespace quillan::render
