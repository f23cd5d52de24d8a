#include "platform/Locale.hpp"

#include <unicode/calendar.h>
#include <unicode/uloc.h>
#include <unicode/ures.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <set>

#include "platform/LocaleImpl.hpp"

namespace quillan::platform {
namespace {

constexpr std::string_view kPosixLocale = "en_US_POSIX";

// The languages ICU carries data for; an id outside them would silently fall
// back to root data, which is never what the caller meant. Read from the index
// of installed locales by name: the same languages as
// icu::Locale::getAvailableLocales() gives, without building its ~800 Locale
// objects, which took 6 ms of every command's start.
const std::set<std::string, std::less<>>& availableLanguages() {
  static const auto languages = [] {
    std::set<std::string, std::less<>> result;
    UErrorCode status = U_ZERO_ERROR;
    UResourceBundle* index = ures_openDirect(nullptr, "res_index", &status);
    UResourceBundle* installed = ures_getByKey(index, "InstalledLocales", nullptr, &status);
    while (U_SUCCESS(status) && ures_hasNext(installed)) {
      const char* name = nullptr;
      int32_t length = 0;
      ures_getNextString(installed, &length, &name, &status);
      char language[ULOC_LANG_CAPACITY];
      UErrorCode languageStatus = U_ZERO_ERROR;
      uloc_getLanguage(name, language, sizeof language, &languageStatus);
      if (U_SUCCESS(status) && U_SUCCESS(languageStatus)) result.emplace(language);
    }
    ures_close(installed);
    ures_close(index);
    return result;
  }();
  return languages;
}

struct LocaleDefaults {
  std::mutex mutex;
  std::optional<Locale> hostSet;
  // The environment's locale, remembered with the text it came from.
  std::optional<std::string> environmentText;
  std::optional<Locale> environmentLocale;
};

LocaleDefaults& localeDefaults() {
  static LocaleDefaults instance;
  return instance;
}

// LC_ALL overrides LC_TIME, which overrides LANG; an empty variable counts as unset.
std::string environmentLocaleText() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "";
}

// "de_DE.UTF-8" -> "de_DE", "sr_RS@latin" -> "sr_RS"; the C locale -> en_US_POSIX.
std::string icuIdentifierFromPosix(std::string_view text) {
  const auto end = text.find_first_of(".@");
  const auto name = text.substr(0, end);
  if (name.empty() || name == "C" || name == "POSIX") return std::string(kPosixLocale);
  return std::string(name);
}

}  // namespace

std::optional<Locale> Locale::named(std::string_view identifier) {
  if (identifier.empty()) return std::nullopt;
  const icu::Locale locale(std::string(identifier).c_str());
  if (locale.isBogus()) return std::nullopt;
  if (!availableLanguages().contains(std::string_view(locale.getLanguage()))) return std::nullopt;
  return Locale(std::make_shared<const Impl>(Impl{locale.getName(), locale}));
}

Locale Locale::current() {
  auto& state = localeDefaults();
  const std::lock_guard lock(state.mutex);
  if (state.hostSet) return *state.hostSet;
  auto text = environmentLocaleText();
  if (!state.environmentLocale || state.environmentText != text) {
    auto locale = named(icuIdentifierFromPosix(text));
    state.environmentLocale = locale ? *locale : *named(kPosixLocale);
    state.environmentText = std::move(text);
  }
  return *state.environmentLocale;
}

void Locale::setCurrent(const Locale& locale) {
  auto& state = localeDefaults();
  const std::lock_guard lock(state.mutex);
  state.hostSet = locale;
}

void Locale::resetCurrent() {
  auto& state = localeDefaults();
  const std::lock_guard lock(state.mutex);
  state.hostSet.reset();
}

const std::string& Locale::identifier() const { return impl_->identifier; }

std::string Locale::languageTag() const {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Locale plain(impl_->locale.getLanguage(), impl_->locale.getCountry());
  const std::string tag = plain.toLanguageTag<std::string>(status);
  return U_SUCCESS(status) ? tag : std::string("und");
}

bool Locale::isRightToLeft() const { return impl_->locale.isRightToLeft(); }

std::optional<std::string> Locale::calendarKeyword() const {
  UErrorCode status = U_ZERO_ERROR;
  char value[ULOC_KEYWORDS_CAPACITY] = {};
  const int32_t length = impl_->locale.getKeywordValue("calendar", value, sizeof value, status);
  if (U_FAILURE(status) || length <= 0 || length >= static_cast<int32_t>(sizeof value)) return std::nullopt;
  return std::string(value, static_cast<std::size_t>(length));
}

bool Locale::knowsCalendar(std::string_view name) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::StringEnumeration> known(
      icu::Calendar::getKeywordValuesForLocale("calendar", icu::Locale::getRoot(), false, status));
  if (U_FAILURE(status) || !known) return false;
  while (const char* value = known->next(nullptr, status)) {
    if (U_FAILURE(status)) return false;
    if (name == value) return true;
  }
  return false;
}

std::string Locale::calendarIdentifier() const {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(impl_->locale, status));
  if (U_FAILURE(status) || !calendar) return "gregorian";
  return calendar->getType();
}

}  // namespace quillan::platform
