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

// Every non-blank line is parsed as a paragraph of its own behind this prefix.
// A paragraph cannot open a block, so "# x", "- a", "> q", "1. x", "```" or a
// link definition stay text; and the space makes the line's first character
// flank like one at the start of a line. The prefix's own text is cut off again.
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
    const auto separatorLength = end == text.size()                                       ? 0
                                 : text.compare(end, 2, "\r\n") == 0 ? 2
                                                                                          : 1;
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
    case CMARK_NODE_EMPH:
      style.italic = true;
      break;
    case CMARK_NODE_STRONG:
      style.bold = true;
      break;
    case CMARK_NODE_LINK:
      style.link = std::string(cmark_node_get_url(node) ? cmark_node_get_url(node) : "");
      break;
    default:
      if (std::strcmp(cmark_node_get_type_string(node), "strikethrough") == 0) style.strikethrough = true;
      break;
  }
  return style;
}

// Appends a node that carries text and has no children; false for any other.
bool appendLeaf(cmark_node* node, TextRun style, std::vector<TextRun>& runs) {
  switch (cmark_node_get_type(node)) {
    case CMARK_NODE_TEXT:
    case CMARK_NODE_HTML_INLINE:
      append(runs, literal(node), style);
      return true;
    case CMARK_NODE_CODE:
      style.code = true;
      append(runs, literal(node), style);
      return true;
    case CMARK_NODE_SOFTBREAK:
    case CMARK_NODE_LINEBREAK:
      append(runs, "\n", style);
      return true;
    default:
      return false;
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
void collectInlines(cmark_node* paragraph, std::vector<TextRun>& runs) {
  std::vector<OpenNode> open{{paragraph, TextRun{}}};
  const IterPtr iter(cmark_iter_new(paragraph));
  for (cmark_event_type event; (event = cmark_iter_next(iter.get())) != CMARK_EVENT_DONE;) {
    cmark_node* node = cmark_iter_get_node(iter.get());
    if (event != CMARK_EVENT_ENTER || node == paragraph) continue;
    while (open.back().node != cmark_node_parent(node)) open.pop_back();
    if (!appendLeaf(node, open.back().style, runs)) open.push_back({node, styleInside(node, open.back().style)});
  }
}

// The runs of one prefixed paragraph, without the prefix.
std::vector<TextRun> paragraphRuns(cmark_node* paragraph) {
  std::vector<TextRun> runs;
  collectInlines(paragraph, runs);
  if (!runs.empty() && runs.front().text.starts_with(kParagraphPrefix)) {
    runs.front().text.erase(0, kParagraphPrefix.size());
    if (runs.front().text.empty()) runs.erase(runs.begin());
  }
  return runs;
}

std::string prefixedParagraphs(const std::vector<Line>& lines) {
  std::string markdown;
  for (const auto& line : lines) {
    if (line.core.empty()) continue;
    markdown.append(kParagraphPrefix).append(line.core).append("\n\n");
  }
  return markdown;
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
  const auto document = parseDocument(prefixedParagraphs(lines));
  cmark_node* paragraph = cmark_node_first_child(document.get());
  AttributedString result;
  const TextRun plain;
  for (const auto& line : lines) {
    append(result.runs_, line.leading, plain);
    if (!line.core.empty() && paragraph != nullptr) {
      for (const auto& run : paragraphRuns(paragraph)) append(result.runs_, run.text, run);
      paragraph = cmark_node_next(paragraph);
    }
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
