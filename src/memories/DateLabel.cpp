#include "memories/DateLabel.hpp"

#include <string>

#include "platform/DateFormatter.hpp"
#include "views/Builders.hpp"

namespace quillan::memories {

views::Node dateLabel(platform::Date date, std::string_view pattern) {
  platform::DateFormatter formatter;
  formatter.setDateFormat(std::string(pattern));
  return views::localizedText("%@", formatter.string(date));
}

}  // namespace quillan::memories
