#include <gtest/gtest.h>

#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"
#include "views/Environment.hpp"

namespace quillan::views {
namespace {

template <typename E>
void expectEveryNameParses(E (*parse)(std::string_view)) {
  for (const auto& row : enumNames(E{})) EXPECT_EQ(parse(row.name), row.value) << row.name;
}

// KIND | TEXT => what the environment makes of a text, or the one-line refusal
// saying what is accepted.
std::string parsed(const std::string& question) {
  const auto split = quillan::testing::cells(question);
  try {
    if (split[0] == "color scheme") parseColorScheme(split[1]);
    else if (split[0] == "rendering mode") parseRenderingMode(split[1]);
    else if (split[0] == "widget family") parseWidgetFamily(split[1]);
    else {
      const auto version = parsePlatformVersion(split[1]);
      return version.toString() + (version.atLeast(17) ? ", 17 or later" : ", before 17");
    }
    return std::string("accepted");
  } catch (const EnvironmentParseError& error) {
    return std::string(error.what());
  }
}

TEST(Environment, ParsesEveryNameAndRefusesOthersSayingWhatIsAccepted) {
  expectEveryNameParses(parseColorScheme);
  expectEveryNameParses(parseRenderingMode);
  expectEveryNameParses(parseWidgetFamily);
  expectEveryNameParses(parseLayoutDirection);
  expectEveryNameParses(parseDynamicTypeSize);
  quillan::testing::expectGoldenAnswers("environment_values.txt", parsed);
  EXPECT_TRUE((PlatformVersion{17, 10}) > (PlatformVersion{17, 9}));
}

}  // namespace
}  // namespace quillan::views
