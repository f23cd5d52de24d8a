#include "views/Builders.hpp"

#include <utility>

namespace quillan::views {

Children::Children(std::initializer_list<std::optional<Node>> children) {
  nodes_.reserve(children.size());
  for (const auto& child : children) {
    if (child) nodes_.push_back(*child);
  }
}

std::optional<Node> when(bool condition, Node node) {
  if (!condition) return std::nullopt;
  return std::optional<Node>(std::move(node));
}

Node vstack(Children children) { return vstack(HorizontalAlignment::center, std::nullopt, std::move(children)); }
Node vstack(HorizontalAlignment alignment, Children children) {
  return vstack(alignment, std::nullopt, std::move(children));
}
Node vstack(HorizontalAlignment alignment, std::optional<double> spacing, Children children) {
  return Node{VStack{alignment, spacing, std::move(children).take()}};
}

Node hstack(Children children) { return hstack(VerticalAlignment::center, std::nullopt, std::move(children)); }
Node hstack(VerticalAlignment alignment, Children children) {
  return hstack(alignment, std::nullopt, std::move(children));
}
Node hstack(VerticalAlignment alignment, std::optional<double> spacing, Children children) {
  return Node{HStack{alignment, spacing, std::move(children).take()}};
}

Node zstack(Children children) { return zstack(Alignment::center, std::move(children)); }
Node zstack(Alignment alignment, Children children) { return Node{ZStack{alignment, std::move(children).take()}}; }

Node text(std::string verbatim) { return Node{Text{std::move(verbatim), std::nullopt, {}}}; }

Node localizedText(std::string key, std::string shown) { return Node{Text{std::move(shown), std::move(key), {}}}; }

Node localizedText(std::string key) {
  std::string shown = key;
  return localizedText(std::move(key), std::move(shown));
}

Node text(const platform::AttributedString& attributed) {
  std::string shown;
  for (const auto& run : attributed.runs()) shown += run.text;
  return Node{Text{std::move(shown), std::nullopt, attributed.runs()}};
}

Node image(std::string systemName) { return Node{Image{std::move(systemName)}}; }
Node circle() { return Node{Circle{}}; }
Node capsule(RoundedCornerStyle style) { return Node{Capsule{style}}; }
Node containerRelativeShape() { return Node{ContainerRelativeShape{}}; }
Node linearGradient(LinearGradient gradient) { return Node{std::move(gradient)}; }
Node color(Color color) { return Node{color}; }
Node spacer(std::optional<double> minLength) { return Node{Spacer{minLength}}; }
Node link(std::string destination, Node label) { return Node{Link{std::move(destination), {std::move(label)}}}; }
Node anyView(Node content) { return Node{AnyView{{std::move(content)}}}; }

}  // namespace quillan::views
