#include "platform/Utf8.hpp"

namespace quillan::platform {
namespace {

constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// The sequence starting at a byte: a whole well-formed one, or the maximal
// subpart of a malformed one (at least the byte itself).
struct Sequence {
  std::size_t length;
  bool wellFormed;
};

Sequence sequenceAt(std::string_view text, std::size_t i) {
  const auto lead = static_cast<unsigned char>(text[i]);
  if (lead < 0x80) return {1, true};
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
    return {1, false};
  }
  std::size_t matched = 1;
  for (; matched < length && i + matched < text.size(); ++matched) {
    const auto byte = static_cast<unsigned char>(text[i + matched]);
    const bool fits = matched == 1 ? byte >= low && byte <= high : isContinuation(byte);
    if (!fits) break;
  }
  return {matched, matched == length};
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const Sequence sequence = sequenceAt(text, i);
    if (!sequence.wellFormed) return false;
    i += sequence.length;
  }
  return true;
}

std::size_t codePointBoundaryAtOrBefore(std::string_view text, std::size_t offset) {
  if (offset >= text.size()) return text.size();
  // A sequence is at most four bytes long, so its start lies at most three back.
  for (std::size_t back = 1; back <= 3 && back <= offset; ++back) {
    const std::size_t start = offset - back;
    if (isContinuation(static_cast<unsigned char>(text[start]))) continue;
    const Sequence sequence = sequenceAt(text, start);
    return sequence.wellFormed && start + sequence.length > offset ? start : offset;
  }
  return offset;
}

std::string withReplacementCharacters(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const Sequence sequence = sequenceAt(text, i);
    if (sequence.wellFormed) out.append(text.substr(i, sequence.length));
    else out.append(kReplacementCharacter);
    i += sequence.length;
  }
  return out;
}

}  // namespace quillan::platform
