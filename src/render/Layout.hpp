#pragma once

#include <map>
#include <optional>
#include <tuple>

#include "render/LayoutBox.hpp"
#include "render/LayoutNode.hpp"
#include "render/TextMeasurer.hpp"

namespace quillan::render {

// Lays out a node tree the way the phone's view toolkit does: sizes are
// proposed down, each node chooses its own size, the parent places it.
// Answers (sizes and baselines) are memoised per (node, proposal), so nested
// stacks that ask their children several times stay linear. One engine per tree and pass.
class LayoutEngine {
 public:
  LayoutEngine(const TextMeasurer& measurer, double scale) : measurer_(measurer), scale_(scale) {}

  // The size `node` chooses for `proposal`. `stackAxis` is the axis of the
  // stack the node sits in directly (spacers expand along it only).
  Size sizeThatFits(const LayoutNode& node, ProposedSize proposal, std::optional<Axis> stackAxis = {});

  // Lays out `node` at `origin` for `proposal` and returns the whole box tree.
  LayoutBox layout(const LayoutNode& node, ProposedSize proposal, Point origin = {});

  // How far below the top of `node`'s frame its first or last text baseline
  // lies for `proposal`; a node without text answers its bottom edge.
  double baselineOf(const LayoutNode& node, ProposedSize proposal, Baseline which);

  const TextMeasurer& measurer() const { return measurer_; }
  double scale() const { return scale_; }
  double ceilToPixel(double value) const;
  double roundToPixel(double value) const;

 private:
  Size computeSize(const LayoutNode& node, ProposedSize proposal, std::optional<Axis> stackAxis);
  LayoutBox place(const LayoutNode& node, ProposedSize proposal, Rect frame, std::optional<Axis> stackAxis);
  Rect snapped(Rect rect) const;

  const TextMeasurer& measurer_;
  double scale_;
  using Key = std::tuple<const LayoutNode*, double, double, int>;
  Key keyFor(const LayoutNode& node, ProposedSize proposal, int variant) const;
  std::map<Key, Size> cache_;
  // Finding a baseline places the whole subtree; a row aligned on baselines
  // inside another would otherwise place its subtree again for every level
  // above it, doubling the work with each.
  std::map<Key, double> baselines_;
};

// Ideal size of the text for `proposal`, rounded up to the pixel grid, and the
// lines behind it.
TextLayout layoutTextNode(const LayoutNode& node, ProposedSize proposal, LayoutEngine& engine);

// The natural size of a symbol image: its point size (font size times image
// scale) shaped by the symbol's own proportions.
Size symbolSize(const LayoutNode& node);

// The gap the stack puts between `before` and `after` when its spacing is nil.
double defaultSpacing(const LayoutNode& before, const LayoutNode& after, Axis axis, LayoutEngine& engine);

}  // namespace quillan::render
