#include "hosting/QuotedValue.hpp"

#include <cstdio>

namespace quillan::hosting {
namespace {

std::string escapedControl(unsigned char c) {
  switch (c) {
    case '\n': return "\\n";
    case '\r': return "\\r";
    case '\t': return "\\t";
    default: {
      char hex[5];
      std::snprintf(hex, sizeof hex, "\\x%02X", c);
      return hex;
    }
  }
}

bool isControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

// Enough to recognise a value; a longer one is cut, after a whole UTF-8 character.
constexpr std::size_t kShownBytes = 120;

std::string_view shownPart(std::string_view value) {
  if (value.size() <= kShownBytes) return value;
  std::size_t end = kShownBytes;
  while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0) == 0x80) --end;
  return value.substr(0, end);
}

}  // namespace

std::string quotedValue(std::string_view value) {
  const auto shown = shownPart(value);
  std::string text = "\"";
  for (const unsigned char c : shown) {
    if (c == '"' || c == '\\') {
      text += '\\';
      text += static_cast<char>(c);
    } else if (isControl(c)) {
      text += escapedControl(c);
    } else {
      text += static_cast<char>(c);
    }
  }
  if (shown.size() < value.size()) text += "...";
  return text + "\"";
}

std::string singleLine(std::string_view message) {
  std::string text;
  for (const unsigned char c : message) text += isControl(c) ? escapedControl(c) : std::string(1, static_cast<char>(c));
  return text;
}

}  // namespace quillan::hosting
