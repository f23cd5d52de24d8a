#pragma once

#include "platform/Date.hpp"
#include "views/Environment.hpp"
#include "views/Font.hpp"
#include "views/Node.hpp"

namespace quillan::streak {

// The sizes in which a past day's circle and today's larger one differ.
struct DiscMetrics {
  double diameter;
  double weekdayFontSize;
  views::Font checkmarkFont;
  double ringLineWidth;
  double ringDash;
};

inline const DiscMetrics kPastDayDisc{47.5, 12, views::Font::body().weight(views::Weight::bold), 3, 5};
inline const DiscMetrics kTodayDisc{62.5, 13, views::Font::title2().weight(views::Weight::bold), 3.5, 5.5};

// The day disc, back to front: a green (written) or pale red circle, the red
// weekday (hidden once written) and a checkmark or a dashed red ring.
views::Node streakDayDisc(const DiscMetrics& metrics, views::ColorScheme colorScheme, platform::Date date,
                          bool hasNotes);

// The day of month under the disc, without a leading zero.
views::Node streakDayOfMonth(platform::Date date);

}  // namespace quillan::streak
