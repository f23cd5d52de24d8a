#include <algorithm>
#include <cmath>
#include <vector>

#include "render/Layout.hpp"
#include "render/RenderingConstants.hpp"

namespace quillan::render {

namespace {

enum class Edge { top, leading, bottom, trailing };

// What one edge of a view prefers to keep from its neighbours. A stack's edge
// is the union of its children's preferences on that edge, so a row of texts
// spaces like a text and a gap is the largest any pair of preferences asks for.
struct EdgePreferences {
  bool generic = false;
  bool spacer = false;
  std::vector<const LayoutNode*> texts;

  static EdgePreferences genericOnly() { return {true, false, {}}; }
  static EdgePreferences spacerOnly() { return {false, true, {}}; }
  static EdgePreferences text(const LayoutNode& node) { return {false, false, {&node}}; }

  void merge(const EdgePreferences& other) {
    generic = generic || other.generic;
    spacer = spacer || other.spacer;
    texts.insert(texts.end(), other.texts.begin(), other.texts.end());
  }
};

double insetOn(const EdgeInsets& e, Edge edge) {
  switch (edge) {
    case Edge::top: return e.top;
    case Edge::leading: return e.leading;
    case Edge::bottom: return e.bottom;
    case Edge::trailing: return e.trailing;
  }
  return 0;
}

bool isMajorEdge(LayoutKind stack, Edge edge) {
  const bool vertical = edge == Edge::top || edge == Edge::bottom;
  return stack == LayoutKind::vstack ? vertical : !vertical;
}

bool isLeadingSide(Edge edge) { return edge == Edge::top || edge == Edge::leading; }

EdgePreferences preferencesOn(const LayoutNode& node, Edge edge);

EdgePreferences unionOf(const std::vector<LayoutNode>& children, Edge edge) {
  EdgePreferences out;
  for (const auto& child : children) out.merge(preferencesOn(child, edge));
  return out;
}

EdgePreferences stackPreferences(const LayoutNode& stack, Edge edge) {
  if (stack.children.empty()) return EdgePreferences::genericOnly();
  // Along the stack's axis only the outermost child faces the neighbour.
  if (isMajorEdge(stack.kind, edge))
    return preferencesOn(isLeadingSide(edge) ? stack.children.front() : stack.children.back(), edge);
  return unionOf(stack.children, edge);
}

EdgePreferences preferencesOn(const LayoutNode& node, Edge edge) {
  switch (node.kind) {
    case LayoutKind::text: return EdgePreferences::text(node);
    case LayoutKind::spacer: return EdgePreferences::spacerOnly();
    case LayoutKind::hstack:
    case LayoutKind::vstack: return stackPreferences(node, edge);
    case LayoutKind::zstack:
      return node.children.empty() ? EdgePreferences::genericOnly() : unionOf(node.children, edge);
    case LayoutKind::padding:
      // Padding replaces the child's preferences on the padded edges only.
      if (insetOn(node.insets, edge) > 0 || node.children.empty()) return EdgePreferences::genericOnly();
      return preferencesOn(node.children.front(), edge);
    case LayoutKind::frame:
    case LayoutKind::flexibleFrame:
    case LayoutKind::offset:
    case LayoutKind::link:
    case LayoutKind::group:
    case LayoutKind::background:
    case LayoutKind::overlay:
      return node.children.empty() ? EdgePreferences::genericOnly() : preferencesOn(node.children.front(), edge);
    case LayoutKind::empty:
    case LayoutKind::symbol:
    case LayoutKind::shape: return EdgePreferences::genericOnly();
  }
  return EdgePreferences::genericOnly();
}

FontMetrics textMetrics(const LayoutNode& text, LayoutEngine& engine) {
  return engine.measurer().metrics(text.text.empty() ? FontDescription{} : text.text.front().font);
}

// Vertical gaps between one preference above and one below.
double genericAboveText(const LayoutNode& below, LayoutEngine& engine) {
  const FontMetrics m = textMetrics(below, engine);
  return m.descender + engine.ceilToPixel(0.1 * m.lineHeight);
}

double textAboveGeneric(const LayoutNode& above, LayoutEngine& engine) {
  const FontMetrics m = textMetrics(above, engine);
  const double tenth = engine.ceilToPixel(0.1 * m.lineHeight);
  return std::max(m.lineHeight + tenth - m.capHeight, tenth + m.descender);
}

double verticalGap(const EdgePreferences& above, const EdgePreferences& below, LayoutEngine& engine) {
  double gap = 0;  // text above text: the system font has no leading
  if (above.generic && below.generic) gap = std::max(gap, constants::kDefaultSpacing);
  if (above.generic)
    for (const LayoutNode* text : below.texts) gap = std::max(gap, genericAboveText(*text, engine));
  if (below.generic)
    for (const LayoutNode* text : above.texts) gap = std::max(gap, textAboveGeneric(*text, engine));
  return gap;
}

// Side by side every pairing but a spacer's keeps the generic gap.
double horizontalGap(const EdgePreferences& before, const EdgePreferences& after) {
  const bool beforeSolid = before.generic || !before.texts.empty();
  const bool afterSolid = after.generic || !after.texts.empty();
  return beforeSolid && afterSolid ? constants::kDefaultSpacing : 0;
}

}  // namespace

double defaultSpacing(const LayoutNode& before, const LayoutNode& after, Axis axis, LayoutEngine& engine) {
  if (axis == Axis::horizontal)
    return horizontalGap(preferencesOn(before, Edge::trailing), preferencesOn(after, Edge::leading));
  return verticalGap(preferencesOn(before, Edge::bottom), preferencesOn(after, Edge::top), engine);
}

}  // namespace quillan::render
