#include "views/Color.hpp"

namespace quillan::views {
namespace {

struct SchemeValues {
  RGBA light;
  RGBA dark;
};

// The dynamic system colours, light and dark. The toolkit's plain names are
// the same dynamic colours as their system* counterparts.
SchemeValues schemeValues(ColorName name) {
  using enum ColorName;
  switch (name) {
    case red:
    case systemRed: return {RGBA::fromHex(0xFF3B30), RGBA::fromHex(0xFF453A)};
    case orange:
    case systemOrange: return {RGBA::fromHex(0xFF9500), RGBA::fromHex(0xFF9F0A)};
    case green:
    case systemGreen: return {RGBA::fromHex(0x34C759), RGBA::fromHex(0x30D158)};
    case blue:
    case systemBlue: return {RGBA::fromHex(0x007AFF), RGBA::fromHex(0x0A84FF)};
    case gray:
    case systemGray: return {RGBA::fromHex(0x8E8E93), RGBA::fromHex(0x8E8E93)};
    case systemGray2: return {RGBA::fromHex(0xAEAEB2), RGBA::fromHex(0x636366)};
    case systemGray3: return {RGBA::fromHex(0xC7C7CC), RGBA::fromHex(0x48484A)};
    case systemGray4: return {RGBA::fromHex(0xD1D1D6), RGBA::fromHex(0x3A3A3C)};
    case systemGray5: return {RGBA::fromHex(0xE5E5EA), RGBA::fromHex(0x2C2C2E)};
    case systemGray6:
    case secondarySystemBackground: return {RGBA::fromHex(0xF2F2F7), RGBA::fromHex(0x1C1C1E)};
    case primary:
    case label: return {RGBA::fromHex(0x000000), RGBA::fromHex(0xFFFFFF)};
    case secondary:
    case secondaryLabel: return {RGBA::fromHex(0x3C3C43, 0.60), RGBA::fromHex(0xEBEBF5, 0.60)};
    case tertiaryLabel: return {RGBA::fromHex(0x3C3C43, 0.30), RGBA::fromHex(0xEBEBF5, 0.30)};
    case quaternaryLabel: return {RGBA::fromHex(0x3C3C43, 0.18), RGBA::fromHex(0xEBEBF5, 0.16)};
    case systemFill: return {RGBA::fromHex(0x787880, 0.20), RGBA::fromHex(0x787880, 0.36)};
    case systemBackground: return {RGBA::fromHex(0xFFFFFF), RGBA::fromHex(0x000000)};
    case white: return {RGBA::fromHex(0xFFFFFF), RGBA::fromHex(0xFFFFFF)};
    case black: return {RGBA::fromHex(0x000000), RGBA::fromHex(0x000000)};
    case clear: return {RGBA::fromHex(0x000000, 0), RGBA::fromHex(0x000000, 0)};
  }
  return {};
}

}  // namespace

RGBA resolve(Color color, ColorScheme scheme) {
  const SchemeValues values = schemeValues(color.name);
  RGBA rgba = scheme == ColorScheme::dark ? values.dark : values.light;
  rgba.alpha *= color.opacity;
  return rgba;
}

}  // namespace quillan::views
