#include "memories/NoMemoriesWidgetText.hpp"

#include "views/Builders.hpp"

namespace quillan::memories {

using namespace views;

NoMemoriesWidgetText::NoMemoriesWidgetText(const Environment& environment) : colorScheme(environment.colorScheme) {}

Node NoMemoriesWidgetText::body(const Environment&) const {
  return hstack(
      VerticalAlignment::center,
      {
          localizedText("No memories from previous years").font(Font::system(14)).foregroundColor(Color::gray()),
      });
}

}  // namespace quillan::memories
