#pragma once

#include <optional>
#include <string>

#include "platform/AttributedString.hpp"

namespace quillan::memories {

// A note's text as drawn: inline Markdown only, whitespace kept as typed. No
// text is the empty text; text that does not parse is logged ("Couldn't
// parse: ...") and drawn plain.
platform::AttributedString noteText(const std::optional<std::string>& markdown);

}  // namespace quillan::memories
