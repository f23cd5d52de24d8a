#include "streak/StreakWidget.hpp"

#include "streak/StreakProvider.hpp"
#include "streak/StreakWidgetWidgetEntryView.hpp"

namespace quillan::streak {

widgets::WidgetConfiguration StreakWidget::body() const {
  auto configuration = widgets::staticConfiguration<StreakProvider>(std::string(kind), [](StreakEntry entry) {
    return StreakWidgetWidgetEntryView(entry);
  });
  configuration.displayName = "Keep it going";
  configuration.description = "Make journaling a habit. Write whatever's on your mind every day.";
  configuration.supportedFamilies = {views::WidgetFamily::systemMedium};
  return configuration;
}

}  // namespace quillan::streak
