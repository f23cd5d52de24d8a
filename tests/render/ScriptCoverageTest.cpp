#include <gtest/gtest.h>

#include <string>

#include "platform/DateFormatter.hpp"
#include "platform/Locale.hpp"
#include "render/PangoTextMeasurer.hpp"

namespace quillan::render {
namespace {

StyledText inFont(std::string text, FontDescription font = {}) {
  return {StyledRun{std::move(text), font, false, std::nullopt}};
}

// Every weekday and month name the locale writes, as the streak and the
// memories show them, in one text.
std::string calendarNames(const platform::Locale& locale) {
  platform::DateFormatter formatter;
  formatter.setLocale(locale);
  formatter.setDateFormat("EEEE EEEEE MMMM d");
  std::string names;
  const double day = 86400;
  const auto start = platform::Date::fromUnixSeconds(1704067200);  // 2024-01-01
  for (int i = 0; i < 7; ++i) names += formatter.string(start.addingTimeInterval(i * day)) + ' ';
  for (int month = 0; month < 12; ++month) names += formatter.string(start.addingTimeInterval(month * 31 * day)) + ' ';
  return names;
}

class ScriptCoverage : public ::testing::TestWithParam<std::pair<const char*, const char*>> {
 protected:
  void TearDown() override { platform::Locale::resetCurrent(); }
};

TEST_P(ScriptCoverage, DrawsEveryCharacterOfTheLocaleWithSomeFont) {
  const auto [identifier, sample] = GetParam();
  const auto locale = platform::Locale::named(identifier);
  ASSERT_TRUE(locale) << identifier;
  platform::Locale::setCurrent(*locale);
  const auto& text = PangoTextMeasurer::shared();
  const std::string names = calendarNames(*locale);
  for (const FontDescription& font :
       {FontDescription{}, FontDescription{28, FontWeight::bold}, FontDescription{11, FontWeight::ultraLight, true}}) {
    EXPECT_EQ(text.missingGlyphs(inFont(names, font)), 0u) << identifier << ": " << names;
    EXPECT_EQ(text.missingGlyphs(inFont(sample, font)), 0u) << identifier << ": " << sample;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Locales, ScriptCoverage,
    ::testing::Values(
        std::pair{"ja_JP", "今日の日記、書きましたか？ カタカナ"}, std::pair{"zh_TW", "今天寫日記了嗎？繁體中文"},
        std::pair{"ko_KR", "오늘 일기를 썼나요?"}, std::pair{"th_TH", "วันนี้คุณเขียนบันทึกแล้วหรือยัง"},
        std::pair{"hi_IN", "क्या आपने आज डायरी लिखी?"}, std::pair{"ar_EG", "هل كتبت في مذكراتك اليوم؟ ١٢٣"},
        std::pair{"he_IL", "האם כתבת ביומן היום?"}, std::pair{"ru_RU", "Вы сегодня писали в дневник?"},
        std::pair{"el_GR", "Γράψατε στο ημερολόγιό σας σήμερα;"},
        // Emoji sequences are drawn whole.
        std::pair{"en_US",
                  "Day \U0001F600 \U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466 "
                  "\U0001F44D\U0001F3FD \U0001F1EF\U0001F1F5 \u2764\uFE0F \U0001F3F3\uFE0F\u200D\U0001F308"}),
    [](const auto& info) { return std::string(info.param.first); });

TEST(ScriptCoverage, CountsCharactersNoFontHas) {
  // Unassigned code points have no glyph in any font.
  const auto& text = PangoTextMeasurer::shared();
  EXPECT_EQ(text.missingGlyphs(inFont("a\u0378b\U0003FFFD")), 2u);
  EXPECT_EQ(text.missingGlyphs(inFont("tab\tand\u200Bzero width")), 0u);
}

}  // namespace
}  // namespace quillan::render
