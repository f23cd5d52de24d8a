#include "streak/StreakCircle.hpp"

#include <gtest/gtest.h>

#include "compose/DeepLinks.hpp"
#include "streak/StreakTodayCircle.hpp"
#include "support/ProcessEnvironment.hpp"
#include "StreakTree.hpp"

namespace quillan::streak {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using testing::discOf;
using testing::readCircle;

Environment environmentIn(ColorScheme scheme) {
  Environment environment;
  environment.colorScheme = scheme;
  environment.family = WidgetFamily::systemMedium;
  return environment;
}

template <typename M>
const M& modifierAt(const Node& node, std::size_t index) {
  return std::get<M>(node.modifiers.at(index).kind);
}

platform::Date at(const char* iso) { return *platform::ISO8601::parse(iso); }

Node pastCircle(ColorScheme scheme, const char* date, bool hasNotes) {
  const auto environment = environmentIn(scheme);
  return StreakCircle(environment, at(date), hasNotes).body(environment);
}

Node todayCircle(ColorScheme scheme, const char* date, bool hasNotes) {
  const auto environment = environmentIn(scheme);
  return StreakTodayCircle(environment, compose::addRecordURL(), at(date), hasNotes).body(environment);
}

struct LabelCase {
  const char* zone;
  const char* locale;
  const char* date;
  const char* link;
  const char* weekday;
  const char* day;
};

// The link's day is zero-padded and the label's is not; both are the local
// calendar day, which late in the evening west of UTC is not the UTC one.
constexpr LabelCase kLabels[] = {
    {"Europe/Berlin", "en_US", "2026-03-05T12:00:00+01:00", "widget-deeplink-addrecord://RecordDate/2026-03-05",
     "Thu", "5"},
    {"Europe/Berlin", "de_DE", "2026-11-16T00:00:00+01:00", "widget-deeplink-addrecord://RecordDate/2026-11-16",
     "Mo.", "16"},
    {"America/Los_Angeles", "en_US", "2026-03-01T23:30:00-08:00",
     "widget-deeplink-addrecord://RecordDate/2026-03-01", "Sun", "1"},
    {"America/Havana", "en_US", "2026-03-08T01:00:00-04:00", "widget-deeplink-addrecord://RecordDate/2026-03-08",
     "Sun", "8"},
};

TEST(StreakCircle, LinksToItsLocalDayAndShowsTheWeekdayAndUnpaddedDay) {
  for (const auto& c : kLabels) {
    ProcessEnvironment environment("2026-11-22T12:00:00+01:00", c.zone, c.locale);
    const auto drawn = readCircle(pastCircle(ColorScheme::light, c.date, false));
    EXPECT_EQ(drawn.link, c.link) << c.zone << " " << c.date;
    EXPECT_EQ(drawn.weekday, c.weekday) << c.zone << " " << c.date;
    EXPECT_EQ(drawn.dayOfMonth, c.day) << c.zone << " " << c.date;
  }
}

TEST(StreakTodayCircle, LinksToANewEntryWithoutADate) {
  ProcessEnvironment environment("2026-03-05T12:00:00+01:00", "Europe/Berlin");
  const auto drawn = readCircle(todayCircle(ColorScheme::light, "2026-03-05T12:00:00+01:00", true));
  EXPECT_EQ(drawn.link, "widget-deeplink://AddRecord");
  EXPECT_EQ(drawn.dayOfMonth, "5");
}

struct DiscSizes {
  double diameter;
  double weekdaySize;
  StrokeStyle ring;
  Font checkmark;
};

void expectUnwrittenDisc(const Node& circle, const DiscSizes& sizes) {
  const auto& layers = discOf(circle).children();
  ASSERT_EQ(layers.size(), 3u);
  EXPECT_EQ(modifierAt<modifiers::Fill>(layers[0], 0).style, ShapeStyle(Color{ColorName::red, 0.15}));
  EXPECT_EQ(modifierAt<modifiers::Frame>(layers[0], 1), (modifiers::Frame{sizes.diameter, sizes.diameter}));
  EXPECT_EQ(modifierAt<modifiers::Font>(layers[1], 0).font, Font::system(sizes.weekdaySize, Weight::medium));
  EXPECT_EQ(modifierAt<modifiers::ForegroundColor>(layers[1], 1).color, Color::red());
  EXPECT_EQ(modifierAt<modifiers::Frame>(layers[1], 2), (modifiers::Frame{sizes.diameter, sizes.diameter}));
  ASSERT_TRUE(std::holds_alternative<views::Circle>(layers[2].kind));
  const auto& ring = modifierAt<modifiers::StrokeBorder>(layers[2], 0);
  EXPECT_EQ(ring.style, ShapeStyle(Color::red()));
  EXPECT_EQ(ring.strokeStyle, sizes.ring);
  EXPECT_EQ(modifierAt<modifiers::Frame>(layers[2], 1), (modifiers::Frame{sizes.diameter, sizes.diameter}));
}

void expectWrittenDisc(const Node& circle, const DiscSizes& sizes, Color checkmarkColor) {
  const auto& layers = discOf(circle).children();
  ASSERT_EQ(layers.size(), 3u);
  EXPECT_EQ(modifierAt<modifiers::Fill>(layers[0], 0).style, ShapeStyle(Color::green()));
  EXPECT_EQ(modifierAt<modifiers::ForegroundColor>(layers[1], 1).color, Color::clear());
  EXPECT_EQ(std::get<views::Image>(layers[2].kind).systemName, "checkmark");
  EXPECT_EQ(modifierAt<modifiers::Font>(layers[2], 0).font, sizes.checkmark);
  EXPECT_EQ(modifierAt<modifiers::ForegroundColor>(layers[2], 1).color, checkmarkColor);
}

const DiscSizes kPast{47.5, 12, {3, LineCap::round, LineJoin::miter, 10, {5}, 2}, Font::body().weight(Weight::bold)};
const DiscSizes kToday{62.5, 13, {3.5, LineCap::round, LineJoin::miter, 10, {5.5}, 2},
                       Font::title2().weight(Weight::bold)};

TEST(StreakCircles, AnUnwrittenDayIsAPaleRedDiscWithItsWeekdayInADashedRing) {
  ProcessEnvironment environment("2026-03-05T12:00:00+01:00", "Europe/Berlin");
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
    expectUnwrittenDisc(pastCircle(scheme, "2026-03-04T12:00:00+01:00", false), kPast);
    expectUnwrittenDisc(todayCircle(scheme, "2026-03-05T12:00:00+01:00", false), kToday);
  }
}

TEST(StreakCircles, AWrittenDayIsAGreenDiscWithACheckmarkInTheBackgroundGrey) {
  ProcessEnvironment environment("2026-03-05T12:00:00+01:00", "Europe/Berlin");
  expectWrittenDisc(pastCircle(ColorScheme::light, "2026-03-04T12:00:00+01:00", true), kPast, Color::white());
  expectWrittenDisc(pastCircle(ColorScheme::dark, "2026-03-04T12:00:00+01:00", true), kPast, Color::systemGray6());
  expectWrittenDisc(todayCircle(ColorScheme::light, "2026-03-05T12:00:00+01:00", true), kToday, Color::white());
  expectWrittenDisc(todayCircle(ColorScheme::dark, "2026-03-05T12:00:00+01:00", true), kToday,
                    Color::systemGray6());
}

TEST(StreakCircles, TodaysDiscIsPaddedOnItsSidesAsWellAsBelow) {
  ProcessEnvironment environment("2026-03-05T12:00:00+01:00", "Europe/Berlin");
  const auto past = pastCircle(ColorScheme::light, "2026-03-04T12:00:00+01:00", false);
  const auto today = todayCircle(ColorScheme::light, "2026-03-05T12:00:00+01:00", false);
  EXPECT_EQ(discOf(past).modifiers, (std::vector<Modifier>{{modifiers::Padding{EdgeSet::bottom(), 0.5}}}));
  EXPECT_EQ(discOf(today).modifiers, (std::vector<Modifier>{{modifiers::Padding{EdgeSet::bottom(), 0.5}},
                                                            {modifiers::Padding{EdgeSet::horizontal(), 2.5}}}));
  for (const auto* circle : {&past, &today}) {
    const auto& dayOfMonth = circle->children().at(0).children().at(0).children().at(1);
    EXPECT_EQ(dayOfMonth.modifiers, (std::vector<Modifier>{{modifiers::Font{Font::system(13, Weight::semibold)}},
                                                           {modifiers::ForegroundColor{Color::secondary()}}}));
  }
}

}  // namespace
}  // namespace quillan::streak
