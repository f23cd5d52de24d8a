#pragma once

#include <array>

// Every number the host draws with that is an estimate or a measured stand-in
// for the phone's own value lives here, so that one place changes when a
// better measurement arrives.
namespace quillan::render::constants {

// Spacing and padding defaults of the view toolkit.
inline constexpr double kDefaultSpacing = 8.0;
inline constexpr double kDefaultSpacerMinLength = 8.0;
inline constexpr double kDefaultPadding = 16.0;
inline constexpr double kShapeIdealSide = 10.0;

// System font: line pitch = 1.19336 x size (ascender 1950 + descender 494 over
// 2048 units), cap height 1443 units.
inline constexpr double kLineHeightPerPoint = 1.19336;
inline constexpr double kAscenderPerPoint = 1950.0 / 2048.0;
inline constexpr double kDescenderPerPoint = 494.0 / 2048.0;
inline constexpr double kCapHeightPerPoint = 1443.0 / 2048.0;
// Inter's display cut takes over from this size up.
inline constexpr double kDisplayDesignFromSize = 20.0;
inline constexpr double kBodySize = 17.0;

// Symbol image scales relative to medium [est].
inline constexpr double kSymbolSmallScale = 0.783;
inline constexpr double kSymbolLargeScale = 1.29;
// Symbol glyph box relative to the point size [est].
inline constexpr double kCheckmarkHeightPerPoint = 0.9;
inline constexpr double kCheckmarkAspect = 1.05;
inline constexpr double kSquarePencilHeightPerPoint = 0.95;
inline constexpr double kSquarePencilAspect = 1.05;
inline constexpr double kCircleSymbolDiameterPerPoint = 1.18;
inline constexpr double kSymbolStrokePerHeight = 0.10;
// A symbol's stroke relative to its regular weight's, ultraLight ... black, as
// the weights of the symbol set thin and thicken their strokes [est].
inline constexpr std::array<double, 9> kSymbolStrokeByWeight{0.35, 0.5, 0.72, 1.0, 1.14, 1.3, 1.5, 1.72, 1.95};

// The widget's corner radius on the home screen [est 22].
inline constexpr double kWidgetCornerRadius = 22.0;
// Content margins on platform 17 and later: home-screen families and accessory families.
inline constexpr double kHomeScreenContentMargin = 16.0;
inline constexpr double kAccessoryContentMargin = 0.0;

// Redaction bars [est]: corner radius and opacity of the foreground colour.
inline constexpr double kRedactionBarRadius = 3.0;
inline constexpr double kRedactionBarOpacity = 0.2;
// A bar covers this share of the line pitch, centred on the line.
inline constexpr double kRedactionBarHeightShare = 0.75;

// Vibrant rendering backdrop: a dark, blurred-looking lock-screen wallpaper.
inline constexpr unsigned kVibrantBackdropTop = 0x2B3A55;
inline constexpr unsigned kVibrantBackdropBottom = 0x121826;
// Accented rendering: default group white, accent group the system tint.
inline constexpr unsigned kAccentedDefaultColor = 0xFFFFFF;
inline constexpr unsigned kAccentedAccentColor = 0x0A84FF;
inline constexpr unsigned kAccentedBackdrop = 0x1C1C1E;

// Hierarchical foreground levels: primary, secondary, tertiary, quaternary.
inline constexpr double kHierarchyOpacity[] = {1.0, 0.5, 0.25, 0.18};

}  // namespace quillan::render::constants
