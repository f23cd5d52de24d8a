#include "compose/ComposeButtonSmallView.hpp"

#include "compose/TodayCheck.hpp"
#include "compose/WritingPrompts.hpp"
#include "views/Builders.hpp"

namespace quillan::compose {
namespace {

using namespace views;

// Grey once something was written today, bright orange until then; full
// strength at the bottom-leading corner fading to 0.75 at the top-trailing one.
LinearGradient composeGradient(bool writtenToday) {
  const Color base = writtenToday ? Color::gray() : Color::orange();
  return LinearGradient::evenlySpaced({base.withOpacity(1.0), base.withOpacity(0.75)}, UnitPoint::bottomLeading(),
                                      UnitPoint::topTrailing());
}

}  // namespace

ComposeButtonSmallView::ComposeButtonSmallView(const Environment& environment, std::vector<std::string> texts,
                                               bool isSeperateWidget, std::optional<std::ptrdiff_t> knownTodayNoteCount)
    : colorScheme(environment.colorScheme),
      widgetRenderingMode(environment.renderingMode),
      texts(std::move(texts)),
      isSeperateWidget(isSeperateWidget),
      knownTodayNoteCount(knownTodayNoteCount) {}

Node ComposeButtonSmallView::body(const Environment& environment) const {
  const bool sep = isSeperateWidget;
  const bool vibrant = widgetRenderingMode == WidgetRenderingMode::vibrant;
  const bool writtenToday = (knownTodayNoteCount ? *knownTodayNoteCount : todayNoteCount()) != 0;
  // The larger image scale goes with the smaller text style on the stand-alone
  // tile, and the other way round when embedded: deliberate.
  const Font iconFont = sep ? Font::title3().weight(Weight::semibold) : Font::title().weight(Weight::semibold);

  Node content = vstack(HorizontalAlignment::leading,
                        {
                            text(pickPrompt(texts))
                                .font(Font::system(sep ? 18 : 15))
                                .fontWeight(Weight::heavy)
                                .padding(EdgeSet::trailing(), 2.5),
                            spacer(0),
                            hstack(VerticalAlignment::center,
                                   {
                                       when(!vibrant, spacer(0)),
                                       image("square.and.pencil")
                                           .imageScale(sep ? ImageScale::large : ImageScale::small)
                                           .font(iconFont)
                                           .offset(0.75, -0.75)
                                           .buttonStyle(ButtonStyle::plain),
                                       when(vibrant, spacer(0)),
                                   }),
                        })
                     .foregroundColor(Color::white());

  if (environment.platformVersion.atLeast(17, 0)) {
    Node background = sep ? color(Color::clear()) : containerRelativeShape().fill(composeGradient(writtenToday));
    return anyView(std::move(content)
                       .padding(EdgeSet::all(), sep ? 0 : 12.5)
                       .background(std::move(background), Alignment::center)
                       .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center,
                                            linearGradient(composeGradient(writtenToday))));
  }
  return anyView(std::move(content)
                     .padding(EdgeSet::all(), sep ? 15 : 12.5)
                     .background(containerRelativeShape().fill(composeGradient(writtenToday)), Alignment::center));
}

}  // namespace quillan::compose
