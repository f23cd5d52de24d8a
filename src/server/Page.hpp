#pragma once

#include <string_view>

namespace quillan::server {

// The page `serve` shows, built into the binary: plain HTML, a style sheet
// and one script that uses only the HTTP API. Every text the script places
// in the page goes in as text, never as markup.
std::string_view pageHtml();
std::string_view pageStyle();
std::string_view pageScript();

}  // namespace quillan::server
