#pragma once

#include <string>
#include <string_view>

namespace quillan::pages {

// `text` safe inside an HTML element or a double-quoted attribute: note texts,
// kinds and deep links reach our pages and may hold anything.
std::string htmlEscaped(std::string_view text);

// A length for HTML attributes: at most two decimals, no trailing zeros.
std::string htmlNumber(double value);

}  // namespace quillan::pages
