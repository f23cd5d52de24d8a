#pragma once

#include <cstddef>
#include <string_view>

namespace quillan::views {

// How deep any JSON the host reads may nest (view trees, API bodies, replay
// events, snapshot configs). A widget's view tree of the deepest allowed views
// nests about 200 levels of JSON; nothing else the host reads comes close.
// Deeper input is refused before it is parsed: what reads a parsed document
// walks it recursively, and 100,000 levels overflow the stack.
inline constexpr std::size_t kMaxJsonNesting = 512;

// Whether the arrays and objects of `text` nest at most `maxDepth` deep.
// Brackets inside strings do not count; the text need not be valid JSON (the
// parser judges that afterwards).
bool jsonNestsWithin(std::string_view text, std::size_t maxDepth = kMaxJsonNesting);

}  // namespace quillan::views
