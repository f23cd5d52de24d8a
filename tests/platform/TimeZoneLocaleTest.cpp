#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

// Sets environment variables for one test and puts the old values back.
class ScopedEnvironment {
 public:
  ~ScopedEnvironment() {
    for (const auto& [name, value] : saved_) {
      if (value) setenv(name.c_str(), value->c_str(), 1);
      else unsetenv(name.c_str());
    }
  }
  void set(const std::string& name, const char* value) {
    const char* old = std::getenv(name.c_str());
    saved_.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
    if (value) setenv(name.c_str(), value, 1);
    else unsetenv(name.c_str());
  }

 private:
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST(TimeZoneAndLocale, CurrentAreTheHostsChoiceElseTheEnvironments) {
  ScopedEnvironment environment;
  environment.set("TZ", "America/Sao_Paulo");
  EXPECT_EQ(TimeZone::current().identifier(), "America/Sao_Paulo");
  environment.set("TZ", ":Asia/Tokyo");
  EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
  TimeZone::setCurrent(TimeZone::named("Europe/Berlin").value());
  EXPECT_EQ(TimeZone::current().identifier(), "Europe/Berlin");
  TimeZone::resetCurrent();
  EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
  environment.set("LC_ALL", "de_DE.UTF-8");
  Locale::setCurrent(Locale::named("ja_JP").value());
  EXPECT_EQ(Locale::current().identifier(), "ja_JP");
  Locale::resetCurrent();
  EXPECT_EQ(Locale::current().identifier(), "de_DE");
}

TEST(TimeZoneAndLocale, KnownNamesAreAcceptedAndOthersRejected) {
  quillan::testing::expectGoldenAnswers("zone_and_locale_names.txt", [](const std::string& question) {
    const auto name = question.substr(question.find(' ') + 1);
    if (question.rfind("zone ", 0) == 0) {
      const auto zone = TimeZone::named(name);
      return zone ? zone->identifier() : "rejected";
    }
    const auto locale = Locale::named(name);
    return locale ? locale->identifier() + ", " + locale->calendarIdentifier() + " calendar" : "rejected";
  });
  EXPECT_FALSE(TimeZone::named("").has_value());
  EXPECT_FALSE(Locale::named("").has_value());
}

TEST(Locale, CurrentReadsLcAllThenLcTimeThenLang) {
  quillan::testing::expectGoldenAnswers("locale_current.txt", [](const std::string& question) {
    const auto args = quillan::testing::words(question);
    ScopedEnvironment environment;
    const char* names[] = {"LC_ALL", "LC_TIME", "LANG"};
    for (std::size_t index = 0; index < 3; ++index) {
      environment.set(names[index], args[index] == "-" ? nullptr : args[index] == "''" ? "" : args[index].c_str());
    }
    return Locale::current().identifier();
  });
}

}  // namespace
}  // namespace quillan::platform
