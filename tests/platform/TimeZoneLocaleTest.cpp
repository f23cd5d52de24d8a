#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

// Keeps the variables that name the zone and the locale, and puts them back when it goes.
class ScopedEnvironment {
 public:
  ScopedEnvironment() {
    for (const char* name : kNames) {
      if (const char* value = std::getenv(name)) saved_[name] = value;
    }
  }
  ~ScopedEnvironment() {
    for (const char* name : kNames) set(name, saved_.contains(name) ? saved_.at(name).c_str() : nullptr);
  }
  static void set(const char* name, const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }

 private:
  static constexpr const char* kNames[] = {"TZ", "LC_ALL", "LC_TIME", "LANG"};
  std::map<std::string, std::string> saved_;
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
      ScopedEnvironment::set(names[index], args[index] == "-"    ? nullptr
                                           : args[index] == "''" ? ""
                                                                 : args[index].c_str());
    }
    return Locale::current().identifier();
  });
}

}  // namespace
}  // namespace quillan::platform
