#pragma once

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "render/FakeTextMeasurer.hpp"
#include "render/Layout.hpp"
#include "render/LayoutNode.hpp"
#include "render/TextLayout.hpp"

namespace quillan::render::testing {

inline StyledText plain(std::string s) { return {StyledRun{std::move(s), FontDescription{}, false, std::nullopt}}; }

inline std::vector<std::string> lineTexts(const TextLayout& layout) {
  std::vector<std::string> out;
  for (const auto& line : layout.lines) out.push_back(plainText(line.runs));
  return out;
}

inline LayoutNode color() {
  LayoutNode n;
  n.kind = LayoutKind::shape;
  return n;
}

inline LayoutNode text(std::string s, std::optional<int> lineLimit = std::nullopt) {
  LayoutNode n;
  n.kind = LayoutKind::text;
  n.text = plain(std::move(s));
  n.lineLimit = lineLimit;
  return n;
}

inline LayoutNode spacer(std::optional<double> minLength = std::nullopt) {
  LayoutNode n;
  n.kind = LayoutKind::spacer;
  n.spacerMinLength = minLength;
  return n;
}

inline LayoutNode stack(LayoutKind kind, std::vector<LayoutNode> children,
                        std::optional<double> spacing = std::nullopt) {
  LayoutNode n;
  n.kind = kind;
  n.children = std::move(children);
  n.spacing = spacing;
  return n;
}

inline LayoutNode wrap(LayoutKind kind, LayoutNode child) {
  LayoutNode n;
  n.kind = kind;
  n.children.push_back(std::move(child));
  return n;
}

inline LayoutNode flexFrame(LayoutNode child, FrameSpec frame, Alignment alignment = {}) {
  LayoutNode n = wrap(LayoutKind::flexibleFrame, std::move(child));
  n.frame = frame;
  n.alignment = alignment;
  return n;
}

inline LayoutNode fixedFrame(LayoutNode child, std::optional<double> w, std::optional<double> h,
                             Alignment alignment = {}) {
  LayoutNode n = wrap(LayoutKind::frame, std::move(child));
  n.frame.width = w;
  n.frame.height = h;
  n.alignment = alignment;
  return n;
}

inline LayoutNode padding(LayoutNode child, EdgeInsets insets) {
  LayoutNode n = wrap(LayoutKind::padding, std::move(child));
  n.insets = insets;
  return n;
}

// Layouts with fake metrics: ten points a character; line 20, ascender 16,
// descender 4, cap 12.
class FakeMetricsLayout : public ::testing::Test {
 protected:
  FakeTextMeasurer measurer{10.0, 20.0};
};

}  // namespace quillan::render::testing
