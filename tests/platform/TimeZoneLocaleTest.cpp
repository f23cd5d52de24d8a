#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"

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

TEST(TimeZone, KnownIdentifiersAreAcceptedAndUnknownOnesRejected) {
  for (const char* id : {"UTC", "GMT", "Europe/Berlin", "America/Sao_Paulo", "Asia/Kolkata"}) {
    const auto zone = TimeZone::named(id);
    ASSERT_TRUE(zone.has_value()) << id;
    EXPECT_EQ(zone->identifier(), id);
  }
  for (const char* id : {"", "Mars/Olympus", "Etc/Unknown", "Europe/Berlín", "not a zone"}) {
    EXPECT_FALSE(TimeZone::named(id).has_value()) << id;
  }
}

TEST(TimeZone, OffsetsIncludeDaylightSaving) {
  const auto berlin = TimeZone::named("Europe/Berlin").value();
  EXPECT_EQ(berlin.secondsFromGMT(ISO8601::parse("2026-01-15T12:00:00Z").value()), 3600);
  EXPECT_EQ(berlin.secondsFromGMT(ISO8601::parse("2026-07-15T12:00:00Z").value()), 7200);
  EXPECT_EQ(TimeZone::named("Asia/Kolkata")->secondsFromGMT(ISO8601::parse("2026-07-15T12:00:00Z").value()), 19800);
}

TEST(TimeZone, CurrentIsTheHostsChoiceElseTheTZVariable) {
  ScopedEnvironment environment;
  environment.set("TZ", "America/Sao_Paulo");
  EXPECT_EQ(TimeZone::current().identifier(), "America/Sao_Paulo");
  environment.set("TZ", ":Asia/Tokyo");
  EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
  TimeZone::setCurrent(TimeZone::named("Europe/Berlin").value());
  EXPECT_EQ(TimeZone::current().identifier(), "Europe/Berlin");
  TimeZone::resetCurrent();
  EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
}

TEST(Locale, IdentifiersWithoutLanguageDataAreRejected) {
  struct Case {
    const char* id;
    const char* identifier;  // nullptr: rejected
  };
  const Case cases[] = {
      {"en_US", "en_US"},
      {"de_DE", "de_DE"},
      {"en_US_POSIX", "en_US_POSIX"},
      {"ja_JP@calendar=japanese", "ja_JP@calendar=japanese"},
      {"sr_Latn_RS", "sr_Latn_RS"},
      {"xx_YY", nullptr},
      {"qq", nullptr},
      // ICU's fallback data, not a language of its own.
      {"root", nullptr},
      {"", nullptr},
  };
  for (const auto& c : cases) {
    const auto locale = Locale::named(c.id);
    if (c.identifier == nullptr) {
      EXPECT_FALSE(locale.has_value()) << c.id;
    } else {
      ASSERT_TRUE(locale.has_value()) << c.id;
      EXPECT_EQ(locale->identifier(), c.identifier);
    }
  }
}

TEST(Locale, CalendarComesFromTheKeywordOrTheLocale) {
  EXPECT_EQ(Locale::named("en_US")->calendarIdentifier(), "gregorian");
  EXPECT_EQ(Locale::named("ja_JP@calendar=japanese")->calendarIdentifier(), "japanese");
  EXPECT_EQ(Locale::named("he_IL@calendar=hebrew")->calendarIdentifier(), "hebrew");
  EXPECT_EQ(Locale::named("th_TH")->calendarIdentifier(), "buddhist");
}

TEST(Locale, CurrentReadsLcAllThenLcTimeThenLang) {
  struct Case {
    const char *lcAll, *lcTime, *lang, *expected;
  };
  const Case cases[] = {
      {"de_DE.UTF-8", "fr_FR.UTF-8", "en_GB.UTF-8", "de_DE"},
      {nullptr, "fr_FR.UTF-8", "en_GB.UTF-8", "fr_FR"},
      {"", "", "en_GB.UTF-8", "en_GB"},
      {nullptr, nullptr, "sr_RS.UTF-8@latin", "sr_RS"},
      {nullptr, nullptr, "ja_JP", "ja_JP"},
      {nullptr, nullptr, "C", "en_US_POSIX"},
      {nullptr, nullptr, "POSIX", "en_US_POSIX"},
      {"C.UTF-8", nullptr, nullptr, "en_US_POSIX"},
      {nullptr, nullptr, nullptr, "en_US_POSIX"},
      {nullptr, nullptr, "xx_YY.UTF-8", "en_US_POSIX"},
  };
  for (const auto& c : cases) {
    ScopedEnvironment environment;
    environment.set("LC_ALL", c.lcAll);
    environment.set("LC_TIME", c.lcTime);
    environment.set("LANG", c.lang);
    EXPECT_EQ(Locale::current().identifier(), c.expected) << (c.lang ? c.lang : "-");
  }
}

TEST(Locale, TheHostsChoiceOverridesTheEnvironment) {
  ScopedEnvironment environment;
  environment.set("LC_ALL", "de_DE.UTF-8");
  Locale::setCurrent(Locale::named("ja_JP").value());
  EXPECT_EQ(Locale::current().identifier(), "ja_JP");
  Locale::resetCurrent();
  EXPECT_EQ(Locale::current().identifier(), "de_DE");
}

}  // namespace
}  // namespace quillan::platform
