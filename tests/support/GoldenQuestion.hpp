#pragma once

// Reading a question of a golden answers file: its cells, and text written
// with escapes so that any bytes (malformed UTF-8, invisible marks) stay
// readable in the file.

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/GoldenFile.hpp"

namespace quillan::testing {

inline void appendUtf8(std::string& text, std::uint32_t codePoint) {
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
    return;
  }
  const int tail = codePoint < 0x800 ? 1 : codePoint < 0x10000 ? 2 : 3;
  const unsigned lead[] = {0xC0, 0xE0, 0xF0};
  text += static_cast<char>(lead[tail - 1] | (codePoint >> (6 * tail)));
  for (int shift = 6 * (tail - 1); shift >= 0; shift -= 6)
    text += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
}

// "\n", "\r", "\t", "\\", "\xHH" (one byte), "\uHHHH" and "\UHHHHHHHH" (a
// code point) stand for what they name; any other backslash for itself.
inline std::string unescaped(const std::string& line) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char next = i + 1 < line.size() ? line[i + 1] : '\0';
    const std::size_t digits = next == 'x' ? 2 : next == 'u' ? 4 : next == 'U' ? 8 : 0;
    if (line[i] == '\\' && digits > 0 && i + 2 + digits <= line.size()) {
      const auto value = static_cast<std::uint32_t>(std::stoul(line.substr(i + 2, digits), nullptr, 16));
      if (digits == 2) text += static_cast<char>(value);
      else appendUtf8(text, value);
      i += 1 + digits;
    } else if (line[i] == '\\' && (next == 'n' || next == 'r' || next == 't' || next == '\\')) {
      text += next == 'n' ? '\n' : next == 'r' ? '\r' : next == 't' ? '\t' : '\\';
      ++i;
    } else {
      text += line[i];
    }
  }
  return text;
}

// Line breaks and tabs written as escapes, so that an answer stays on its line.
inline std::string escaped(const std::string& text) {
  std::string line;
  for (const char c : text) line += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
  return line;
}

// The cells of a question written "a | b | c".
inline std::vector<std::string> cells(const std::string& question) {
  std::vector<std::string> split;
  std::size_t start = 0;
  for (auto bar = question.find(" | "); bar != std::string::npos; bar = question.find(" | ", start)) {
    split.push_back(question.substr(start, bar - start));
    start = bar + 3;
  }
  split.push_back(question.substr(start));
  return split;
}

// Each case of a table kept under tests/data/golden, as its cells; blank lines
// and lines starting "// " are comments.
inline void forEachCase(const std::string& name, const std::function<void(const std::vector<std::string>&)>& run) {
  std::istringstream in(readGolden(name));
  std::size_t cases = 0;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line.rfind("// ", 0) == 0) continue;
    SCOPED_TRACE(line);
    run(cells(line));
    ++cases;
  }
  EXPECT_GT(cases, 0u) << "no cases in " << goldenPath(name);
}

}  // namespace quillan::testing
