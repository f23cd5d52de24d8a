#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillan::platform {

// One run of attributed text with the inline styles Markdown can give it.
struct TextRun {
  std::string text;
  bool bold = false;
  bool italic = false;
  bool strikethrough = false;
  bool code = false;
  std::optional<std::string> link;

  bool operator==(const TextRun&) const = default;
};

// The description of every Markdown parse error (the only one is text that is
// not valid UTF-8), worded as the platform words unreadable data.
inline constexpr std::string_view kMarkdownParseErrorDescription =
    "The data couldn't be read because it isn't in the correct format.";

// Thrown when text cannot be parsed as Markdown (text that is not valid UTF-8).
class MarkdownParseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Attributed text: plain, or parsed from inline Markdown (cmark-gfm with
// strikethrough). Only inline syntax is interpreted -- emphasis, strong,
// strikethrough, code spans and links, which may run across a line break as
// in one paragraph -- and whitespace and line breaks are kept exactly as
// typed: "# x" stays "# x", "- a" stays "- a".
class AttributedString {
 public:
  AttributedString() = default;
  explicit AttributedString(std::string plain);

  // Throws MarkdownParseError. Markdown is read in the first `markdownBytes`
  // only (cut back to a character boundary); the text after them is kept as
  // typed, unstyled. A caller that shows only the start of a long text bounds
  // the parser's work this way.
  static AttributedString fromInlineMarkdown(std::string_view text, std::size_t markdownBytes = std::string_view::npos);

  const std::vector<TextRun>& runs() const { return runs_; }
  std::string plainText() const;

  bool operator==(const AttributedString&) const = default;

 private:
  std::vector<TextRun> runs_;
};

}  // namespace quillan::platform
