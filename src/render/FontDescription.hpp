#pragma once

#include <optional>
#include <string_view>

namespace quillan::render {

// Font weights by their numeric class (100 ultraLight ... 900 black).
enum class FontWeight { ultraLight, thin, light, regular, medium, semibold, bold, heavy, black };

// A resolved system font: size in points, weight, and the styles a text run
// may add. Monospaced runs (code) use the platform's monospace family.
struct FontDescription {
  double size = 17.0;
  FontWeight weight = FontWeight::regular;
  bool italic = false;
  bool monospaced = false;
  bool operator==(const FontDescription&) const = default;
};

// The numeric class of a weight: 100 for ultraLight ... 900 for black.
int weightClass(FontWeight weight);
std::optional<FontWeight> fontWeightNamed(std::string_view name);

// A Dynamic Type text style at the default (Large) size: its size and weight,
// and the weight `.bold()` turns it into. Returns nothing for an unknown name.
struct TextStyleMetrics {
  double size;
  FontWeight weight;
  FontWeight emphasizedWeight;
};
std::optional<TextStyleMetrics> textStyleNamed(std::string_view name);

// Automatic size-dependent tracking in points per glyph, interpolated between the
// table's sizes and held constant beyond its ends.
double trackingForSize(double size);

}  // namespace quillan::render
