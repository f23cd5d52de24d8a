#include "platform/AttributedString.hpp"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm-extension_api.h>
#include <cmark-gfm.h>

#include <cstring>
#include <memory>
#include <mutex>

#include "platform/Utf8.hpp"

namespace quillan::platform {
namespace {

// Consecutive non-blank lines are parsed as one paragraph behind this prefix,
// so emphasis, code and links may run across a line break. A paragraph cannot
// open a block, so "# x", "- a", "> q", "1. x", "```" or a link definition
// stay text; and the space makes the line's first character flank like one at
// the start of a line. The prefix's own text is cut off again. A line that
// could interrupt a paragraph (a heading, list item, quote, fence, rule,
// HTML block or setext underline) starts a paragraph of its own instead.
constexpr std::string_view kParagraphPrefix = "X ";

// One line of the text: what is kept verbatim around the part that is parsed.
struct Line {
  std::string_view leading, core, trailing, separator;
};

bool isSpaceOrTab(char c) { return c == ' ' || c == '\t'; }

std::vector<Line> splitLines(std::string_view text) {
  std::vector<Line> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    const auto end = std::min(text.find_first_of("\r\n", start), text.size());
    const auto separatorLength = end == text.size() ? 0 : text.compare(end, 2, "\r\n") == 0 ? 2 : 1;
    auto content = text.substr(start, end - start);
    Line line;
    std::size_t first = 0;
    while (first < content.size() && isSpaceOrTab(content[first])) ++first;
    std::size_t last = content.size();
    while (last > first && isSpaceOrTab(content[last - 1])) --last;
    line.leading = content.substr(0, first);
    line.core = content.substr(first, last - first);
    line.trailing = content.substr(last);
    line.separator = text.substr(end, separatorLength);
    lines.push_back(line);
    if (separatorLength == 0) break;
    start = end + separatorLength;
  }
  return lines;
}

bool isRule(std::string_view core) {
  const char mark = core.front();
  if (mark != '*' && mark != '-' && mark != '_') return false;
  std::size_t marks = 0;
  for (char c : core) {
    if (c == mark) ++marks;
    else if (!isSpaceOrTab(c)) return false;
  }
  return marks >= 3;
}

bool isSetextUnderline(std::string_view core) {
  const char mark = core.front();
  return (mark == '=' || mark == '-') && core.find_first_not_of(mark) == std::string_view::npos;
}

bool startsListItem(std::string_view core) {
  if ((core[0] == '-' || core[0] == '+' || core[0] == '*') && (core.size() == 1 || isSpaceOrTab(core[1]))) return true;
  std::size_t digits = 0;
  while (digits < core.size() && digits < 10 && core[digits] >= '0' && core[digits] <= '9') ++digits;
  return digits > 0 && digits < core.size() && (core[digits] == '.' || core[digits] == ')') &&
         (digits + 1 == core.size() || isSpaceOrTab(core[digits + 1]));
}

// Whether a line, joined to the paragraph above it, would end that paragraph
// or turn it into a heading.
bool mayInterruptParagraph(std::string_view core) {
  if (core.starts_with("```") || core.starts_with("~~~")) return true;
  const char first = core.front();
  if (first == '#' || first == '>' || first == '<') return true;
  return isRule(core) || isSetextUnderline(core) || startsListItem(core);
}

// Lines [first, last] parsed as one paragraph.
struct Paragraph {
  std::size_t first, last;
};

std::vector<Paragraph> paragraphsOf(const std::vector<Line>& lines) {
  std::vector<Paragraph> paragraphs;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].core.empty()) continue;
    const bool joins = i > 0 && !paragraphs.empty() && paragraphs.back().last == i - 1 && !lines[i - 1].core.empty() &&
                       !mayInterruptParagraph(lines[i].core);
    if (joins) paragraphs.back().last = i;
    else paragraphs.push_back({i, i});
  }
  return paragraphs;
}

struct NodeDeleter {
  void operator()(cmark_node* node) const { cmark_node_free(node); }
};
struct ParserDeleter {
  void operator()(cmark_parser* parser) const { cmark_parser_free(parser); }
};
using NodePtr = std::unique_ptr<cmark_node, NodeDeleter>;
using ParserPtr = std::unique_ptr<cmark_parser, ParserDeleter>;

NodePtr parseDocument(const std::string& markdown) {
  static std::once_flag registered;
  std::call_once(registered, cmark_gfm_core_extensions_ensure_registered);
  ParserPtr parser(cmark_parser_new(CMARK_OPT_DEFAULT));
  if (cmark_syntax_extension* strikethrough = cmark_find_syntax_extension("strikethrough")) {
    cmark_parser_attach_syntax_extension(parser.get(), strikethrough);
  }
  cmark_parser_feed(parser.get(), markdown.data(), markdown.size());
  return NodePtr(cmark_parser_finish(parser.get()));
}

// Appends text, merging it into the last run when the styles are the same.
void append(std::vector<TextRun>& runs, std::string_view text, const TextRun& style) {
  if (text.empty()) return;
  if (!runs.empty()) {
    TextRun& last = runs.back();
    const bool sameStyle = last.bold == style.bold && last.italic == style.italic &&
                           last.strikethrough == style.strikethrough && last.code == style.code &&
                           last.link == style.link;
    if (sameStyle) {
      last.text.append(text);
      return;
    }
  }
  TextRun run = style;
  run.text = std::string(text);
  runs.push_back(std::move(run));
}

std::string_view literal(cmark_node* node) {
  const char* text = cmark_node_get_literal(node);
  return text ? std::string_view(text) : std::string_view();
}

struct IterDeleter {
  void operator()(cmark_iter* iter) const { cmark_iter_free(iter); }
};
using IterPtr = std::unique_ptr<cmark_iter, IterDeleter>;

// What a node adds to the style it inherits; text-carrying nodes are handled
// by appendLeaf.
TextRun styleInside(cmark_node* node, TextRun style) {
  switch (cmark_node_get_type(node)) {
    case CMARK_NODE_EMPH: style.italic = true; break;
    case CMARK_NODE_STRONG: style.bold = true; break;
    case CMARK_NODE_LINK: style.link = std::string(cmark_node_get_url(node) ? cmark_node_get_url(node) : ""); break;
    default:
      if (std::strcmp(cmark_node_get_type_string(node), "strikethrough") == 0) style.strikethrough = true;
      break;
  }
  return style;
}

// What stands between the lines of a paragraph: whatever was typed around
// each line break, one entry per break.
using Breaks = std::vector<std::string>;

// Appends a node that carries text and has no children; false for any other.
bool appendLeaf(cmark_node* node, TextRun style, std::vector<TextRun>& runs, const Breaks& breaks,
                std::size_t& breakIndex) {
  switch (cmark_node_get_type(node)) {
    case CMARK_NODE_TEXT:
    case CMARK_NODE_HTML_INLINE: append(runs, literal(node), style); return true;
    case CMARK_NODE_CODE:
      style.code = true;
      append(runs, literal(node), style);
      return true;
    case CMARK_NODE_SOFTBREAK:
    case CMARK_NODE_LINEBREAK:
      append(runs, breakIndex < breaks.size() ? std::string_view(breaks[breakIndex]) : std::string_view("\n"), style);
      ++breakIndex;
      return true;
    default: return false;
  }
}

// A container node on the way down from the paragraph, with its style.
struct OpenNode {
  cmark_node* node;
  TextRun style;
};

// Walks the paragraph's inlines in document order. Nesting is as deep as the
// note makes it (a line of 100,000 "*" nests 50,000 emphases), so the styles
// of the open containers live in a vector, never on the call stack: each node
// takes its parent's style, after the containers the walk has left are
// dropped.
void collectInlines(cmark_node* paragraph, const Breaks& breaks, std::vector<TextRun>& runs) {
  std::vector<OpenNode> open{{paragraph, TextRun{}}};
  std::size_t breakIndex = 0;
  const IterPtr iter(cmark_iter_new(paragraph));
  for (cmark_event_type event; (event = cmark_iter_next(iter.get())) != CMARK_EVENT_DONE;) {
    cmark_node* node = cmark_iter_get_node(iter.get());
    if (event != CMARK_EVENT_ENTER || node == paragraph) continue;
    while (open.back().node != cmark_node_parent(node)) open.pop_back();
    if (!appendLeaf(node, open.back().style, runs, breaks, breakIndex))
      open.push_back({node, styleInside(node, open.back().style)});
  }
}

// The runs of one prefixed paragraph, without the prefix.
std::vector<TextRun> paragraphRuns(cmark_node* paragraph, const Breaks& breaks) {
  std::vector<TextRun> runs;
  collectInlines(paragraph, breaks, runs);
  if (!runs.empty() && runs.front().text.starts_with(kParagraphPrefix)) {
    runs.front().text.erase(0, kParagraphPrefix.size());
    if (runs.front().text.empty()) runs.erase(runs.begin());
  }
  return runs;
}

std::string prefixedParagraphs(const std::vector<Line>& lines, const std::vector<Paragraph>& paragraphs) {
  std::string markdown;
  for (const auto& paragraph : paragraphs) {
    markdown.append(kParagraphPrefix).append(lines[paragraph.first].core);
    for (std::size_t i = paragraph.first + 1; i <= paragraph.last; ++i) markdown.append("\n").append(lines[i].core);
    markdown.append("\n\n");
  }
  return markdown;
}

Breaks breaksOf(const std::vector<Line>& lines, const Paragraph& paragraph) {
  Breaks breaks;
  for (std::size_t i = paragraph.first; i < paragraph.last; ++i) {
    breaks.push_back(std::string(lines[i].trailing) + std::string(lines[i].separator) +
                     std::string(lines[i + 1].leading));
  }
  return breaks;
}

}  // namespace

AttributedString::AttributedString(std::string plain) {
  if (plain.empty()) return;
  TextRun run;
  run.text = std::move(plain);
  runs_.push_back(std::move(run));
}

AttributedString AttributedString::fromInlineMarkdown(std::string_view text, std::size_t markdownBytes) {
  if (!isValidUtf8(text)) throw MarkdownParseError(std::string(kMarkdownParseErrorDescription));
  const std::string_view markdown = text.substr(0, codePointBoundaryAtOrBefore(text, markdownBytes));
  const auto lines = splitLines(markdown);
  const auto paragraphs = paragraphsOf(lines);
  const auto document = parseDocument(prefixedParagraphs(lines, paragraphs));
  cmark_node* node = cmark_node_first_child(document.get());
  AttributedString result;
  const TextRun plain;
  std::size_t next = 0;  // the next paragraph
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    if (next < paragraphs.size() && paragraphs[next].first == i) {
      const Paragraph& paragraph = paragraphs[next++];
      const Line& last = lines[paragraph.last];
      append(result.runs_, line.leading, plain);
      if (node != nullptr) {
        for (const auto& run : paragraphRuns(node, breaksOf(lines, paragraph))) append(result.runs_, run.text, run);
        node = cmark_node_next(node);
      }
      append(result.runs_, last.trailing, plain);
      append(result.runs_, last.separator, plain);
      i = paragraph.last;
      continue;
    }
    append(result.runs_, line.leading, plain);
    append(result.runs_, line.trailing, plain);
    append(result.runs_, line.separator, plain);
  }
  append(result.runs_, text.substr(markdown.size()), plain);
  return result;
}

std::string AttributedString::plainText() const {
  std::string text;
  for (const auto& run : runs_) text += run.text;
  return text;
}

}  // namespace quillan::platform
