#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillan::render {

// A code point is at most this many bytes long.
inline constexpr std::size_t kMaxCodePointBytes = 4;

// Byte offsets of every code point's start in `text`, plus text.size() at the
// end. Stray continuation bytes count as code points of their own.
std::vector<std::size_t> codePointBoundaries(std::string_view text);
std::size_t codePointCount(std::string_view text);

}  // namespace quillan::render
