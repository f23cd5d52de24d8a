#pragma once

// Reading the streak row back out of a view tree, as a host would see it.

#include <string>
#include <variant>

#include "views/Node.hpp"

namespace quillan::streak::testing {

// What one circle of the row shows.
struct DrawnCircle {
  std::string link;
  std::string weekday;
  std::string dayOfMonth;
  bool ticked = false;
};

// Link > HStack > VStack > [disc, day of month]; the disc is a ZStack of the
// filled circle, the weekday and the mark.
inline DrawnCircle readCircle(const views::Node& circle) {
  const auto& label = circle.children().at(0).children().at(0);
  const auto& disc = label.children().at(0);
  return {std::get<views::Link>(circle.kind).destination, std::get<views::Text>(disc.children().at(1).kind).text,
          std::get<views::Text>(label.children().at(1).kind).text,
          std::holds_alternative<views::Image>(disc.children().at(2).kind)};
}

// The row's circles, oldest first, x where ticked. The row is the second child
// of the medium view's outer stack.
inline std::string tickMarks(const views::Node& mediumView) {
  std::string marks;
  for (const auto& circle : mediumView.children().at(1).children()) marks += readCircle(circle).ticked ? 'x' : '-';
  return marks;
}

}  // namespace quillan::streak::testing
