#pragma once

#include <cstddef>
#include <string_view>

namespace quillan::audit {

// User-perceived characters in UTF-8 `text` ("é" written as e and a combining
// accent is one, so is a flag), which is what a reader sees of a truncated text.
std::size_t graphemeCount(std::string_view text);

}  // namespace quillan::audit
