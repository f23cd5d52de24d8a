#include "memories/OTDComposeMediumView.hpp"

#include <string>
#include <vector>

#include "compose/ComposeButtonSmallView.hpp"
#include "compose/DeepLinks.hpp"
#include "memories/DateHeaderRow.hpp"
#include "memories/MemoryPanel.hpp"
#include "memories/MemorySnapshot.hpp"
#include "views/Builders.hpp"
#include "views/SchemeColors.hpp"

namespace quillan::memories {
namespace {

using namespace views;

// This widget's own copy of the prompts. The stand-alone compose widget keeps
// another, so that either list can change without the other.
const std::vector<std::string>& writingPrompts() {
  static const std::vector<std::string> prompts = {
      "What happened today?",        "How's your day going?", "What's on your mind?",
      "This is your personal space", "Write about your day",
  };
  return prompts;
}

}  // namespace

OTDComposeMediumView::OTDComposeMediumView(const Environment& environment)
    : colorScheme(environment.colorScheme),
      deeplinkOTDURL(compose::onThisDayURL()),
      deeplinkAddRecordURL(compose::addRecordURL()) {}

Node OTDComposeMediumView::body(const Environment& environment) const {
  // One read of the journal serves every question the panel asks of it.
  const auto memories = MemorySnapshot::take();
  Node content =
      hstack(VerticalAlignment::center,
             {
                 link(deeplinkOTDURL.absoluteString(), vstack(HorizontalAlignment::leading,
                                                              {
                                                                  dateHeaderRow(memories.headerDate()),
                                                                  localizedText("On This Day")
                                                                      .font(Font::system(20))
                                                                      .fontWeight(Weight::heavy)
                                                                      .foregroundColor(Color::primary()),
                                                                  memoryRowOrEmptyState(environment, memories),
                                                                  moreMemoriesPill(environment, memories),
                                                              })
                                                           .padding(EdgeSet::top(), 2.5)),
                 // The paddings belong to the labels, so each tap area takes in its inset.
                 link(deeplinkAddRecordURL.absoluteString(),
                      compose::ComposeButtonSmallView(environment, writingPrompts(), /*isSeperateWidget=*/false,
                                                      memories.todayNoteCount())
                          .body(environment)
                          .padding(EdgeSet::leading(), 10)),
             });

  const Color background = widgetBackgroundColor(colorScheme);
  Node erased = environment.platformVersion.atLeast(17, 0)
                    ? anyView(std::move(content).containerBackground(ContainerBackgroundPlacement::widget,
                                                                     Alignment::center, color(background)))
                    : anyView(std::move(content)
                                  .padding(EdgeSet::leading(), 15)
                                  .padding(EdgeSet::trailing(), 12.5)
                                  .padding(EdgeSet::top(), 12.5)
                                  .padding(EdgeSet::bottom(), 12.5)
                                  .background(color(background), Alignment::center, EdgeSet::all()));
  return std::move(erased).privacySensitive(true);
}

}  // namespace quillan::memories
