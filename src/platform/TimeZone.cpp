#include "platform/TimeZone.hpp"

#include <cstdlib>
#include <mutex>

#include "platform/TimeZoneImpl.hpp"

namespace quillan::platform {
namespace {

// ICU answers an unknown identifier with this zone (behaving as GMT) instead of failing.
constexpr std::string_view kIcuUnknownZone = "Etc/Unknown";

std::string utf8(const icu::UnicodeString& text) {
  std::string out;
  return text.toUTF8String(out);
}

std::string identifierOf(const icu::TimeZone& zone) {
  icu::UnicodeString id;
  return utf8(zone.getID(id));
}

struct ZoneDefaults {
  std::mutex mutex;
  std::optional<TimeZone> hostSet;
  // The environment's zone, remembered with the $TZ text it came from so that
  // Calendar::current() in a loop does not rebuild it.
  std::optional<std::optional<std::string>> environmentText;
  std::optional<TimeZone> environmentZone;
};

ZoneDefaults& zoneDefaults() {
  static ZoneDefaults instance;
  return instance;
}

std::optional<std::string> environmentTZ() {
  const char* value = std::getenv("TZ");
  if (value == nullptr) return std::nullopt;
  return std::string(value);
}

std::string hostZoneIdentifier() {
  const std::unique_ptr<icu::TimeZone> host(icu::TimeZone::detectHostTimeZone());
  return host ? identifierOf(*host) : std::string("GMT");
}

TimeZone zoneFromEnvironment(const std::optional<std::string>& tz) {
  if (tz && !tz->empty()) {
    std::string_view identifier = *tz;
    if (identifier.front() == ':') identifier.remove_prefix(1);
    if (auto zone = TimeZone::named(identifier)) return *zone;
  }
  if (auto zone = TimeZone::named(hostZoneIdentifier())) return *zone;
  return *TimeZone::named("GMT");
}

}  // namespace

std::optional<TimeZone> TimeZone::named(std::string_view identifier) {
  if (identifier.empty()) return std::nullopt;
  const auto id = icu::UnicodeString::fromUTF8(icu::StringPiece(identifier.data(),
                                                                static_cast<int32_t>(identifier.size())));
  std::unique_ptr<const icu::TimeZone> zone(icu::TimeZone::createTimeZone(id));
  if (!zone) return std::nullopt;
  auto canonical = identifierOf(*zone);
  if (canonical == kIcuUnknownZone) return std::nullopt;
  return TimeZone(std::make_shared<const Impl>(Impl{std::move(canonical), std::move(zone)}));
}

TimeZone TimeZone::current() {
  auto& state = zoneDefaults();
  const std::lock_guard lock(state.mutex);
  if (state.hostSet) return *state.hostSet;
  auto tz = environmentTZ();
  if (!state.environmentZone || state.environmentText != tz) {
    state.environmentZone = zoneFromEnvironment(tz);
    state.environmentText = std::move(tz);
  }
  return *state.environmentZone;
}

void TimeZone::setCurrent(const TimeZone& zone) {
  auto& state = zoneDefaults();
  const std::lock_guard lock(state.mutex);
  state.hostSet = zone;
}

void TimeZone::resetCurrent() {
  auto& state = zoneDefaults();
  const std::lock_guard lock(state.mutex);
  state.hostSet.reset();
}

const std::string& TimeZone::identifier() const { return impl_->identifier; }

int TimeZone::secondsFromGMT(Date date) const {
  int32_t rawOffset = 0, dstOffset = 0;
  UErrorCode status = U_ZERO_ERROR;
  impl_->zone->getOffset(date.unixMilliseconds(), /*local=*/false, rawOffset, dstOffset, status);
  if (U_FAILURE(status)) return rawOffset / 1000;
  return (rawOffset + dstOffset) / 1000;
}

}  // namespace quillan::platform
