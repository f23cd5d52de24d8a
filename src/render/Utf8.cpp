#include "render/Utf8.hpp"

namespace quillan::render {

namespace {
bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }
}  // namespace

std::vector<std::size_t> codePointBoundaries(std::string_view text) {
  std::vector<std::size_t> bounds;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool startsCodePoint = !isContinuation(static_cast<unsigned char>(text[i])) || bounds.empty() ||
                                 i - bounds.back() >= 4;
    if (startsCodePoint) bounds.push_back(i);
  }
  bounds.push_back(text.size());
  return bounds;
}

std::size_t codePointCount(std::string_view text) { return codePointBoundaries(text).size() - 1; }

}  // namespace quillan::render
