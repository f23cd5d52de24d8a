#pragma once

#include <string>
#include <string_view>

namespace quillan::pages {

// The frame of every page the host writes: an English UTF-8 document whose
// title is also its heading, then `body`. `styleRules` are the page's own CSS
// rules, one per line; the pages share a look but each lays out its own parts.
std::string htmlPage(std::string_view title, std::string_view styleRules, std::string_view body);

}  // namespace quillan::pages
