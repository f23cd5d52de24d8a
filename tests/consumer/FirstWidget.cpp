// Prints the view tree of the "On This Day" widget's current entry, read from
// the journal in the group container given as the argument, and draws it to
// PNG in memory: the extension and the host, used from outside.

#include <algorithm>
#include <iostream>

#include "bundle/TimelineWidgetBundle.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "render/Renderer.hpp"
#include "views/ViewTreeJson.hpp"

int main(int argc, char** argv) {
  using namespace quillan;
  if (argc != 2) {
    std::cerr << "usage: first_widget GROUP-CONTAINER\n";
    return 2;
  }
  platform::FileManager::setGroupContainerDirectory(argv[1]);
  const auto* widget = bundle::TimelineWidgetBundle::widget("OnThisDayWidget");
  if (widget == nullptr) {
    std::cerr << "first_widget: no OnThisDayWidget in the bundle\n";
    return 1;
  }
  const auto answer = widget->provider(widgets::TimelineRequest::timeline, {});
  if (answer.entryDates.empty()) {
    std::cerr << "first_widget: an empty timeline\n";
    return 1;
  }
  const auto now = platform::Clock::now();
  auto entry = answer.entryDates.front();
  for (const auto& date : answer.entryDates) entry = date <= now ? date : entry;

  render::RenderContext context;
  context.env.family = widget->supportedFamilies.front();
  const auto tree = widget->content(entry, context.env);
  const auto png = render::renderToPNGBytes(tree, context);
  if (png.size() < 8) {
    std::cerr << "first_widget: no PNG drawn\n";
    return 1;
  }
  std::cout << views::encodeViewTree(tree);
}
