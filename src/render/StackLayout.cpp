#include "render/StackLayout.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace quillan::render {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

double major(Size s, Axis axis) { return axis == Axis::horizontal ? s.width : s.height; }
double minor(Size s, Axis axis) { return axis == Axis::horizontal ? s.height : s.width; }
std::optional<double> major(ProposedSize p, Axis axis) { return axis == Axis::horizontal ? p.width : p.height; }
std::optional<double> minor(ProposedSize p, Axis axis) { return axis == Axis::horizontal ? p.height : p.width; }

ProposedSize proposing(std::optional<double> majorValue, std::optional<double> minorValue, Axis axis) {
  return axis == Axis::horizontal ? ProposedSize{majorValue, minorValue} : ProposedSize{minorValue, majorValue};
}

double priorityOf(const LayoutNode& child) {
  return child.kind == LayoutKind::spacer ? -kInfinity : child.layoutPriority;
}

std::vector<double> gapsOf(const LayoutNode& stack, Axis axis, LayoutEngine& engine) {
  std::vector<double> gaps(stack.children.size(), 0.0);
  for (std::size_t i = 1; i < stack.children.size(); ++i)
    gaps[i] = stack.spacing ? *stack.spacing : defaultSpacing(stack.children[i - 1], stack.children[i], axis, engine);
  return gaps;
}

// Lines the children's baselines up on the lowest one's depth and returns the
// row's height: the union of the shifted children.
double alignOnBaseline(const LayoutNode& stack, StackSolution& solution, LayoutEngine& engine) {
  const std::size_t n = stack.children.size();
  std::vector<double> baselines(n);
  double deepest = 0;
  for (std::size_t i = 0; i < n; ++i) {
    // A spacer has no text and no height across the row: it lends no baseline.
    baselines[i] = stack.children[i].kind == LayoutKind::spacer
                       ? solution.sizes[i].height
                       : engine.baselineOf(stack.children[i], solution.proposals[i], stack.alignment.baseline);
    deepest = std::max(deepest, baselines[i]);
  }
  double extent = 0;
  solution.minorOffsets.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    solution.minorOffsets[i] = deepest - baselines[i];
    extent = std::max(extent, solution.minorOffsets[i] + solution.sizes[i].height);
  }
  return extent;
}

}  // namespace

Axis stackAxis(const LayoutNode& stack) { return stack.kind == LayoutKind::hstack ? Axis::horizontal : Axis::vertical; }

StackSolution solveStack(const LayoutNode& stack, ProposedSize proposal, LayoutEngine& engine) {
  const Axis axis = stackAxis(stack);
  const auto& children = stack.children;
  const std::size_t n = children.size();
  StackSolution solution{gapsOf(stack, axis, engine), std::vector<ProposedSize>(n), std::vector<Size>(n), {}, {}};
  const std::optional<double> minorProposal = minor(proposal, axis);

  if (!major(proposal, axis)) {
    for (std::size_t i = 0; i < n; ++i) {
      solution.proposals[i] = proposing(std::nullopt, minorProposal, axis);
      solution.sizes[i] = engine.sizeThatFits(children[i], solution.proposals[i], axis);
    }
  } else {
    double remaining = *major(proposal, axis) - std::accumulate(solution.gaps.begin(), solution.gaps.end(), 0.0);
    std::vector<double> minimum(n), flexibility(n);
    for (std::size_t i = 0; i < n; ++i) {
      minimum[i] = major(engine.sizeThatFits(children[i], proposing(0.0, minorProposal, axis), axis), axis);
      const double maximum = major(engine.sizeThatFits(children[i], proposing(kInfinity, minorProposal, axis), axis),
                                   axis);
      flexibility[i] = maximum - minimum[i];
    }
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      if (priorityOf(children[a]) != priorityOf(children[b])) return priorityOf(children[a]) > priorityOf(children[b]);
      return flexibility[a] < flexibility[b];
    });
    for (std::size_t start = 0; start < n;) {
      const double priority = priorityOf(children[order[start]]);
      std::size_t end = start;
      while (end < n && priorityOf(children[order[end]]) == priority) ++end;
      double lowerMinimum = 0;
      for (std::size_t k = end; k < n; ++k) lowerMinimum += minimum[order[k]];
      double available = remaining - lowerMinimum;
      for (std::size_t k = start; k < end; ++k) {
        const std::size_t i = order[k];
        const double share = std::max(0.0, available / static_cast<double>(end - k));
        solution.proposals[i] = proposing(share, minorProposal, axis);
        solution.sizes[i] = engine.sizeThatFits(children[i], solution.proposals[i], axis);
        available -= major(solution.sizes[i], axis);
        remaining -= major(solution.sizes[i], axis);
      }
      start = end;
    }
  }

  double majorTotal = std::accumulate(solution.gaps.begin(), solution.gaps.end(), 0.0);
  double minorExtent = 0;
  for (const Size& s : solution.sizes) {
    majorTotal += major(s, axis);
    minorExtent = std::max(minorExtent, minor(s, axis));
  }
  if (axis == Axis::horizontal && stack.alignment.baseline != Baseline::none && n > 0)
    minorExtent = alignOnBaseline(stack, solution, engine);
  solution.size = axis == Axis::horizontal ? Size{majorTotal, minorExtent} : Size{minorExtent, majorTotal};
  return solution;
}

}  // namespace quillan::render
