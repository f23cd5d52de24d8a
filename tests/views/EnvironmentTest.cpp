#include <gtest/gtest.h>

#include <functional>

#include "views/Environment.hpp"

namespace quillan::views {
namespace {

template <typename E>
void expectEveryNameParses(E (*parse)(std::string_view)) {
  for (const auto& row : enumNames(E{})) EXPECT_EQ(parse(row.name), row.value) << row.name;
}

std::string parseError(const std::function<void()>& parse) {
  try {
    parse();
  } catch (const EnvironmentParseError& error) {
    return error.what();
  }
  return "(accepted)";
}

TEST(Environment, ParsesEveryNameAndRefusesOthersSayingWhatIsAccepted) {
  expectEveryNameParses(parseColorScheme);
  expectEveryNameParses(parseRenderingMode);
  expectEveryNameParses(parseWidgetFamily);
  expectEveryNameParses(parseLayoutDirection);
  expectEveryNameParses(parseDynamicTypeSize);
  const std::pair<std::function<void()>, std::string> refusals[] = {
      {[] { parseColorScheme("Dark"); }, "invalid color scheme \"Dark\" (expected light or dark)"},
      {[] { parseColorScheme(""); }, "invalid color scheme \"\" (expected light or dark)"},
      {[] { parseRenderingMode("full-color"); },
       "invalid rendering mode \"full-color\" (expected fullColor, accented or vibrant)"},
      {[] { parseWidgetFamily("systemLarge"); },
       "invalid widget family \"systemLarge\" (expected systemSmall, systemMedium or accessoryCircular)"},
      {[] { parsePlatformVersion("seventeen"); },
       "invalid platform version \"seventeen\" (expected MAJOR.MINOR, e.g. 17.0)"},
  };
  for (const auto& [parse, message] : refusals) EXPECT_EQ(parseError(parse), message);
}

TEST(PlatformVersion, ParsesDigitsWithOneOptionalDotAndComparesNumerically) {
  EXPECT_EQ(parsePlatformVersion("16.4"), (PlatformVersion{16, 4}));
  EXPECT_EQ(parsePlatformVersion("18"), (PlatformVersion{18, 0}));
  EXPECT_EQ(parsePlatformVersion("17.10").toString(), "17.10");
  for (const char* bad : {"", ".", "17.", ".5", "17.0.1", "x", "17x", "-17", "+17", "17.-1", " 17", "17.0 ", "99999"}) {
    EXPECT_THROW(parsePlatformVersion(bad), EnvironmentParseError) << '"' << bad << '"';
  }
  EXPECT_TRUE(parsePlatformVersion("17.0").atLeast(17));
  EXPECT_FALSE(parsePlatformVersion("16.9").atLeast(17));
  EXPECT_FALSE(parsePlatformVersion("9.0").atLeast(17));
  EXPECT_TRUE((PlatformVersion{17, 10}) > (PlatformVersion{17, 9}));
}

}  // namespace
}  // namespace quillan::views
