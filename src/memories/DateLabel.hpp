#pragma once

#include <string_view>

#include "platform/Date.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// A localisable text with `date` interpolated through a fresh formatter of
// `pattern`: the key is the interpolation's ("%@"), the text the formatted date.
views::Node dateLabel(platform::Date date, std::string_view pattern);

}  // namespace quillan::memories
