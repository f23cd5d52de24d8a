#pragma once

#include "views/Environment.hpp"
#include "views/Font.hpp"

namespace quillan::views {

// The point size of a text style at a Dynamic Type size, as the platform
// publishes them (xSmall ... xxxLarge, then the five accessibility sizes).
// Fonts of a fixed size never scale.
double pointSize(TextStyle style, DynamicTypeSize size);

}  // namespace quillan::views
