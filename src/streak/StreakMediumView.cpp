#include "streak/StreakMediumView.hpp"

#include <utility>

#include "compose/DeepLinks.hpp"
#include "platform/Clock.hpp"
#include "streak/NotePresence.hpp"
#include "streak/StreakCircle.hpp"
#include "streak/StreakDays.hpp"
#include "streak/StreakTodayCircle.hpp"
#include "views/Builders.hpp"
#include "views/SchemeColors.hpp"

namespace quillan::streak {
namespace {

using namespace views;

// One fetch serves the five circles: they all ask about the same journal in
// the same instant, so the answers are those of a fetch per circle. Each past
// day's moment is taken once, so a circle's label and tick never straddle a
// midnight that passes while the row is built.
std::vector<Node> dayCircles(const Environment& environment, const std::vector<std::int64_t>& pastDateRange) {
  std::vector<platform::Date> moments;
  for (const auto offset : pastDateRange) moments.push_back(dayMoment(offset));
  const auto now = platform::Clock::now();
  moments.push_back(now);
  const auto notes = notesAround(moments);

  std::vector<Node> circles;
  circles.reserve(moments.size());
  for (std::size_t i = 0; i < pastDateRange.size(); ++i) {
    circles.push_back(StreakCircle(environment, moments[i], hasNotes(notes, moments[i])).body(environment));
  }
  circles.push_back(
      StreakTodayCircle(environment, compose::addRecordURL(), now, hasNotes(notes, now)).body(environment));
  return circles;
}

}  // namespace

StreakMediumView::StreakMediumView(const Environment& environment, std::vector<std::int64_t> pastDateRange)
    : colorScheme(environment.colorScheme), pastDateRange(std::move(pastDateRange)) {}

Node StreakMediumView::body(const Environment& environment) const {
  Node content = vstack({
      hstack({
          localizedText("Keep It Going")
              .font(Font::system(22, Weight::heavy))
              .foregroundColor(Color::primary())
              .padding(EdgeSet::leading(), 5),
          spacer(),
      }),
      hstack(VerticalAlignment::bottom, dayCircles(environment, pastDateRange)),
  });

  if (environment.platformVersion.atLeast(17, 0)) {
    return std::move(content)
        .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center,
                             color(widgetBackgroundColor(colorScheme)))
        .privacySensitive();
  }
  return std::move(content)
      .padding(EdgeSet::horizontal() | EdgeSet::top())
      .padding(EdgeSet::bottom(), 12.5)
      .background(color(widgetBackgroundColor(colorScheme)), Alignment::center, EdgeSet::all())
      .privacySensitive();
}

}  // namespace quillan::streak
