#include "render/FontDescription.hpp"

#include <array>
#include <utility>

namespace quillan::render {

namespace {

constexpr std::array<std::pair<std::string_view, FontWeight>, 9> kWeightNames{{
    {"ultraLight", FontWeight::ultraLight},
    {"thin", FontWeight::thin},
    {"light", FontWeight::light},
    {"regular", FontWeight::regular},
    {"medium", FontWeight::medium},
    {"semibold", FontWeight::semibold},
    {"bold", FontWeight::bold},
    {"heavy", FontWeight::heavy},
    {"black", FontWeight::black},
}};

struct NamedTextStyle {
  std::string_view name;
  TextStyleMetrics metrics;
};

constexpr std::array<NamedTextStyle, 11> kTextStyles{{
    {"largeTitle", {34, FontWeight::regular, FontWeight::bold}},
    {"title", {28, FontWeight::regular, FontWeight::bold}},
    {"title2", {22, FontWeight::regular, FontWeight::bold}},
    {"title3", {20, FontWeight::regular, FontWeight::semibold}},
    {"headline", {17, FontWeight::semibold, FontWeight::semibold}},
    {"body", {17, FontWeight::regular, FontWeight::semibold}},
    {"callout", {16, FontWeight::regular, FontWeight::semibold}},
    {"subheadline", {15, FontWeight::regular, FontWeight::semibold}},
    {"footnote", {13, FontWeight::regular, FontWeight::semibold}},
    {"caption", {12, FontWeight::regular, FontWeight::semibold}},
    {"caption2", {11, FontWeight::regular, FontWeight::semibold}},
}};

// Size in points -> tracking in points per glyph.
constexpr std::array<std::pair<double, double>, 11> kTracking{{
    {11, 0.06},
    {12, 0},
    {13, -0.08},
    {15, -0.23},
    {16, -0.31},
    {17, -0.43},
    {20, -0.45},
    {22, -0.26},
    {24, 0.07},
    {28, 0.38},
    {34, 0.40},
}};

}  // namespace

int weightClass(FontWeight weight) { return (static_cast<int>(weight) + 1) * 100; }

std::optional<FontWeight> fontWeightNamed(std::string_view name) {
  for (const auto& [candidate, weight] : kWeightNames)
    if (candidate == name) return weight;
  return std::nullopt;
}

std::optional<TextStyleMetrics> textStyleNamed(std::string_view name) {
  for (const auto& style : kTextStyles)
    if (style.name == name) return style.metrics;
  return std::nullopt;
}

double trackingForSize(double size) {
  double tracking = kTracking.front().second;
  if (size >= kTracking.back().first) {
    tracking = kTracking.back().second;
  } else {
    for (std::size_t i = 1; i < kTracking.size(); ++i) {
      const auto [lowSize, lowValue] = kTracking[i - 1];
      const auto [highSize, highValue] = kTracking[i];
      if (size >= lowSize && size <= highSize) {
        tracking = lowValue + (highValue - lowValue) * (size - lowSize) / (highSize - lowSize);
        break;
      }
    }
  }
  return tracking;
}

}  // namespace quillan::render
