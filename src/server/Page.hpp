#pragma once

#include <string_view>

namespace quillan::server {

// The page `serve` shows: plain HTML, a style sheet and one script that uses
// only the HTTP API. Every text the script places in the page goes in as
// text, never as markup. They are the files in page/ (index.html, page.css,
// page.js), built into the binary byte for byte.
std::string_view pageHtml();
std::string_view pageStyle();
std::string_view pageScript();

}  // namespace quillan::server
