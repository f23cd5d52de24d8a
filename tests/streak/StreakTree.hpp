#pragma once

// Reading the streak row back out of a view tree, as a host would see it.

#include <string>
#include <variant>
#include <vector>

#include "views/Node.hpp"

namespace quillan::streak::testing {

// What one circle of the row shows.
struct DrawnCircle {
  std::string link;
  std::string weekday;
  std::string dayOfMonth;
  bool ticked = false;
};

// The row is the second child of the medium view's outer stack.
inline const views::Node& streakRow(const views::Node& mediumView) { return mediumView.children().at(1); }

// Link > HStack > VStack > [disc, day of month]; the disc is a ZStack of the
// filled circle, the weekday and the mark.
inline const views::Node& discOf(const views::Node& circle) {
  return circle.children().at(0).children().at(0).children().at(0);
}

inline bool isTicked(const views::Node& circle) {
  return std::holds_alternative<views::Image>(discOf(circle).children().at(2).kind);
}

inline DrawnCircle readCircle(const views::Node& circle) {
  const auto& label = circle.children().at(0).children().at(0);
  const auto& disc = label.children().at(0);
  return {std::get<views::Link>(circle.kind).destination, std::get<views::Text>(disc.children().at(1).kind).text,
          std::get<views::Text>(label.children().at(1).kind).text, isTicked(circle)};
}

inline std::vector<DrawnCircle> readRow(const views::Node& mediumView) {
  std::vector<DrawnCircle> circles;
  for (const auto& circle : streakRow(mediumView).children()) circles.push_back(readCircle(circle));
  return circles;
}

}  // namespace quillan::streak::testing
