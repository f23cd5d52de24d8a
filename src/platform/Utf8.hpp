#pragma once

#include <string_view>

namespace quillan::platform {

// Well-formed UTF-8 per RFC 3629: no overlong forms, no surrogates, nothing past U+10FFFF.
bool isValidUtf8(std::string_view text);

}  // namespace quillan::platform
