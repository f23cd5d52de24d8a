#pragma once

namespace quillan::render {

// What stands for the text left off where a line or a text is cut short.
inline constexpr const char* kEllipsis = "\u2026";

}  // namespace quillan::render
