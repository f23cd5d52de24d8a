#pragma once

#include <array>
#include <optional>

#include "views/EnumNames.hpp"

namespace quillan::views {

enum class Weight { ultraLight, thin, light, regular, medium, semibold, bold, heavy, black };

constexpr auto enumNames(Weight) {
  using enum Weight;
  return std::array<EnumName<Weight>, 9>{{{ultraLight, "ultraLight"},
                                          {thin, "thin"},
                                          {light, "light"},
                                          {regular, "regular"},
                                          {medium, "medium"},
                                          {semibold, "semibold"},
                                          {bold, "bold"},
                                          {heavy, "heavy"},
                                          {black, "black"}}};
}

// The CSS/OpenType weight class: ultraLight 100 ... black 900.
constexpr int numericWeight(Weight weight) { return 100 * (static_cast<int>(weight) + 1); }

// Dynamic Type styles, at the default content size.
enum class TextStyle {
  largeTitle,
  title,
  title2,
  title3,
  headline,
  subheadline,
  body,
  callout,
  footnote,
  caption,
  caption2
};

constexpr auto enumNames(TextStyle) {
  using enum TextStyle;
  return std::array<EnumName<TextStyle>, 11>{{{largeTitle, "largeTitle"},
                                              {title, "title"},
                                              {title2, "title2"},
                                              {title3, "title3"},
                                              {headline, "headline"},
                                              {subheadline, "subheadline"},
                                              {body, "body"},
                                              {callout, "callout"},
                                              {footnote, "footnote"},
                                              {caption, "caption"},
                                              {caption2, "caption2"}}};
}

// Point size and weight of a text style at the default (Large) content size.
double pointSize(TextStyle style);
Weight defaultWeight(TextStyle style);

enum class FontDesign { standard, serif, rounded, monospaced };

constexpr auto enumNames(FontDesign) {
  using enum FontDesign;
  return std::array<EnumName<FontDesign>, 4>{
      {{standard, "default"}, {serif, "serif"}, {rounded, "rounded"}, {monospaced, "monospaced"}}};
}

// A font as views describe it: either the system font at a fixed size
// (`.system(size: 19)`, optionally with weight and design) or a text style
// (`.title3`), optionally re-weighted (`.title3.weight(.semibold)`). Exactly
// one of `size` and `textStyle` is set.
struct Font {
  std::optional<double> size;
  std::optional<TextStyle> textStyle;
  std::optional<Weight> fontWeight;
  std::optional<FontDesign> design;

  static Font system(double size, std::optional<Weight> weight = std::nullopt,
                     std::optional<FontDesign> design = std::nullopt) {
    return Font{size, std::nullopt, weight, design};
  }
  static Font style(TextStyle textStyle) { return Font{std::nullopt, textStyle, std::nullopt, std::nullopt}; }
  static Font largeTitle() { return style(TextStyle::largeTitle); }
  static Font title() { return style(TextStyle::title); }
  static Font title2() { return style(TextStyle::title2); }
  static Font title3() { return style(TextStyle::title3); }
  static Font headline() { return style(TextStyle::headline); }
  static Font subheadline() { return style(TextStyle::subheadline); }
  static Font body() { return style(TextStyle::body); }
  static Font callout() { return style(TextStyle::callout); }
  static Font footnote() { return style(TextStyle::footnote); }
  static Font caption() { return style(TextStyle::caption); }
  static Font caption2() { return style(TextStyle::caption2); }

  Font weight(Weight weight) const {
    Font font = *this;
    font.fontWeight = weight;
    return font;
  }

  // What is drawn: the fixed size or the style's size; the explicit weight or
  // the style's own (regular for the system font).
  double resolvedSize() const;
  Weight resolvedWeight() const;

  bool operator==(const Font&) const = default;
};

}  // namespace quillan::views
