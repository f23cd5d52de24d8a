#include "views/LinearGradient.hpp"

namespace quillan::views {

LinearGradient LinearGradient::evenlySpaced(const std::vector<Color>& colors, UnitPoint startPoint,
                                            UnitPoint endPoint) {
  LinearGradient gradient{{}, startPoint, endPoint};
  const auto count = colors.size();
  for (std::size_t i = 0; i < count; ++i) {
    const double location = count == 1 ? 0.0 : static_cast<double>(i) / static_cast<double>(count - 1);
    gradient.stops.push_back({colors[i], location});
  }
  return gradient;
}

}  // namespace quillan::views
