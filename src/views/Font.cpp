#include "views/Font.hpp"

namespace quillan::views {

// Dynamic Type at the default (Large) content size.
double pointSize(TextStyle style) {
  switch (style) {
    case TextStyle::largeTitle: return 34;
    case TextStyle::title: return 28;
    case TextStyle::title2: return 22;
    case TextStyle::title3: return 20;
    case TextStyle::headline: return 17;
    case TextStyle::body: return 17;
    case TextStyle::callout: return 16;
    case TextStyle::subheadline: return 15;
    case TextStyle::footnote: return 13;
    case TextStyle::caption: return 12;
    case TextStyle::caption2: return 11;
  }
  return 17;
}

Weight defaultWeight(TextStyle style) { return style == TextStyle::headline ? Weight::semibold : Weight::regular; }

double Font::resolvedSize() const {
  if (size) return *size;
  return pointSize(textStyle.value_or(TextStyle::body));
}

Weight Font::resolvedWeight() const {
  if (fontWeight) return *fontWeight;
  return textStyle ? defaultWeight(*textStyle) : Weight::regular;
}

}  // namespace quillan::views
