#include "platform/ISO8601.hpp"

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "platform/CivilDays.hpp"

namespace quillan::platform {
namespace {

unsigned daysInMonth(std::int64_t year, unsigned month) {
  static constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  std::optional<unsigned> digits(std::size_t count) {
    if (pos_ + count > text_.size()) return std::nullopt;
    unsigned value = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const char c = text_[pos_ + i];
      if (c < '0' || c > '9') return std::nullopt;
      value = value * 10 + static_cast<unsigned>(c - '0');
    }
    pos_ += count;
    return value;
  }
  bool literal(char c) {
    if (pos_ < text_.size() && text_[pos_] == c) {
      ++pos_;
      return true;
    }
    return false;
  }
  std::optional<char> peek() const { return pos_ < text_.size() ? std::optional<char>(text_[pos_]) : std::nullopt; }
  bool atEnd() const { return pos_ == text_.size(); }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
};

std::optional<double> fraction(Reader& reader) {
  if (!reader.literal('.') && !reader.literal(',')) return 0.0;
  double value = 0.0, scale = 0.1;
  bool any = false;
  while (auto c = reader.peek()) {
    if (*c < '0' || *c > '9') break;
    value += scale * (*reader.digits(1));
    scale /= 10;
    any = true;
  }
  return any ? std::optional<double>(value) : std::nullopt;
}

std::optional<int> offset(Reader& reader) {
  if (reader.literal('Z') || reader.literal('z')) return 0;
  int sign = 0;
  if (reader.literal('+')) sign = 1;
  else if (reader.literal('-')) sign = -1;
  else return std::nullopt;
  const auto hours = reader.digits(2);
  if (!hours) return std::nullopt;
  reader.literal(':');
  const auto minutes = reader.digits(2);
  if (!minutes || *hours > 23 || *minutes > 59) return std::nullopt;
  return sign * static_cast<int>(*hours * 3600 + *minutes * 60);
}

}  // namespace

std::optional<Date> ISO8601::parse(std::string_view text) {
  Reader reader(text);
  const auto year = reader.digits(4);
  if (!year || !reader.literal('-')) return std::nullopt;
  const auto month = reader.digits(2);
  if (!month || !reader.literal('-')) return std::nullopt;
  const auto day = reader.digits(2);
  if (!day || (!reader.literal('T') && !reader.literal('t') && !reader.literal(' '))) return std::nullopt;
  const auto hour = reader.digits(2);
  if (!hour || !reader.literal(':')) return std::nullopt;
  const auto minute = reader.digits(2);
  if (!minute || !reader.literal(':')) return std::nullopt;
  const auto second = reader.digits(2);
  if (!second) return std::nullopt;
  const auto fractional = fraction(reader);
  const auto offsetSeconds = offset(reader);
  if (!fractional || !offsetSeconds || !reader.atEnd()) return std::nullopt;
  if (*month < 1 || *month > 12 || *day < 1 || *day > daysInMonth(*year, *month) || *hour > 23 || *minute > 59 ||
      *second > 59) {
    return std::nullopt;
  }
  const double unix = static_cast<double>(daysFromCivil(*year, *month, *day)) * 86400.0 + *hour * 3600.0 +
                      *minute * 60.0 + *second + *fractional - *offsetSeconds;
  return Date::fromUnixSeconds(unix);
}

std::string ISO8601::format(Date date, const TimeZone& zone) { return format(date, zone.secondsFromGMT(date)); }

std::string ISO8601::format(Date date, int offsetSeconds) {
  const double local = date.unixSeconds() + offsetSeconds;
  const double wholeSeconds = std::floor(local);
  auto millis = static_cast<int>(std::llround((local - wholeSeconds) * 1000.0));
  auto seconds = static_cast<std::int64_t>(wholeSeconds);
  if (millis == 1000) {
    millis = 0;
    ++seconds;
  }
  std::int64_t days = seconds / 86400;
  std::int64_t secondOfDay = seconds % 86400;
  if (secondOfDay < 0) {
    secondOfDay += 86400;
    --days;
  }
  const auto civil = civilFromDays(days);
  char buffer[64];
  // Years outside 0000-9999 take ISO 8601's expanded form, a sign and at least
  // four digits ("-0001"), which parse() does not read.
  const bool fourDigitYear = civil.year >= 0 && civil.year <= 9999;
  int length = std::snprintf(buffer, sizeof buffer,
                             fourDigitYear ? "%04lld-%02u-%02uT%02d:%02d:%02d" : "%+05lld-%02u-%02uT%02d:%02d:%02d",
                             static_cast<long long>(civil.year), civil.month, civil.day,
                             static_cast<int>(secondOfDay / 3600), static_cast<int>(secondOfDay / 60 % 60),
                             static_cast<int>(secondOfDay % 60));
  if (millis != 0) length += std::snprintf(buffer + length, sizeof buffer - length, ".%03d", millis);
  const int absOffset = offsetSeconds < 0 ? -offsetSeconds : offsetSeconds;
  std::snprintf(buffer + length, sizeof buffer - length, "%c%02d:%02d", offsetSeconds < 0 ? '-' : '+', absOffset / 3600,
                absOffset / 60 % 60);
  return buffer;
}

}  // namespace quillan::platform
