#include "render/StyledRun.hpp"

namespace quillan::render {

std::string plainText(const StyledText& text) {
  std::string out;
  for (const auto& run : text) out += run.text;
  return out;
}

}  // namespace quillan::render
