#pragma once

#include <array>
#include <compare>
#include <stdexcept>
#include <string>
#include <string_view>

#include "views/EnumNames.hpp"

namespace quillan::views {

enum class ColorScheme { light, dark };

constexpr auto enumNames(ColorScheme) {
  using enum ColorScheme;
  return std::array<EnumName<ColorScheme>, 2>{{{light, "light"}, {dark, "dark"}}};
}

// How the host composites the widget: untouched, tinted in two groups, or as a
// monochrome vibrancy layer (lock screen).
enum class WidgetRenderingMode { fullColor, accented, vibrant };

constexpr auto enumNames(WidgetRenderingMode) {
  using enum WidgetRenderingMode;
  return std::array<EnumName<WidgetRenderingMode>, 3>{
      {{fullColor, "fullColor"}, {accented, "accented"}, {vibrant, "vibrant"}}};
}

enum class WidgetFamily { systemSmall, systemMedium, accessoryCircular };

constexpr auto enumNames(WidgetFamily) {
  using enum WidgetFamily;
  return std::array<EnumName<WidgetFamily>, 3>{
      {{systemSmall, "systemSmall"}, {systemMedium, "systemMedium"}, {accessoryCircular, "accessoryCircular"}}};
}

// Which way the views' leading edge faces: a right-to-left locale mirrors the
// layout (stacks run from the right, leading and trailing swap).
enum class LayoutDirection { leftToRight, rightToLeft };
constexpr auto enumNames(LayoutDirection) {
  using enum LayoutDirection;
  return std::array<EnumName<LayoutDirection>, 2>{{{leftToRight, "ltr"}, {rightToLeft, "rtl"}}};
}

// The reader's text size setting (Dynamic Type's content size categories).
enum class DynamicTypeSize {
  xSmall,
  small,
  medium,
  large,
  xLarge,
  xxLarge,
  xxxLarge,
  accessibility1,
  accessibility2,
  accessibility3,
  accessibility4,
  accessibility5,
};
constexpr auto enumNames(DynamicTypeSize) {
  using enum DynamicTypeSize;
  return std::array<EnumName<DynamicTypeSize>, 12>{{{xSmall, "xSmall"},
                                                    {small, "small"},
                                                    {medium, "medium"},
                                                    {large, "large"},
                                                    {xLarge, "xLarge"},
                                                    {xxLarge, "xxLarge"},
                                                    {xxxLarge, "xxxLarge"},
                                                    {accessibility1, "accessibility1"},
                                                    {accessibility2, "accessibility2"},
                                                    {accessibility3, "accessibility3"},
                                                    {accessibility4, "accessibility4"},
                                                    {accessibility5, "accessibility5"}}};
}

// The operating-system version the views branch on ("17.0 or later").
struct PlatformVersion {
  int major = 17;
  int minor = 0;

  auto operator<=>(const PlatformVersion&) const = default;
  bool atLeast(int wantedMajor, int wantedMinor = 0) const {
    return *this >= PlatformVersion{wantedMajor, wantedMinor};
  }
  std::string toString() const;  // "17.0"
};

// What the widget host tells a view about where it is drawn.
struct Environment {
  ColorScheme colorScheme = ColorScheme::light;
  WidgetRenderingMode renderingMode = WidgetRenderingMode::fullColor;
  PlatformVersion platformVersion;
  WidgetFamily family = WidgetFamily::systemSmall;
  LayoutDirection layoutDirection = LayoutDirection::leftToRight;
  DynamicTypeSize dynamicTypeSize = DynamicTypeSize::large;

  bool operator==(const Environment&) const = default;
};

// A value on the command line (or in a file) that names no known setting. The
// message is one line naming the bad value and what is accepted.
class EnvironmentParseError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

ColorScheme parseColorScheme(std::string_view text);
WidgetRenderingMode parseRenderingMode(std::string_view text);
WidgetFamily parseWidgetFamily(std::string_view text);
LayoutDirection parseLayoutDirection(std::string_view text);
DynamicTypeSize parseDynamicTypeSize(std::string_view text);
// "MAJOR" or "MAJOR.MINOR", decimal digits only: "17", "16.4".
PlatformVersion parsePlatformVersion(std::string_view text);

}  // namespace quillan::views
