#include "memories/OTDSmallView.hpp"

#include "memories/DateHeaderRow.hpp"
#include "memories/MemoryPanel.hpp"
#include "memories/MemorySnapshot.hpp"
#include "views/Builders.hpp"
#include "views/SchemeColors.hpp"

namespace quillan::memories {

using namespace views;

OTDSmallView::OTDSmallView(const Environment& environment) : colorScheme(environment.colorScheme) {}

Node OTDSmallView::body(const Environment& environment) const {
  // One read of the journal serves every question the panel asks of it.
  const auto memories = MemorySnapshot::take();
  Node content = vstack(HorizontalAlignment::leading, {
                                                          dateHeaderRow(memories.headerDate()),
                                                          localizedText("On This Day")
                                                              .font(Font::system(19))
                                                              .fontWeight(Weight::heavy)
                                                              .foregroundColor(Color::primary()),
                                                          memoryRowOrEmptyState(environment, memories),
                                                          moreMemoriesPill(environment, memories),
                                                      });

  const Color background = widgetBackgroundColor(colorScheme);
  // From 17.0 the widget container supplies the margins and draws the
  // background; before, the view insets itself and paints under the safe areas.
  Node erased = environment.platformVersion.atLeast(17, 0)
                    ? anyView(std::move(content).containerBackground(ContainerBackgroundPlacement::widget,
                                                                     Alignment::center, color(background)))
                    : anyView(std::move(content)
                                  .padding(EdgeSet::horizontal())
                                  .padding(EdgeSet::top())
                                  .padding(EdgeSet::bottom(), 12.5)
                                  .background(color(background), Alignment::center, EdgeSet::all()));
  return std::move(erased).privacySensitive(true);
}

}  // namespace quillan::memories
