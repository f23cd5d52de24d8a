#include "render/Layout.hpp"

#include <algorithm>
#include <cmath>

#include "render/RenderingConstants.hpp"
#include "render/StackLayout.hpp"

namespace quillan::render {

namespace {

constexpr double kUnspecifiedKey = -1.0;

struct AxisFrame {
  std::optional<double> min, ideal, max;
};

AxisFrame horizontalFrame(const FrameSpec& f) { return {f.minWidth, f.idealWidth, f.maxWidth}; }
AxisFrame verticalFrame(const FrameSpec& f) { return {f.minHeight, f.idealHeight, f.maxHeight}; }

double clampTo(double value, const AxisFrame& f) {
  if (f.max) value = std::min(value, *f.max);
  if (f.min) value = std::max(value, *f.min);
  return value;
}

std::optional<double> flexibleChildProposal(std::optional<double> proposal, const AxisFrame& f) {
  if (!proposal) proposal = f.ideal;
  if (!proposal) return std::nullopt;
  return clampTo(*proposal, f);
}

// The child's size, stretched toward the proposal as far as the bounds allow,
// then kept within them. With both bounds this is the clamped proposal.
double flexibleFrameSize(std::optional<double> proposal, double child, const AxisFrame& f) {
  if (!proposal) proposal = f.ideal;
  if (!f.min && !f.max) return child;
  double size = child;
  if (proposal) {
    if (f.max && *proposal > size) size = std::min(*proposal, *f.max);
    if (f.min && *proposal < size) size = std::max(*proposal, *f.min);
  }
  return clampTo(size, f);
}

std::optional<double> minus(std::optional<double> value, double amount) {
  if (!value) return std::nullopt;
  return std::max(0.0, *value - amount);
}

ProposedSize paddedProposal(ProposedSize p, const EdgeInsets& e) {
  return {minus(p.width, e.leading + e.trailing), minus(p.height, e.top + e.bottom)};
}

ProposedSize fixedFrameProposal(ProposedSize p, const FrameSpec& f) {
  return {f.width ? f.width : p.width, f.height ? f.height : p.height};
}

ProposedSize flexibleFrameProposal(ProposedSize p, const FrameSpec& f) {
  return {flexibleChildProposal(p.width, horizontalFrame(f)), flexibleChildProposal(p.height, verticalFrame(f))};
}

Rect aligned(Size child, Rect container, Alignment alignment) {
  return {container.x + (container.width - child.width) * alignment.horizontal,
          container.y + (container.height - child.height) * alignment.vertical, child.width, child.height};
}

double orIdeal(std::optional<double> value) { return value.value_or(constants::kShapeIdealSide); }

}  // namespace

double LayoutEngine::ceilToPixel(double value) const {
  // The small slack keeps values already on the grid (up to float noise) there.
  return std::ceil(value * scale_ - 1e-6) / scale_;
}

double LayoutEngine::roundToPixel(double value) const { return std::round(value * scale_) / scale_; }

Rect LayoutEngine::snapped(Rect r) const {
  if (!std::isfinite(r.width) || !std::isfinite(r.height)) return r;
  const double x = roundToPixel(r.x), y = roundToPixel(r.y);
  return {x, y, roundToPixel(r.maxX()) - x, roundToPixel(r.maxY()) - y};
}

TextLayout layoutTextNode(const LayoutNode& node, ProposedSize proposal, LayoutEngine& engine) {
  TextLimits limits{proposal.width, proposal.height, node.lineLimit};
  if (limits.width && std::isinf(*limits.width)) limits.width.reset();
  if (limits.height && std::isinf(*limits.height)) limits.height.reset();
  TextLayout layout = engine.measurer().layout(node.text, limits);
  layout.size = {engine.ceilToPixel(layout.size.width), engine.ceilToPixel(layout.size.height)};
  return layout;
}

Size symbolSize(const LayoutNode& node) {
  double points = node.symbolFont.size;
  if (node.symbolScale == SymbolScale::small) points *= constants::kSymbolSmallScale;
  if (node.symbolScale == SymbolScale::large) points *= constants::kSymbolLargeScale;
  if (node.symbolName.ends_with(".circle.fill") || node.symbolName.ends_with(".circle")) {
    const double diameter = points * constants::kCircleSymbolDiameterPerPoint;
    return {diameter, diameter};
  }
  if (node.symbolName == "checkmark") {
    const double height = points * constants::kCheckmarkHeightPerPoint;
    return {height * constants::kCheckmarkAspect, height};
  }
  const double height = points * constants::kSquarePencilHeightPerPoint;
  return {height * constants::kSquarePencilAspect, height};
}

LayoutEngine::Key LayoutEngine::keyFor(const LayoutNode& node, ProposedSize proposal, int variant) const {
  return {&node, proposal.width.value_or(kUnspecifiedKey), proposal.height.value_or(kUnspecifiedKey), variant};
}

Size LayoutEngine::sizeThatFits(const LayoutNode& node, ProposedSize proposal, std::optional<Axis> axis) {
  const Key key = keyFor(node, proposal, axis ? static_cast<int>(*axis) : -1);
  if (auto found = cache_.find(key); found != cache_.end()) return found->second;
  const Size size = computeSize(node, proposal, axis);
  cache_.emplace(key, size);
  return size;
}

Size LayoutEngine::computeSize(const LayoutNode& node, ProposedSize p, std::optional<Axis> axis) {
  switch (node.kind) {
    case LayoutKind::empty: return {};
    case LayoutKind::hstack:
    case LayoutKind::vstack: return solveStack(node, p, *this).size;
    case LayoutKind::zstack: {
      Size size;
      for (const auto& child : node.children) {
        const Size c = sizeThatFits(child, p);
        size = {std::max(size.width, c.width), std::max(size.height, c.height)};
      }
      return size;
    }
    case LayoutKind::text: return layoutTextNode(node, p, *this).size;
    case LayoutKind::symbol:
      if (node.resizable) {
        const Size natural = symbolSize(node);
        return {p.width.value_or(natural.width), p.height.value_or(natural.height)};
      }
      return symbolSize(node);
    case LayoutKind::shape: return {orIdeal(p.width), orIdeal(p.height)};
    case LayoutKind::spacer: {
      const double minLength = node.spacerMinLength.value_or(constants::kDefaultSpacerMinLength);
      const auto along = [&](std::optional<double> v) { return std::max(minLength, v.value_or(minLength)); };
      if (axis == Axis::horizontal) return {along(p.width), 0};
      if (axis == Axis::vertical) return {0, along(p.height)};
      return {along(p.width), along(p.height)};
    }
    case LayoutKind::frame: {
      const Size child = node.children.empty() ? Size{}
                                               : sizeThatFits(node.children.front(), fixedFrameProposal(p, node.frame));
      return {node.frame.width.value_or(child.width), node.frame.height.value_or(child.height)};
    }
    case LayoutKind::flexibleFrame: {
      const Size child = node.children.empty()
                             ? Size{}
                             : sizeThatFits(node.children.front(), flexibleFrameProposal(p, node.frame));
      return {flexibleFrameSize(p.width, child.width, horizontalFrame(node.frame)),
              flexibleFrameSize(p.height, child.height, verticalFrame(node.frame))};
    }
    case LayoutKind::padding: {
      const auto& e = node.insets;
      const Size child = node.children.empty() ? Size{} : sizeThatFits(node.children.front(), paddedProposal(p, e));
      return {child.width + e.leading + e.trailing, child.height + e.top + e.bottom};
    }
    case LayoutKind::background:
    case LayoutKind::overlay:
    case LayoutKind::offset:
    case LayoutKind::link:
    case LayoutKind::group: return node.children.empty() ? Size{} : sizeThatFits(node.children.front(), p, axis);
  }
  return {};
}

namespace {

// The first (or last) text box of a laid-out tree in drawing order.
const LayoutBox* textBox(const LayoutBox& box, Baseline which) {
  if (box.text && !box.text->lines.empty()) return &box;
  // A background's or overlay's secondary views do not lend their baselines.
  const bool primaryOnly = box.node->kind == LayoutKind::background || box.node->kind == LayoutKind::overlay;
  const std::size_t count = primaryOnly ? std::min<std::size_t>(1, box.children.size()) : box.children.size();
  for (std::size_t k = 0; k < count; ++k) {
    const LayoutBox& child = box.children[which == Baseline::last ? count - 1 - k : k];
    if (const LayoutBox* found = textBox(child, which)) return found;
  }
  return nullptr;
}

}  // namespace

double LayoutEngine::baselineOf(const LayoutNode& node, ProposedSize proposal, Baseline which) {
  const Key key = keyFor(node, proposal, static_cast<int>(which));
  if (auto found = baselines_.find(key); found != baselines_.end()) return found->second;
  const Size size = sizeThatFits(node, proposal);
  const LayoutBox box = place(node, proposal, {0, 0, size.width, size.height}, std::nullopt);
  const LayoutBox* text = textBox(box, which);
  double baseline = size.height;
  if (text) {
    const auto& layout = *text->text;
    const double lineIndex = which == Baseline::last ? static_cast<double>(layout.lines.size() - 1) : 0.0;
    baseline = text->frame.y + lineIndex * layout.lineHeight + layout.ascender;
  }
  baselines_.emplace(key, baseline);
  return baseline;
}

LayoutBox LayoutEngine::layout(const LayoutNode& node, ProposedSize proposal, Point origin) {
  // Answers are keyed by node address, valid for one tree only.
  cache_.clear();
  baselines_.clear();
  const Size size = sizeThatFits(node, proposal);
  return place(node, proposal, {origin.x, origin.y, size.width, size.height}, std::nullopt);
}

LayoutBox LayoutEngine::place(const LayoutNode& node, ProposedSize p, Rect frame, std::optional<Axis> axis) {
  LayoutBox box{&node, snapped(frame), std::nullopt, {}};
  const auto placeChild = [&](const LayoutNode& child, ProposedSize childProposal, Rect childFrame,
                              std::optional<Axis> childAxis = std::nullopt) {
    box.children.push_back(place(child, childProposal, childFrame, childAxis));
  };
  const auto placeAligned = [&](const LayoutNode& child, ProposedSize childProposal, Rect container) {
    const Size size = sizeThatFits(child, childProposal);
    placeChild(child, childProposal, aligned(size, container, node.alignment));
  };
  switch (node.kind) {
    case LayoutKind::hstack:
    case LayoutKind::vstack: {
      const StackSolution solution = solveStack(node, p, *this);
      const bool horizontal = stackAxis(node) == Axis::horizontal;
      double cursor = horizontal ? frame.x : frame.y;
      for (std::size_t i = 0; i < node.children.size(); ++i) {
        cursor += solution.gaps[i];
        const Size s = solution.sizes[i];
        const double top = solution.minorOffsets.empty() ? (frame.height - s.height) * node.alignment.vertical
                                                         : solution.minorOffsets[i];
        const Rect childFrame = horizontal ? Rect{cursor, frame.y + top, s.width, s.height}
                                           : Rect{frame.x + (frame.width - s.width) * node.alignment.horizontal, cursor,
                                                  s.width, s.height};
        placeChild(node.children[i], solution.proposals[i], childFrame, stackAxis(node));
        cursor += horizontal ? s.width : s.height;
      }
      break;
    }
    case LayoutKind::zstack:
      for (const auto& child : node.children) placeAligned(child, p, frame);
      break;
    case LayoutKind::text: box.text = layoutTextNode(node, p, *this); break;
    case LayoutKind::frame:
      if (!node.children.empty()) placeAligned(node.children.front(), fixedFrameProposal(p, node.frame), frame);
      break;
    case LayoutKind::flexibleFrame:
      if (!node.children.empty()) placeAligned(node.children.front(), flexibleFrameProposal(p, node.frame), frame);
      break;
    case LayoutKind::padding: {
      if (node.children.empty()) break;
      const auto& e = node.insets;
      const Rect inner{frame.x + e.leading, frame.y + e.top, std::max(0.0, frame.width - e.leading - e.trailing),
                       std::max(0.0, frame.height - e.top - e.bottom)};
      placeChild(node.children.front(), paddedProposal(p, e), inner);
      break;
    }
    case LayoutKind::background:
    case LayoutKind::overlay:
      if (node.children.empty()) break;
      placeChild(node.children.front(), p, frame, axis);
      for (std::size_t i = 1; i < node.children.size(); ++i)
        placeAligned(node.children[i], ProposedSize::of({frame.width, frame.height}), frame);
      break;
    case LayoutKind::offset:
    case LayoutKind::link:
    case LayoutKind::group:
      if (!node.children.empty()) placeChild(node.children.front(), p, frame, axis);
      break;
    case LayoutKind::empty:
    case LayoutKind::symbol:
    case LayoutKind::shape:
    case LayoutKind::spacer: break;
  }
  return box;
}

}  // namespace quillan::render
