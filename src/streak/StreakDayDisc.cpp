#include "streak/StreakDayDisc.hpp"

#include <string>

#include "platform/DateFormatter.hpp"
#include "views/Builders.hpp"

namespace quillan::streak {
namespace {

using namespace views;

// A fresh formatter per text, in the locale and zone current at the build.
std::string formatted(platform::Date date, std::string pattern) {
  platform::DateFormatter formatter;
  formatter.setDateFormat(std::move(pattern));
  return formatter.string(date);
}

Node checkmark(const DiscMetrics& metrics, ColorScheme colorScheme) {
  return image("checkmark")
      .font(metrics.checkmarkFont)
      .foregroundColor(colorScheme == ColorScheme::dark ? Color::systemGray6() : Color::white());
}

Node dashedRing(const DiscMetrics& metrics) {
  const StrokeStyle dashes{.lineWidth = metrics.ringLineWidth,
                           .lineCap = LineCap::round,
                           .lineJoin = LineJoin::miter,
                           .miterLimit = 10,
                           .dash = {metrics.ringDash},
                           .dashPhase = 2};
  return circle().strokeBorder(Color::red(), dashes).frame(metrics.diameter, metrics.diameter);
}

}  // namespace

Node streakDayDisc(const DiscMetrics& metrics, ColorScheme colorScheme, platform::Date date, bool hasNotes) {
  const double size = metrics.diameter;
  return zstack({
      circle().fill(hasNotes ? Color::green() : Color::red().withOpacity(0.15)).frame(size, size),
      text(formatted(date, "EEE"))
          .font(Font::system(metrics.weekdayFontSize, Weight::medium))
          .foregroundColor(hasNotes ? Color::clear() : Color::red())
          .frame(size, size),
      hasNotes ? checkmark(metrics, colorScheme) : dashedRing(metrics),
  });
}

Node streakDayOfMonth(platform::Date date) {
  return text(formatted(date, "d")).font(Font::system(13, Weight::semibold)).foregroundColor(Color::secondary());
}

}  // namespace quillan::streak
