#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "views/EnumNames.hpp"
#include "views/Environment.hpp"

namespace quillan::views {

// The colours views name. They stay names in the tree (and in JSON); only the
// drawing resolves them, by colour scheme. The toolkit's `red`, `gray`, ... and
// the UIKit `systemRed`, `systemGray`, ... resolve alike but are kept apart,
// because views name them apart.
enum class ColorName {
  red,
  orange,
  green,
  blue,
  gray,
  primary,
  secondary,
  white,
  black,
  clear,
  systemRed,
  systemOrange,
  systemGreen,
  systemBlue,
  systemGray,
  systemGray2,
  systemGray3,
  systemGray4,
  systemGray5,
  systemGray6,
  label,
  secondaryLabel,
  tertiaryLabel,
  quaternaryLabel,
  systemFill,
  systemBackground,
  secondarySystemBackground,
};

constexpr auto enumNames(ColorName) {
  using enum ColorName;
  return std::array<EnumName<ColorName>, 27>{{
      {red, "red"},
      {orange, "orange"},
      {green, "green"},
      {blue, "blue"},
      {gray, "gray"},
      {primary, "primary"},
      {secondary, "secondary"},
      {white, "white"},
      {black, "black"},
      {clear, "clear"},
      {systemRed, "systemRed"},
      {systemOrange, "systemOrange"},
      {systemGreen, "systemGreen"},
      {systemBlue, "systemBlue"},
      {systemGray, "systemGray"},
      {systemGray2, "systemGray2"},
      {systemGray3, "systemGray3"},
      {systemGray4, "systemGray4"},
      {systemGray5, "systemGray5"},
      {systemGray6, "systemGray6"},
      {label, "label"},
      {secondaryLabel, "secondaryLabel"},
      {tertiaryLabel, "tertiaryLabel"},
      {quaternaryLabel, "quaternaryLabel"},
      {systemFill, "systemFill"},
      {systemBackground, "systemBackground"},
      {secondarySystemBackground, "secondarySystemBackground"},
  }};
}

// sRGB with straight (not premultiplied) alpha, each component in [0, 1].
struct RGBA {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  // 0xRRGGBB, the form colour tables are written in.
  static constexpr RGBA fromHex(std::uint32_t rgb, double alpha = 1) {
    return {((rgb >> 16) & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0, (rgb & 0xFF) / 255.0, alpha};
  }

  bool operator==(const RGBA&) const = default;
};

// A named colour with an opacity multiplier: `Color.orange.opacity(0.75)` is
// {orange, 0.75}. Also a view of its own (a node kind) that fills its frame.
struct Color {
  static constexpr std::string_view type = "Color";
  ColorName name = ColorName::clear;
  double opacity = 1;

  // Multiplies, as applying `.opacity` to a colour twice does.
  constexpr Color withOpacity(double factor) const { return {name, opacity * factor}; }

  bool operator==(const Color&) const = default;

  static constexpr Color named(ColorName name) { return {name, 1}; }
  static constexpr Color red() { return named(ColorName::red); }
  static constexpr Color orange() { return named(ColorName::orange); }
  static constexpr Color green() { return named(ColorName::green); }
  static constexpr Color blue() { return named(ColorName::blue); }
  static constexpr Color gray() { return named(ColorName::gray); }
  static constexpr Color primary() { return named(ColorName::primary); }
  static constexpr Color secondary() { return named(ColorName::secondary); }
  static constexpr Color white() { return named(ColorName::white); }
  static constexpr Color black() { return named(ColorName::black); }
  static constexpr Color clear() { return named(ColorName::clear); }
  static constexpr Color systemGray() { return named(ColorName::systemGray); }
  static constexpr Color systemGray2() { return named(ColorName::systemGray2); }
  static constexpr Color systemGray6() { return named(ColorName::systemGray6); }
};

// The colour's sRGB value in `scheme`, its alpha multiplied by the opacity.
RGBA resolve(Color color, ColorScheme scheme);

}  // namespace quillan::views
