#pragma once

#include <vector>

#include "render/Layout.hpp"

namespace quillan::render {

// How an H/V stack shares its major axis: the gap before each child, what
// each child was proposed and chose, and the stack's own size.
struct StackSolution {
  std::vector<double> gaps;
  std::vector<ProposedSize> proposals;
  std::vector<Size> sizes;
  // Rows aligned on a text baseline: each child's top below the row's top.
  std::vector<double> minorOffsets;
  Size size;
};

Axis stackAxis(const LayoutNode& stack);

// Children are served in layout-priority groups (spacers last), least
// flexible first within a group, each offered an equal share of what is left.
StackSolution solveStack(const LayoutNode& stack, ProposedSize proposal, LayoutEngine& engine);

}  // namespace quillan::render
