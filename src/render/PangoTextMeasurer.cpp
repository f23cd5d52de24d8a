#include "render/PangoTextMeasurer.hpp"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_map>

#include "platform/Locale.hpp"
#include "platform/Utf8.hpp"
#include "render/Ellipsis.hpp"
#include "render/MissingGlyphs.hpp"
#include "render/PangoLineDrawing.hpp"
#include "render/PangoParagraph.hpp"
#include "render/RenderingConstants.hpp"
#include "render/StyledTextMetrics.hpp"
#include "render/TextCut.hpp"

namespace quillan::render {

namespace {

// Pango truncates only a layout of some width: an unwrapped text gets one no
// line reaches (the widest widget's lines hold far less).
constexpr double kUnwrappedWidth = 1.0e6;
// Sizes are absolute, in points as the phone's: one point is one unit.
constexpr double kResolution = 72.0;
// Lines are counted with this slack so that a height of exactly n lines holds
// n despite rounding to Pango units.
constexpr double kHeightSlack = 0.25;
// Layouts kept for reuse by drawing and hit testing; past this many the
// oldest answers are dropped all at once. A widget measures a few hundred
// texts and limits at most; a live host drawing day after day of new texts
// held some 10 MB more with eight times as many.
constexpr std::size_t kMaxCachedLayouts = 512;

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

int pangoUnits(double points) { return static_cast<int>(std::lround(points * PANGO_SCALE)); }

void insert(PangoAttrList* list, PangoAttribute* attr, std::size_t start, std::size_t end) {
  attr->start_index = static_cast<guint>(start);
  attr->end_index = static_cast<guint>(end);
  pango_attr_list_insert(list, attr);
}

PangoAttrList* attributesFor(const StyledText& runs) {
  PangoAttrList* list = pango_attr_list_new();
  std::size_t offset = 0;
  for (const auto& run : runs) {
    const std::size_t end = offset + run.text.size();
    PangoFontDescription* desc = describe(run.font);
    insert(list, pango_attr_font_desc_new(desc), offset, end);
    pango_font_description_free(desc);
    insert(list, pango_attr_letter_spacing_new(pangoUnits(trackingForSize(run.font.size))), offset, end);
    if (run.strikethrough) insert(list, pango_attr_strikethrough_new(TRUE), offset, end);
    offset = end;
  }
  return list;
}

std::vector<std::pair<guint, guint>> linkRanges(const StyledText& runs) {
  std::vector<std::pair<guint, guint>> ranges;
  std::size_t offset = 0;
  for (const auto& run : runs) {
    if (run.link) ranges.emplace_back(static_cast<guint>(offset), static_cast<guint>(offset + run.text.size()));
    offset += run.text.size();
  }
  return ranges;
}

// Han characters take the shapes of the rendering locale's language.
PangoAttribute* languageAttribute(const std::string& tag) {
  return pango_attr_language_new(pango_language_from_string(tag.c_str()));
}

std::string cacheKey(const std::string& language, const StyledText& runs) {
  std::string key = language + '\x1d';
  for (const auto& run : runs) {
    key += std::to_string(run.font.size) + '/' + std::to_string(static_cast<int>(run.font.weight)) +
           (run.font.italic ? 'i' : '-') + (run.font.monospaced ? 'm' : '-') + (run.strikethrough ? 's' : '-') +
           (run.link ? 'l' : '-');
    key += '\x1f' + run.text + '\x1e';
  }
  return key;
}

StyledText withReplacementCharacters(StyledText runs) {
  for (auto& run : runs) run.text = platform::withReplacementCharacters(run.text);
  return runs;
}

// Pango takes UTF-8 only; malformed bytes become U+FFFD here, whoever made the runs.
StyledText wellFormed(const StyledText& runs) {
  const auto valid = [](const StyledRun& run) { return platform::isValidUtf8(run.text); };
  return std::all_of(runs.begin(), runs.end(), valid) ? runs : withReplacementCharacters(runs);
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

// The length of `text` without the blanks that end it.
std::size_t trimmedLength(const std::string& text) {
  std::size_t end = text.size();
  while (end > 0 && isBlank(text[end - 1])) --end;
  return end;
}

// The text up to byte `end`, spaces before it dropped, then "…" in the style
// of the text before it.
StyledText endingInEllipsis(const StyledText& runs, std::size_t end) {
  const std::string text = plainText(runs);
  end = std::min(end, text.size());
  while (end > 0 && isBlank(text[end - 1])) --end;
  StyledText out;
  std::size_t start = 0;
  for (const auto& run : runs) {
    if (start >= end) break;
    StyledRun kept = run;
    kept.text = run.text.substr(0, std::min(run.text.size(), end - start));
    start += run.text.size();
    out.push_back(std::move(kept));
  }
  const FontDescription font = out.empty() ? (runs.empty() ? FontDescription{} : runs.front().font) : out.back().font;
  out.push_back({kEllipsis, font, false, std::nullopt});
  return out;
}

}  // namespace

struct PangoTextMeasurer::Impl {
  GObjectPtr<PangoFontMap> fontMap;
  GObjectPtr<PangoContext> context;
  mutable std::unordered_map<std::string, double> widths;
  mutable std::unordered_map<std::string, TextLayout> layouts;

  Impl() : fontMap(pango_cairo_font_map_new()), context(pango_font_map_create_context(fontMap.get())) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    pango_cairo_context_set_font_options(context.get(), options);
    cairo_font_options_destroy(options);
    pango_cairo_context_set_resolution(context.get(), kResolution);
    // Pango measures each font once more for its metrics, in a context of its
    // own made at the font map's resolution: at ours, that context finds the
    // fonts this one loaded instead of matching and loading every font again.
    pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fontMap.get()), kResolution);
    pango_context_set_round_glyph_positions(context.get(), FALSE);
  }

  // `runs` must be well-formed UTF-8.
  GObjectPtr<PangoLayout> layoutFor(const StyledText& runs, const std::string& language) const {
    // Pango looks up some of a text's fonts in the context's language rather
    // than the text's: with the two alike, each face's installed fonts are
    // sorted once instead of once for each language, and that sort is most
    // of the cost of a face's first text.
    pango_context_set_language(context.get(), pango_language_from_string(language.c_str()));
    GObjectPtr<PangoLayout> layout(pango_layout_new(context.get()));
    const std::string text = plainText(runs);
    pango_layout_set_text(layout.get(), text.c_str(), static_cast<int>(text.size()));
    PangoAttrList* attrs = attributesFor(runs);
    pango_attr_list_insert_before(attrs, languageAttribute(language));
    pango_layout_set_attributes(layout.get(), attrs);
    pango_attr_list_unref(attrs);
    return layout;
  }

  // The paragraph wrapped by word, then by grapheme, at `width`; as many lines
  // as `lines` allows at `lineHeight` apiece, the last ending in "…" when
  // text is left over.
  GObjectPtr<PangoLayout> paragraphFor(const StyledText& runs, const std::string& language, std::optional<double> width,
                                       std::size_t lines, double lineHeight) const {
    GObjectPtr<PangoLayout> layout = layoutFor(runs, language);
    PangoAttrList* attrs = pango_attr_list_copy(pango_layout_get_attributes(layout.get()));
    // Every line is as tall as the system font's, whichever font draws it.
    pango_attr_list_insert(attrs, pango_attr_line_height_new_absolute(pangoUnits(lineHeight)));
    pango_layout_set_attributes(layout.get(), attrs);
    pango_attr_list_unref(attrs);
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_width(layout.get(), pangoUnits(std::max(0.0, width.value_or(kUnwrappedWidth))));
    pango_layout_set_height(layout.get(), pangoUnits((static_cast<double>(lines) + kHeightSlack) * lineHeight));
    return layout;
  }

  // `kept` is the text cut to what `bound` can show.
  TextLayout shape(const CutText& kept, const TextLimits& limits, const FontMetrics& metrics,
                   const ShownTextBound& bound, const std::string& language) const {
    StyledText runs = wellFormed(kept.runs);
    auto layout = paragraphFor(runs, language, limits.width, bound.lines, metrics.lineHeight);
    // Pango's ellipsis may follow a space, and a text cut short that still
    // fits (zero-width characters, mostly) shows no ellipsis at all: either
    // is set again as the text shown, then "…".
    const auto elided = ellipsisStart(layout.get());
    const std::size_t end = elided.value_or(shownEnd(layout.get()));
    const bool truncated = kept.cut || end < trimmedLength(plainText(runs));
    if (truncated) {
      runs = endingInEllipsis(runs, end);
      layout = paragraphFor(runs, language, limits.width, bound.lines, metrics.lineHeight);
    }
    TextLayout out;
    out.lines = linesOf(layout.get(), runs);
    out.lineHeight = metrics.lineHeight;
    out.ascender = static_cast<double>(pango_layout_get_baseline(layout.get())) / PANGO_SCALE;
    out.truncated = truncated;
    out.missingGlyphs = missingGlyphCount(layout.get());
    for (const auto& line : out.lines) out.size.width = std::max(out.size.width, line.width);
    out.size.height = static_cast<double>(out.lines.size()) * metrics.lineHeight;
    auto shaped = std::make_shared<ShapedParagraph>();
    shaped->layout = std::move(layout);
    shaped->links = linkRanges(runs);
    out.shaped = std::move(shaped);
    return out;
  }
};

PangoTextMeasurer::PangoTextMeasurer() = default;
PangoTextMeasurer::~PangoTextMeasurer() = default;

double PangoTextMeasurer::width(const StyledText& runs) const {
  const std::string language = platform::Locale::current().languageTag();
  const std::string key = cacheKey(language, runs);
  Impl& pango = engine();
  if (auto found = pango.widths.find(key); found != pango.widths.end()) return found->second;
  auto layout = pango.layoutFor(wellFormed(runs), language);
  PangoRectangle logical;
  pango_layout_get_extents(layout.get(), nullptr, &logical);
  const double width = static_cast<double>(logical.width) / PANGO_SCALE;
  if (pango.widths.size() >= kMaxCachedLayouts) pango.widths.clear();
  pango.widths.emplace(key, width);
  return width;
}

TextLayout PangoTextMeasurer::layout(const StyledText& runs, const TextLimits& limits) const {
  // Only as much of the text as the limits can show is looked at, keys included.
  const FontMetrics metrics = combinedMetrics(runs, *this);
  const ShownTextBound bound = shownTextBound(limits, metrics.lineHeight, smallestFontSize(runs));
  const CutText kept = cutToCodePoints(runs, bound.codePoints);
  const std::string language = platform::Locale::current().languageTag();
  // A height and a line limit count only as the lines they let the text
  // have: the layout engine's many proposals of one width share one layout.
  std::string key = cacheKey(language, kept.runs);
  key += '\x1c' + std::string(kept.cut ? "cut/" : "/") + std::to_string(limits.width.value_or(-1)) + '/' +
         std::to_string(bound.lines);
  Impl& pango = engine();
  if (auto found = pango.layouts.find(key); found != pango.layouts.end()) return found->second;
  TextLayout shaped = pango.shape(kept, limits, metrics, bound, language);
  if (pango.layouts.size() >= kMaxCachedLayouts) pango.layouts.clear();
  pango.layouts.emplace(key, shaped);
  return shaped;
}

void PangoTextMeasurer::expectFonts(const std::vector<FontDescription>& fonts) const {
  if (fonts.empty()) return;  // a picture without text never starts fontconfig
  const Impl& pango = engine();
  PangoLanguage* language = pango_language_from_string(platform::Locale::current().languageTag().c_str());
  // As Pango sets up a text of layoutFor: the context's description beneath
  // the run's, the text's language, so that the text finds these very lists.
  pango_context_set_language(pango.context.get(), language);
  for (const auto& font : fonts) {
    PangoFontDescription* base = pango_font_description_copy(pango_context_get_font_description(pango.context.get()));
    PangoFontDescription* own = describe(font);
    pango_font_description_merge(base, own, TRUE);
    if (PangoFontset* fallbacks = pango_context_load_fontset(pango.context.get(), base, language))
      g_object_unref(fallbacks);
    pango_font_description_free(own);
    pango_font_description_free(base);
  }
}

std::size_t PangoTextMeasurer::missingGlyphs(const StyledText& runs) const {
  return missingGlyphCount(engine().layoutFor(wellFormed(runs), platform::Locale::current().languageTag()).get());
}

FontMetrics PangoTextMeasurer::metrics(const FontDescription& font) const {
  const double size = font.size;
  return {constants::kLineHeightPerPoint * size, constants::kAscenderPerPoint * size,
          constants::kDescenderPerPoint * size, constants::kCapHeightPerPoint * size};
}

PangoTextMeasurer::Impl& PangoTextMeasurer::engine() const {
  if (!impl_) impl_ = std::make_unique<Impl>();
  return *impl_;
}

const PangoTextMeasurer& PangoTextMeasurer::shared() {
  // Never destroyed: taking down every font, face and cached layout one by one
  // would only make each command's exit wait; the process's end frees them.
  static const auto* const engine = new PangoTextMeasurer;
  return *engine;
}

}  // namespace quillan::render
