#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillan::platform {

// Well-formed UTF-8 per RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF.
bool isValidUtf8(std::string_view text);

// The largest offset no greater than `offset` (or text.size()) that does not
// fall inside a well-formed sequence.
std::size_t codePointBoundaryAtOrBefore(std::string_view text, std::size_t offset);

// `text` with every malformed sequence replaced by U+FFFD, one per maximal
// invalid subpart as the Unicode standard recommends.
std::string withReplacementCharacters(std::string_view text);

}  // namespace quillan::platform
