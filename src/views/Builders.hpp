#pragma once

// Factory functions that make view code read like the tree it builds:
//
//   vstack(HorizontalAlignment::leading, {
//       headerRow(),
//       localizedText("On This Day").font(Font::system(19)).fontWeight(Weight::heavy),
//       when(moreCount >= 1, pill(moreCount)),
//   })
//
// Each returns a Node; modifiers chain on it (Node.hpp).

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "platform/AttributedString.hpp"
#include "views/Node.hpp"

namespace quillan::views {

// The children of a container as written in a builder: nodes, and optional
// nodes for the branches a view draws only sometimes (an absent one is left
// out, as an `if` without `else` is in a view builder).
class Children {
 public:
  Children() = default;
  Children(std::initializer_list<std::optional<Node>> children);
  Children(std::vector<Node> children) : nodes_(std::move(children)) {}  // NOLINT: implicit on purpose

  std::vector<Node> take() && { return std::move(nodes_); }

 private:
  std::vector<Node> nodes_;
};

// `node` when `condition` holds, else nothing (see Children).
std::optional<Node> when(bool condition, Node node);

Node vstack(Children children);
Node vstack(HorizontalAlignment alignment, Children children);
Node vstack(HorizontalAlignment alignment, std::optional<double> spacing, Children children);

Node hstack(Children children);
Node hstack(VerticalAlignment alignment, Children children);
Node hstack(VerticalAlignment alignment, std::optional<double> spacing, Children children);

Node zstack(Children children);
Node zstack(Alignment alignment, Children children);

// Shown as given, never looked up (`Text(verbatim:)`, or a String variable).
Node text(std::string verbatim);
// A localisable text: `key` is what is looked up, `shown` what it reads as here
// (the key with its arguments interpolated: "%lld more" shows "3 more").
Node localizedText(std::string key, std::string shown);
Node localizedText(std::string key);
Node text(const platform::AttributedString& attributed);

Node image(std::string systemName);
Node circle();
Node capsule(RoundedCornerStyle style = RoundedCornerStyle::circular);
Node containerRelativeShape();
Node linearGradient(LinearGradient gradient);
Node color(Color color);
Node spacer(std::optional<double> minLength = std::nullopt);
Node link(std::string destination, Node label);
Node anyView(Node content);

}  // namespace quillan::views
