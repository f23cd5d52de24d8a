#include "platform/Utf8.hpp"

#include <cstddef>

namespace quillan::platform {
namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Length of the sequence starting at `i`, or 0 when it is malformed.
std::size_t sequenceLength(std::string_view text, std::size_t i) {
  const auto lead = static_cast<unsigned char>(text[i]);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  unsigned char low = 0x80, high = 0xBF;  // allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // overlong
    if (lead == 0xED) high = 0x9F;  // surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;   // overlong
    if (lead == 0xF4) high = 0x8F;  // past U+10FFFF
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  const auto second = static_cast<unsigned char>(text[i + 1]);
  if (second < low || second > high) return 0;
  for (std::size_t k = 2; k < length; ++k) {
    if (!isContinuation(static_cast<unsigned char>(text[i + k]))) return 0;
  }
  return length;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto length = sequenceLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

}  // namespace quillan::platform
