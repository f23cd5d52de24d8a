#include <cmath>

#include "render/Layout.hpp"
#include "render/RenderingConstants.hpp"

namespace quillan::render {

namespace {

enum class SpacingClass { generic, text, spacer };

// Spacing preferences pass through modifiers that keep the child's edges
// (frames, offsets, links, backgrounds); padding resets them to generic.
const LayoutNode& spacingSubject(const LayoutNode& node) {
  switch (node.kind) {
    case LayoutKind::frame:
    case LayoutKind::flexibleFrame:
    case LayoutKind::offset:
    case LayoutKind::link:
    case LayoutKind::group:
    case LayoutKind::background:
    case LayoutKind::overlay:
      return node.children.empty() ? node : spacingSubject(node.children.front());
    default:
      return node;
  }
}

SpacingClass classOf(const LayoutNode& node) {
  switch (spacingSubject(node).kind) {
    case LayoutKind::text: return SpacingClass::text;
    case LayoutKind::spacer: return SpacingClass::spacer;
    default: return SpacingClass::generic;
  }
}

FontMetrics textMetrics(const LayoutNode& node, LayoutEngine& engine) {
  const LayoutNode& text = spacingSubject(node);
  return engine.measurer().metrics(text.text.empty() ? FontSpec{} : text.text.front().font);
}

}  // namespace

double defaultSpacing(const LayoutNode& before, const LayoutNode& after, Axis axis, LayoutEngine& engine) {
  const SpacingClass first = classOf(before), second = classOf(after);
  if (first == SpacingClass::spacer || second == SpacingClass::spacer) return 0;
  if (axis == Axis::horizontal) return constants::kDefaultSpacing;
  if (first == SpacingClass::text && second == SpacingClass::text) return 0;  // the system font has no leading
  if (second == SpacingClass::text) {
    const FontMetrics m = textMetrics(after, engine);
    return m.descender + engine.ceilToPixel(0.1 * m.lineHeight);
  }
  if (first == SpacingClass::text) {
    const FontMetrics m = textMetrics(before, engine);
    const double tenth = engine.ceilToPixel(0.1 * m.lineHeight);
    return std::max(m.lineHeight + tenth - m.capHeight, tenth + m.descender);
  }
  return constants::kDefaultSpacing;
}

}  // namespace quillan::render
