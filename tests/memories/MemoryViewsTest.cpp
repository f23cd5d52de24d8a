#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "compose/DeepLinks.hpp"
#include "memories/NoteText.hpp"
#include "memories/OTDComposeMediumView.hpp"
#include "memories/OTDComposeWidgetEntryView.hpp"
#include "memories/OTDSmallView.hpp"
#include "memories/OnThisDayWidgetEntryView.hpp"
#include "platform/Clock.hpp"
#include "platform/ExtensionLog.hpp"
#include "platform/RandomSource.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"
#include "support/TestJournal.hpp"
#include "views/GoldenTree.hpp"

namespace quillan::memories {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using quillan::testing::TestJournal;
using views::testing::expectGoldenTree;

Environment environmentFor(ColorScheme scheme, PlatformVersion version, WidgetFamily family) {
  Environment environment;
  environment.colorScheme = scheme;
  environment.platformVersion = version;
  environment.family = family;
  return environment;
}

Node drawSmall(ColorScheme scheme = ColorScheme::light, PlatformVersion version = {17, 0}) {
  const auto environment = environmentFor(scheme, version, WidgetFamily::systemSmall);
  return OnThisDayWidgetEntryView(widgets::SimpleEntry{platform::Clock::now()}, compose::onThisDayURL())
      .body(environment);
}

Node drawMedium(ColorScheme scheme = ColorScheme::light, PlatformVersion version = {17, 0}) {
  const auto environment = environmentFor(scheme, version, WidgetFamily::systemMedium);
  return OTDComposeWidgetEntryView(widgets::OTDComposeEntry{platform::Clock::now()}).body(environment);
}

// The memory panel's VStack, inside the small view's AnyView.
const Node& smallPanel(const Node& small) { return small.children().at(0); }

// The panel's children: header row, title, row or empty state, pill row.
const Node& headerText(const Node& panel) { return panel.children().at(0).children().at(0).children().at(0); }
const Node& rowOrEmpty(const Node& panel) { return panel.children().at(2); }
const Node& yearText(const Node& panel) { return rowOrEmpty(panel).children().at(0).children().at(0); }
const Node& noteTextNode(const Node& panel) { return rowOrEmpty(panel).children().at(0).children().at(1); }

const Text& textOf(const Node& node) { return std::get<Text>(node.kind); }

class MemoryViews : public ::testing::Test {
 protected:
  void SetUp() override {
    journal.clear();
    platform::RandomSource::seed(7);
  }
  void TearDown() override {
    platform::RandomSource::useSystem();
    platform::ExtensionLog::setSink({});
  }
  TestJournal& journal = TestJournal::shared();
};

platform::TextRun run(std::string text, bool bold = false) {
  return {std::move(text), bold, false, false, false, std::nullopt};
}

TEST_F(MemoryViews, TextThatIsNotUtf8IsLoggedAndDrawnPlain) {
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  std::vector<std::string> log;
  platform::ExtensionLog::setSink([&](std::string_view line) { log.emplace_back(line); });
  const std::string broken = "caf\xE9 **menu**";
  journal.addNote("2025-11-16T09:00:00Z", broken);

  const auto panel = smallPanel(drawSmall());
  const auto& note = textOf(noteTextNode(panel));
  EXPECT_EQ(note.text, broken);
  EXPECT_EQ(note.runs, std::vector<platform::TextRun>{run(broken)});
  ASSERT_FALSE(log.empty());
  EXPECT_EQ(log.front(), "Couldn't parse:  " + std::string(platform::kMarkdownParseErrorDescription));
}

TEST_F(MemoryViews, AHugeNoteIsStyledOnlyAtItsStartAndKeptWhole) {
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  // Whole, these stars would make the "x" bold; read only at the start they
  // stay as typed, and nothing of the note is lost.
  const std::string stars(500'000, '*');
  const std::string tail = " day " + stars + "x" + stars;
  journal.addNote("2025-11-16T09:00:00Z", "**Long**" + tail);

  const auto panel = smallPanel(drawSmall());
  const auto& note = textOf(noteTextNode(panel));
  EXPECT_EQ(note.runs, (std::vector<platform::TextRun>{run("Long", true), run(tail)}));
}

TEST_F(MemoryViews, AbsentTextDrawsEmptyAndAbsentDateIsNotReached) {
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  std::vector<std::string> log;
  platform::ExtensionLog::setSink([&](std::string_view line) { log.emplace_back(line); });
  EXPECT_EQ(noteText(std::nullopt).plainText(), "");
  journal.addNote(std::string("2025-11-16T09:00:00Z"), std::nullopt);
  const auto panel = smallPanel(drawSmall());
  EXPECT_EQ(textOf(noteTextNode(panel)).text, "");
  EXPECT_EQ(textOf(yearText(panel)).text, "2025");
  EXPECT_TRUE(log.empty());
}

// Date labels use the locale's own month names and the calendar's own year.
TEST_F(MemoryViews, DateLabelsFollowLocaleAndCalendar) {
  journal.addNote("2025-11-16T09:00:00Z", "last year");
  quillan::testing::expectGoldenAnswers("memory_date_labels.txt", [](const std::string& locale) {
    ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC", locale);
    const auto panel = smallPanel(drawSmall());
    return textOf(headerText(panel)).text + ", " + textOf(yearText(panel)).text;
  });
}

struct GoldenCase {
  const char* file;
  WidgetFamily family;
  ColorScheme scheme;
  PlatformVersion version;
  std::vector<std::pair<const char*, const char*>> notes;
};

// Each family in both schemes, on and before platform 17 (which moved the
// background and margins into the container), with one, several and no
// memories; a note of today is no memory but greys the compose button.
const GoldenCase kGoldenTrees[] = {
    {"otd_small_light_17.json",
     WidgetFamily::systemSmall,
     ColorScheme::light,
     {17, 0},
     {{"2024-11-16T20:15:00+01:00", "Lantern walk with **everyone**,\n_cold_ but lovely\nthird line"},
      {"2025-11-16T07:45:00+01:00", "First snow. ~~Stayed in~~ went sledging"},
      {"2025-11-16T21:00:00+01:00", "Soup and `tea`"}}},
    {"otd_small_dark_16.json",
     WidgetFamily::systemSmall,
     ColorScheme::dark,
     {16, 4},
     {{"2024-11-16T20:15:00+01:00", "Lantern walk"}, {"2025-11-16T07:45:00+01:00", "First snow"}}},
    {"otd_medium_dark_16.json",
     WidgetFamily::systemMedium,
     ColorScheme::dark,
     {16, 0},
     {{"2023-11-16T12:00:00+01:00", "# Market day\nbought apples"},
      {"2026-11-16T08:00:00+01:00", "today: written, so the button is grey"}}},
    {"otd_small_light_16.json",
     WidgetFamily::systemSmall,
     ColorScheme::light,
     {16, 0},
     {{"2021-11-16T10:00:00+01:00", "A _quiet_ Sunday"}}},
    {"otd_small_dark_17.json",
     WidgetFamily::systemSmall,
     ColorScheme::dark,
     {17, 0},
     {{"2026-11-16T08:00:00+01:00", "today is no memory"}}},
    {"otd_medium_light_17.json",
     WidgetFamily::systemMedium,
     ColorScheme::light,
     {17, 0},
     {{"2026-11-16T08:00:00+01:00", "today is no memory"}}},
    {"otd_medium_light_16.json",
     WidgetFamily::systemMedium,
     ColorScheme::light,
     {16, 0},
     {{"2022-11-16T09:00:00+01:00", "Rain"}, {"2025-11-16T09:00:00+01:00", "Sun"}}},
    {"otd_medium_dark_17.json",
     WidgetFamily::systemMedium,
     ColorScheme::dark,
     {17, 0},
     {{"2020-11-16T09:00:00+01:00", "Moved in"},
      {"2024-11-16T09:00:00+01:00", "**Five** years"},
      {"2024-11-16T19:00:00+01:00", "Cake"}}},
};

TEST_F(MemoryViews, MatchTheGoldenTrees) {
  ProcessEnvironment environment("2026-11-16T18:00:00+01:00", "Europe/Berlin");
  for (const auto& c : kGoldenTrees) {
    SCOPED_TRACE(c.file);
    journal.clear();
    platform::RandomSource::seed(7);
    for (const auto& [date, info] : c.notes) journal.addNote(date, info);
    expectGoldenTree(c.family == WidgetFamily::systemSmall ? drawSmall(c.scheme, c.version)
                                                           : drawMedium(c.scheme, c.version),
                     c.file);
  }
}

}  // namespace
}  // namespace quillan::memories
