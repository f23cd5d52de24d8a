#pragma once

#include <string_view>

#include "widgets/WidgetConfiguration.hpp"

namespace quillan::streak {

// "Keep it going": the streak widget, medium family only.
struct StreakWidget {
  static constexpr std::string_view kind = "StreakWidget";

  widgets::WidgetConfiguration body() const;
};

}  // namespace quillan::streak
