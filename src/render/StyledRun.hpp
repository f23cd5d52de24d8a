#pragma once

#include <optional>
#include <string>
#include <vector>

#include "render/FontDescription.hpp"

namespace quillan::render {

// A stretch of text in one font and style, the unit both measuring and drawing
// work on. `link` marks a Markdown link (drawn in the tint colour).
struct StyledRun {
  std::string text;
  FontDescription font;
  bool strikethrough = false;
  std::optional<std::string> link;
  bool operator==(const StyledRun&) const = default;
};

using StyledText = std::vector<StyledRun>;

std::string plainText(const StyledText& text);

}  // namespace quillan::render
