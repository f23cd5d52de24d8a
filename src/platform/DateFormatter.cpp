#include "platform/DateFormatter.hpp"

#include <unicode/datefmt.h>
#include <unicode/smpdtfmt.h>

#include <map>
#include <memory>
#include <mutex>

#include "platform/LocaleImpl.hpp"
#include "platform/TimeZoneImpl.hpp"

namespace quillan::platform {
namespace {

// Bounds the cache; the widgets use a handful of (format, locale, zone) triples.
constexpr std::size_t kMaximumFormatters = 128;

icu::DateFormat::EStyle icuStyle(DateFormatterStyle style) {
  switch (style) {
    case DateFormatterStyle::short_: return icu::DateFormat::kShort;
    case DateFormatterStyle::medium: return icu::DateFormat::kMedium;
    case DateFormatterStyle::long_: return icu::DateFormat::kLong;
    case DateFormatterStyle::full: return icu::DateFormat::kFull;
    case DateFormatterStyle::none: break;
  }
  return icu::DateFormat::kNone;
}

std::unique_ptr<icu::DateFormat> buildFormatter(const std::string& pattern, DateFormatterStyle style,
                                                const Calendar& calendar) {
  const icu::Locale& locale = calendar.locale().impl().locale;
  std::unique_ptr<icu::DateFormat> formatter;
  if (!pattern.empty()) {
    UErrorCode status = U_ZERO_ERROR;
    formatter = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern), locale, status);
    if (U_FAILURE(status)) return nullptr;
  } else {
    formatter.reset(icu::DateFormat::createDateInstance(icuStyle(style), locale));
    if (!formatter) return nullptr;
  }
  formatter->setTimeZone(*calendar.timeZone().impl().zone);
  return formatter;
}

// ICU formatters are costly to build and the widgets make two per note, so
// they are kept per (pattern or style, locale, zone). ICU's format() is not
// safe on one object from two threads, hence the lock around it.
class FormatterCache {
 public:
  static FormatterCache& shared() {
    static FormatterCache cache;
    return cache;
  }

  std::string format(const std::string& pattern, DateFormatterStyle style, const Calendar& calendar, Date date) {
    const std::lock_guard lock(mutex_);
    icu::DateFormat* formatter = find(pattern, style, calendar);
    if (formatter == nullptr) return "";
    icu::UnicodeString text;
    formatter->format(date.unixMilliseconds(), text);
    std::string out;
    return text.toUTF8String(out);
  }

 private:
  icu::DateFormat* find(const std::string& pattern, DateFormatterStyle style, const Calendar& calendar) {
    const std::string key = (pattern.empty() ? "style:" + std::to_string(static_cast<int>(style))
                                             : "pattern:" + pattern) +
                            '\x1f' + calendar.locale().identifier() + '\x1f' + calendar.timeZone().identifier();
    auto found = formatters_.find(key);
    if (found != formatters_.end()) return found->second.get();
    auto formatter = buildFormatter(pattern, style, calendar);
    if (!formatter) return nullptr;
    if (formatters_.size() >= kMaximumFormatters) formatters_.clear();
    return formatters_.emplace(key, std::move(formatter)).first->second.get();
  }

  std::mutex mutex_;
  std::map<std::string, std::unique_ptr<icu::DateFormat>> formatters_;
};

}  // namespace

DateFormatter::DateFormatter() : calendar_(Calendar::current()) {}

// The format set last wins, as on the platform where setting a style replaces the pattern.
void DateFormatter::setDateFormat(std::string pattern) {
  pattern_ = std::move(pattern);
  dateStyle_ = DateFormatterStyle::none;
}

void DateFormatter::setDateStyle(DateFormatterStyle style) {
  dateStyle_ = style;
  pattern_.clear();
}

std::string DateFormatter::string(Date date) const {
  if (pattern_.empty() && dateStyle_ == DateFormatterStyle::none) return "";
  return FormatterCache::shared().format(pattern_, dateStyle_, calendar_, date);
}

}  // namespace quillan::platform
