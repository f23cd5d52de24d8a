#include "platform/IcuCalendarCache.hpp"

#include <map>
#include <mutex>
#include <string>

#include "platform/LocaleImpl.hpp"
#include "platform/TimeZoneImpl.hpp"

namespace quillan::platform {
namespace {

// Bounds the cache should a host cycle through many zones; real use has one or two.
constexpr std::size_t kMaximumPrototypes = 64;

std::unique_ptr<icu::Calendar> buildPrototype(const Locale& locale, const TimeZone& zone) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(zone.impl().zone->clone(), locale.impl().locale,
                                                                        status));
  if (U_FAILURE(status)) return nullptr;
  calendar->setLenient(true);
  calendar->setRepeatedWallTimeOption(UCAL_WALLTIME_FIRST);
  calendar->setSkippedWallTimeOption(UCAL_WALLTIME_LAST);
  return calendar;
}

}  // namespace

std::unique_ptr<icu::Calendar> makeIcuCalendar(const Locale& locale, const TimeZone& zone) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<icu::Calendar>> prototypes;
  const std::string key = locale.identifier() + '|' + zone.identifier();
  const std::lock_guard lock(mutex);
  auto found = prototypes.find(key);
  if (found == prototypes.end()) {
    auto prototype = buildPrototype(locale, zone);
    if (!prototype) return nullptr;
    if (prototypes.size() >= kMaximumPrototypes) prototypes.clear();
    found = prototypes.emplace(key, std::move(prototype)).first;
  }
  return std::unique_ptr<icu::Calendar>(found->second->clone());
}

}  // namespace quillan::platform
