#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillan::platform {

// An ICU locale, keywords included ("ja_JP@calendar=japanese", "th_TH@calendar=buddhist").
class Locale {
 public:
  // Empty for an identifier whose language ICU has no data for ("xx_YY").
  static std::optional<Locale> named(std::string_view identifier);
  // The process default: set by the host, else LC_ALL / LC_TIME / LANG
  // ("de_DE.UTF-8" -> "de_DE"; "C"/"POSIX"/unset -> "en_US_POSIX").
  static Locale current();
  static void setCurrent(const Locale& locale);
  static void resetCurrent();

  const std::string& identifier() const;
  // The language as a BCP 47 tag without keywords ("ja-JP", "zh-TW"),
  // for picking the shapes of Han characters.
  std::string languageTag() const;
  // Whether the locale's script runs from right to left (Arabic, Hebrew, ...).
  bool isRightToLeft() const;
  // The calendar the locale asks for ("gregorian", "japanese", "buddhist", ...).
  std::string calendarIdentifier() const;
  // The value of the identifier's calendar keyword, as written, if it has one.
  // ICU quietly falls back to the Gregorian calendar for a name it does not
  // know, so callers that take a locale from a user check it with knowsCalendar.
  std::optional<std::string> calendarKeyword() const;
  static bool knowsCalendar(std::string_view name);

  bool operator==(const Locale& other) const { return identifier() == other.identifier(); }

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  explicit Locale(std::shared_ptr<const Impl> impl) : impl_(std::move(impl)) {}
  std::shared_ptr<const Impl> impl_;
};

}  // namespace quillan::platform
