#include "compose/DeepLinks.hpp"

#include "platform/DateFormatter.hpp"

namespace quillan::compose {

platform::URL onThisDayURL() { return platform::URL::literal(kOnThisDayLink); }

platform::URL addRecordURL() { return platform::URL::literal(kAddRecordLink); }

platform::URL recordDateURL(platform::Date date) {
  const auto base = platform::URL::literal(kRecordDateLink);
  platform::DateFormatter formatter;
  formatter.setDateFormat(std::string(kRecordDateFormat));
  return base.appendingPathComponent(formatter.string(date));
}

}  // namespace quillan::compose
