#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/AttributedString.hpp"

namespace quillan::memories {

// A row shows two lines of a note, a hundred characters or so from its start,
// yet cmark spends about a microsecond on every byte of punctuation: a synced
// note of a megabyte of "*" or "[" would take a second. Markdown is therefore
// read in the first 8 KB only (a paragraph of some 1,300 words); the text
// after them is kept whole, unstyled. Styling that reaches past them can never
// show in a row.
inline constexpr std::size_t kNoteMarkdownBytes = 8 * 1024;

// A note's text as drawn: inline Markdown only, whitespace kept as typed. No
// text is the empty text; text that does not parse is logged ("Couldn't
// parse: ...") and drawn plain.
platform::AttributedString noteText(const std::optional<std::string>& markdown);

}  // namespace quillan::memories
