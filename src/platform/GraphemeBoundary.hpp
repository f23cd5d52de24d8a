#pragma once

#include <cstddef>
#include <string_view>

namespace quillan::platform {

// The largest grapheme-cluster boundary no greater than `offset` in UTF-8
// `text`: a text cut there never parts a letter from its accents, an emoji
// from its modifiers or the two halves of a flag. When everything before
// `offset` is one cluster, the cut falls back to a character boundary.
std::size_t graphemeBoundaryAtOrBefore(std::string_view text, std::size_t offset);

}  // namespace quillan::platform
