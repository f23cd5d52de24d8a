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
#include "support/GoldenQuestion.hpp"
#include "support/JournalTest.hpp"
#include "support/ProcessEnvironment.hpp"
#include "views/GoldenTree.hpp"

namespace quillan::memories {
namespace {

using namespace views;
using quillan::testing::ProcessEnvironment;
using views::testing::expectGoldenTree;

// The on-this-day widget when small, the one with the compose button when medium.
Node draw(WidgetFamily family = WidgetFamily::systemSmall, ColorScheme scheme = ColorScheme::light,
          PlatformVersion version = {17, 0}) {
  const Environment environment{.colorScheme = scheme, .platformVersion = version, .family = family};
  if (family == WidgetFamily::systemMedium)
    return OTDComposeWidgetEntryView({platform::Clock::now()}).body(environment);
  return OnThisDayWidgetEntryView({platform::Clock::now()}, compose::onThisDayURL()).body(environment);
}

// The memory panel's VStack, inside the small view's AnyView.
const Node& smallPanel(const Node& small) { return small.children().at(0); }

// The panel's children: header row, title, row or empty state, pill row.
const Node& headerText(const Node& panel) { return panel.children().at(0).children().at(0).children().at(0); }
const Node& rowOrEmpty(const Node& panel) { return panel.children().at(2); }
const Node& yearText(const Node& panel) { return rowOrEmpty(panel).children().at(0).children().at(0); }
const Node& noteTextNode(const Node& panel) { return rowOrEmpty(panel).children().at(0).children().at(1); }

const Text& textOf(const Node& node) { return std::get<Text>(node.kind); }

class MemoryViews : public quillan::testing::JournalTest {
 protected:
  void SetUp() override {
    JournalTest::SetUp();
    platform::RandomSource::seed(7);
  }
  void TearDown() override {
    platform::RandomSource::useSystem();
    platform::ExtensionLog::setSink({});
  }
};

platform::TextRun run(std::string text, bool bold = false) {
  return {std::move(text), bold, false, false, false, std::nullopt};
}

// A note's text is read as Markdown only at its start and kept whole; one that
// cannot be read is logged and drawn plain, an absent one drawn empty.
TEST_F(MemoryViews, NoteTextIsStyledWhereItCanBeAndKeptWhole) {
  ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC");
  std::vector<std::string> log;
  platform::ExtensionLog::setSink([&](std::string_view line) { log.emplace_back(line); });
  const std::string broken = "caf\xE9 **menu**";
  // Whole, these stars would make the "x" bold.
  const std::string stars(500'000, '*');
  const std::string tail = " day " + stars + "x" + stars;
  struct Case {
    const char* name;
    std::optional<std::string> note;
    std::vector<platform::TextRun> runs;
    std::vector<std::string> log;
  };
  const Case cases[] = {
      {"not UTF-8",
       broken,
       {run(broken)},
       {"Couldn't parse:  " + std::string(platform::kMarkdownParseErrorDescription)}},
      {"huge", "**Long**" + tail, {run("Long", true), run(tail)}, {}},
      {"absent", std::nullopt, {}, {}},
  };
  for (const auto& c : cases) {
    journal.clear();
    log.clear();
    journal.addNote(std::string("2025-11-16T09:00:00Z"), c.note);
    const auto panel = smallPanel(draw());
    std::string shown;
    for (const auto& expected : c.runs) shown += expected.text;
    EXPECT_EQ(textOf(noteTextNode(panel)).text, shown) << c.name;
    EXPECT_EQ(textOf(noteTextNode(panel)).runs, c.runs) << c.name;
    EXPECT_EQ(textOf(yearText(panel)).text, "2025") << c.name;
    EXPECT_EQ(log, c.log) << c.name;
  }
  EXPECT_EQ(noteText(std::nullopt).plainText(), "");
}

// Date labels use the locale's own month names and the calendar's own year.
TEST_F(MemoryViews, DateLabelsFollowLocaleAndCalendar) {
  journal.addNote("2025-11-16T09:00:00Z", "last year");
  quillan::testing::expectGoldenAnswers("memory_date_labels.txt", [](const std::string& locale) {
    ProcessEnvironment environment("2026-11-16T12:00:00Z", "UTC", locale);
    const auto panel = smallPanel(draw());
    return textOf(headerText(panel)).text + ", " + textOf(yearText(panel)).text;
  });
}

// Each family in both schemes, on and before platform 17 (which moved the
// background and margins into the container), with one, several and no
// memories; a note of today is no memory but greys the compose button.
TEST_F(MemoryViews, MatchTheGoldenTrees) {
  ProcessEnvironment environment("2026-11-16T18:00:00+01:00", "Europe/Berlin");
  quillan::testing::forEachCase("otd_trees.txt", [this](const std::vector<std::string>& cells) {
    journal.clear();
    platform::RandomSource::seed(7);
    for (std::size_t note = 4; note < cells.size(); ++note) {
      const auto space = cells[note].find(' ');
      journal.addNote(cells[note].substr(0, space), quillan::testing::unescaped(cells[note].substr(space + 1)));
    }
    const auto scheme = parseColorScheme(cells[2]);
    const auto version = parsePlatformVersion(cells[3]);
    expectGoldenTree(
        draw(cells[1] == "small" ? WidgetFamily::systemSmall : WidgetFamily::systemMedium, scheme, version), cells[0]);
  });
}

}  // namespace
}  // namespace quillan::memories
