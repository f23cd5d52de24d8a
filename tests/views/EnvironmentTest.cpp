#include <gtest/gtest.h>

#include "views/Environment.hpp"

namespace quillan::views {
namespace {

TEST(Environment, DefaultsAreLightFullColorSeventeenSmall) {
  const Environment environment;
  EXPECT_EQ(environment.colorScheme, ColorScheme::light);
  EXPECT_EQ(environment.renderingMode, WidgetRenderingMode::fullColor);
  EXPECT_EQ(environment.platformVersion, (PlatformVersion{17, 0}));
  EXPECT_EQ(environment.family, WidgetFamily::systemSmall);
}

TEST(Environment, ParsesEveryName) {
  EXPECT_EQ(parseColorScheme("dark"), ColorScheme::dark);
  EXPECT_EQ(parseColorScheme("light"), ColorScheme::light);
  EXPECT_EQ(parseRenderingMode("vibrant"), WidgetRenderingMode::vibrant);
  EXPECT_EQ(parseRenderingMode("accented"), WidgetRenderingMode::accented);
  EXPECT_EQ(parseWidgetFamily("accessoryCircular"), WidgetFamily::accessoryCircular);
  EXPECT_EQ(parseWidgetFamily("systemMedium"), WidgetFamily::systemMedium);
}

TEST(Environment, RejectsBadNamesSayingWhatIsAccepted) {
  const auto message = [](auto parse, std::string_view text) {
    try {
      parse(text);
    } catch (const EnvironmentParseError& error) {
      return std::string(error.what());
    }
    return std::string("(accepted)");
  };
  EXPECT_EQ(message(parseColorScheme, "Dark"), "invalid color scheme \"Dark\" (expected light or dark)");
  EXPECT_EQ(message(parseColorScheme, ""), "invalid color scheme \"\" (expected light or dark)");
  EXPECT_EQ(message(parseRenderingMode, "full-color"),
            "invalid rendering mode \"full-color\" (expected fullColor, accented or vibrant)");
  EXPECT_EQ(message(parseWidgetFamily, "systemLarge"),
            "invalid widget family \"systemLarge\" (expected systemSmall, systemMedium or accessoryCircular)");
}

TEST(PlatformVersion, ParsesMajorAndOptionalMinor) {
  EXPECT_EQ(parsePlatformVersion("17.0"), (PlatformVersion{17, 0}));
  EXPECT_EQ(parsePlatformVersion("16.4"), (PlatformVersion{16, 4}));
  EXPECT_EQ(parsePlatformVersion("18"), (PlatformVersion{18, 0}));
  EXPECT_EQ(parsePlatformVersion("17.10").toString(), "17.10");
}

TEST(PlatformVersion, RejectsAnythingButDigitsAndOneDot) {
  for (const char* bad : {"", ".", "17.", ".5", "17.0.1", "x", "17x", "-17", "+17", "17.-1", " 17", "17.0 ", "99999"}) {
    EXPECT_THROW(parsePlatformVersion(bad), EnvironmentParseError) << '"' << bad << '"';
  }
  try {
    parsePlatformVersion("seventeen");
    FAIL();
  } catch (const EnvironmentParseError& error) {
    EXPECT_STREQ(error.what(), "invalid platform version \"seventeen\" (expected MAJOR.MINOR, e.g. 17.0)");
  }
}

TEST(PlatformVersion, ComparesNumericallyNotAsText) {
  EXPECT_TRUE(parsePlatformVersion("17.0").atLeast(17));
  EXPECT_TRUE(parsePlatformVersion("18.2").atLeast(17));
  EXPECT_FALSE(parsePlatformVersion("16.9").atLeast(17));
  EXPECT_FALSE(parsePlatformVersion("9.0").atLeast(17));
  EXPECT_TRUE((PlatformVersion{17, 10}) > (PlatformVersion{17, 9}));
}

}  // namespace
}  // namespace quillan::views
