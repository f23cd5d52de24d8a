#pragma once

#include "views/Builders.hpp"

namespace quillan::render::testing {

using namespace views;

// A streak row like the medium streak widget draws: four past circles and a
// larger one for today, each a link.
inline Node dayCircle(bool written, double side, std::string url, std::string weekday, std::string day) {
  Node mark = written ? image("checkmark").font(Font::body().weight(Weight::bold)).foregroundColor(Color::white())
                      : circle()
                            .strokeBorder(Color::red(), StrokeStyle{3, LineCap::round, LineJoin::miter, 10, {5}, 2})
                            .frame(side, side);
  Node disc = zstack({circle().fill(written ? Color::green() : Color::red().withOpacity(0.15)).frame(side, side),
                      text(weekday)
                          .font(Font::system(12, Weight::medium))
                          .foregroundColor(written ? Color::clear() : Color::red())
                          .frame(side, side),
                      mark});
  return link(
      std::move(url),
      hstack({vstack(
          {disc.padding(Edge::bottom, 0.5),
           text(day).font(Font::system(13, Weight::semibold)).foregroundStyle(HierarchicalShapeStyle::secondary)})}));
}

inline Node streakMedium() {
  return vstack({
                    hstack({localizedText("Keep It Going")
                                .font(Font::system(22, Weight::heavy))
                                .foregroundColor(Color::primary())
                                .padding(Edge::leading, 5),
                            spacer()}),
                    hstack(VerticalAlignment::bottom,
                           {
                               dayCircle(true, 47.5, "widget-deeplink-addrecord://RecordDate/2024-05-13", "Mon", "13"),
                               dayCircle(false, 47.5, "widget-deeplink-addrecord://RecordDate/2024-05-14", "Tue", "14"),
                               dayCircle(true, 47.5, "widget-deeplink-addrecord://RecordDate/2024-05-15", "Wed", "15"),
                               dayCircle(false, 47.5, "widget-deeplink-addrecord://RecordDate/2024-05-16", "Thu", "16"),
                               dayCircle(false, 62.5, "widget-deeplink://AddRecord", "Fri", "17"),
                           }),
                })
      .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center, color(Color::white()))
      .privacySensitive();
}

// The memory panel beside the compose button, two links.
inline Node memoriesAndCompose(
    std::string_view noteMarkdown = "A **long** walk by the _river_ with the dog, then tea") {
  Node panel =
      vstack(HorizontalAlignment::leading,
             {
                 hstack({vstack({text("May 17")
                                     .font(Font::system(18, Weight::heavy))
                                     .foregroundColor(Color::red())
                                     .offset(0, 2.5)}),
                         spacer(0)}),
                 localizedText("On This Day").font(Font::system(20, Weight::heavy)).foregroundColor(Color::primary()),
                 vstack(HorizontalAlignment::leading,
                        {
                            hstack({text("2021").font(Font::system(12)).foregroundColor(Color::systemGray()),
                                    text(platform::AttributedString::fromInlineMarkdown(noteMarkdown))
                                        .font(Font::system(15))
                                        .lineLimit(2)}),
                        })
                     .foregroundColor(Color::primary()),
                 hstack({spacer(2.5),
                         localizedText("%lld more", "3 more")
                             .font(Font::system(13))
                             .foregroundColor(Color::systemGray())
                             .padding(EdgeSet::horizontal(), 5)
                             .background(capsule(RoundedCornerStyle::continuous).fill(Color::gray().withOpacity(0.1))),
                         spacer(2.5)}),
             })
          .padding(Edge::top, 2.5);
  const auto gradient = LinearGradient::evenlySpaced({Color::orange(), Color::orange().withOpacity(0.75)},
                                                     UnitPoint::bottomLeading(), UnitPoint::topTrailing());
  Node compose = vstack(HorizontalAlignment::leading,
                        {
                            text("What made you smile today?")
                                .font(Font::system(15))
                                .fontWeight(Weight::heavy)
                                .padding(Edge::trailing, 2.5),
                            spacer(0),
                            hstack({spacer(0), image("square.and.pencil")
                                                   .imageScale(ImageScale::small)
                                                   .font(Font::title().weight(Weight::semibold))
                                                   .offset(0.75, -0.75)}),
                        })
                     .foregroundColor(Color::white())
                     .padding(12.5)
                     .background(containerRelativeShape().fill(gradient));
  return hstack({link("widget-deeplink://OnThisDay", panel),
                 link("widget-deeplink://AddRecord", compose).padding(Edge::leading, 10)})
      .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center, color(Color::white()))
      .privacySensitive();
}

inline Node lockScreenCompose() {
  return image("square.and.pencil.circle.fill")
      .resizable()
      .foregroundStyle(HierarchicalShapeStyle::primary, HierarchicalShapeStyle::secondary)
      .imageScale(ImageScale::large)
      .font(Font::title())
      .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center, color(Color::clear()))
      .widgetURL("widget-deeplink://AddRecord");
}

}  // namespace quillan::render::testing
