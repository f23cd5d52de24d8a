#include "render/TextLayout.hpp"

#include <algorithm>
#include <cmath>

#include "platform/GraphemeBoundary.hpp"
#include "render/Ellipsis.hpp"
#include "render/StyledTextMetrics.hpp"
#include "render/Utf8.hpp"

namespace quillan::render {

namespace {

// Widths are compared with this slack so that a line measuring exactly the
// proposal still fits despite floating-point noise.
constexpr double kWidthFitTolerance = 1e-9;

// The text flattened to one string, with the run each byte belongs to, cut at
// a grapheme boundary after `maxCodePoints`: nothing past the cut is copied.
class FlatText {
 public:
  FlatText(const StyledText& runs, std::size_t maxCodePoints) : runs_(runs) {
    // Enough bytes for the kept code points and the one after, which decides
    // whether the cut ends a grapheme cluster.
    const std::size_t budget = (maxCodePoints + 1) * kMaxCodePointBytes;
    std::size_t total = 0;
    for (const auto& run : runs) {
      runStarts_.push_back(text_.size());
      if (text_.size() < budget) text_.append(run.text, 0, budget - text_.size());
      total += run.text.size();
    }
    runStarts_.push_back(text_.size());
    bounds_ = codePointBoundaries(text_);
    if (codePoints() > maxCodePoints) cutAt(platform::graphemeBoundaryAtOrBefore(text_, bounds_[maxCodePoints]));
    cut_ = text_.size() < total;
  }

  std::size_t codePoints() const { return bounds_.size() - 1; }
  // Whether the text goes on past what was kept.
  bool cut() const { return cut_; }
  char byteAt(std::size_t codePoint) const { return text_[bounds_[codePoint]]; }
  bool isSpace(std::size_t cp) const { return byteAt(cp) == ' ' || byteAt(cp) == '\t'; }
  bool isNewline(std::size_t cp) const { return byteAt(cp) == '\n'; }

  // The end of the paragraph holding code point `cp`.
  std::size_t paragraphEnd(std::size_t cp) const {
    while (cp < codePoints() && !isNewline(cp)) ++cp;
    return cp;
  }

  // Runs covering code points [from, to).
  StyledText slice(std::size_t from, std::size_t to) const {
    StyledText out;
    const std::size_t begin = bounds_[from], end = bounds_[to];
    if (begin >= end) return out;
    for (std::size_t r = runAt(begin); r < runs_.size() && runStarts_[r] < end; ++r) {
      const std::size_t lo = std::max(begin, runStarts_[r]), hi = std::min(end, runStarts_[r + 1]);
      if (lo >= hi) continue;
      const StyledRun& run = runs_[r];
      out.push_back({text_.substr(lo, hi - lo), run.font, run.strikethrough, run.link});
    }
    return out;
  }

  // The run at code point `cp` (the last run when past the end).
  const StyledRun& runAtCodePoint(std::size_t cp) const {
    if (codePoints() == 0) return runs_.back();
    return runs_[runAt(bounds_[std::min(cp, codePoints() - 1)])];
  }

 private:
  // The run holding byte `byte` of the kept text: the last one starting at or
  // before it (runs that are empty start where the next one does).
  std::size_t runAt(std::size_t byte) const {
    const auto after = std::upper_bound(runStarts_.begin(), runStarts_.end() - 1, byte);
    return static_cast<std::size_t>(after - runStarts_.begin()) - 1;
  }

  void cutAt(std::size_t byte) {
    text_.resize(byte);
    for (auto& start : runStarts_) start = std::min(start, byte);
    bounds_ = codePointBoundaries(text_);
  }

  const StyledText& runs_;
  std::string text_;
  std::vector<std::size_t> runStarts_;
  std::vector<std::size_t> bounds_;
  bool cut_ = false;
};

struct LineSpan {
  std::size_t from;
  std::size_t to;  // exclusive, trailing spaces already dropped
};

class Wrapper {
 public:
  Wrapper(const FlatText& flat, const TextMeasurer& measurer, std::optional<double> width, std::size_t lineCodePoints)
      : flat_(flat), measurer_(measurer), width_(width), lineCodePoints_(lineCodePoints) {}

  // The first `maxLines` lines of the text.
  std::vector<LineSpan> wrap(std::size_t maxLines) const {
    std::vector<LineSpan> lines;
    const std::size_t n = flat_.codePoints();
    for (std::size_t start = 0; start <= n && lines.size() < maxLines;) {
      const std::size_t end = flat_.paragraphEnd(start);
      wrapParagraph(start, end, maxLines, lines);
      start = end + 1;
    }
    return lines;
  }

  double widthOf(std::size_t from, std::size_t to) const {
    return from >= to ? 0.0 : measurer_.width(flat_.slice(from, to));
  }
  bool fits(std::size_t from, std::size_t to) const {
    return !width_ || widthOf(from, to) <= *width_ + kWidthFitTolerance;
  }
  // How far a line starting at `from` can reach before `end`: no line holds
  // more than lineCodePoints, so no search for its break looks further.
  std::size_t reach(std::size_t from, std::size_t end) const { return std::min(end, from + lineCodePoints_); }

 private:
  std::size_t trimSpaces(std::size_t from, std::size_t to) const {
    while (to > from && flat_.isSpace(to - 1)) --to;
    return to;
  }

  void wrapParagraph(std::size_t from, std::size_t end, std::size_t maxLines, std::vector<LineSpan>& lines) const {
    if (!width_ || from == end) {
      lines.push_back({from, trimSpaces(from, reach(from, end))});
      return;
    }
    std::size_t lineStart = from;
    while (lineStart < end && lines.size() < maxLines) {
      const std::size_t lineEnd = longestFittingWords(lineStart, reach(lineStart, end));
      lines.push_back({lineStart, trimSpaces(lineStart, lineEnd)});
      lineStart = lineEnd;
      while (lineStart < end && flat_.isSpace(lineStart)) ++lineStart;
    }
  }

  // End of the longest run of whole words from `from` that fits; a first word
  // too wide on its own is cut between characters (at least one).
  std::size_t longestFittingWords(std::size_t from, std::size_t end) const {
    std::size_t accepted = from;
    std::size_t cursor = from;
    while (cursor < end) {
      std::size_t wordEnd = cursor;
      while (wordEnd < end && flat_.isSpace(wordEnd)) ++wordEnd;
      while (wordEnd < end && !flat_.isSpace(wordEnd)) ++wordEnd;
      if (!fits(from, trimSpaces(from, wordEnd))) break;
      accepted = cursor = wordEnd;
    }
    if (accepted > from) return accepted;
    return longestFittingPrefix(from, end);
  }

  std::size_t longestFittingPrefix(std::size_t from, std::size_t end) const {
    std::size_t lo = from + 1, hi = end;  // lo always accepted
    while (lo < hi) {
      const std::size_t mid = (lo + hi + 1) / 2;
      if (fits(from, mid)) lo = mid;
      else hi = mid - 1;
    }
    return lo;
  }

  const FlatText& flat_;
  const TextMeasurer& measurer_;
  std::optional<double> width_;
  std::size_t lineCodePoints_;
};

// The last visible line, re-set from its start to the end of its paragraph,
// cut to fit with "…" after it.
TextLine truncatedLine(const FlatText& flat, const Wrapper& wrapper, const TextMeasurer& measurer,
                       std::optional<double> width, std::size_t from) {
  const std::size_t end = wrapper.reach(from, flat.paragraphEnd(from));
  const StyledRun& last = flat.runAtCodePoint(end > from ? end - 1 : from);
  const StyledRun ellipsis{kEllipsis, last.font, last.strikethrough, std::nullopt};
  auto withEllipsis = [&](std::size_t to) {
    while (to > from && flat.isSpace(to - 1)) --to;
    StyledText runs = flat.slice(from, to);
    runs.push_back(ellipsis);
    return runs;
  };
  std::size_t lo = from, hi = end;
  while (lo < hi) {
    const std::size_t mid = (lo + hi + 1) / 2;
    if (!width || measurer.width(withEllipsis(mid)) <= *width + kWidthFitTolerance) lo = mid;
    else hi = mid - 1;
  }
  StyledText runs = withEllipsis(lo);
  return {runs, measurer.width(runs), {}};
}

}  // namespace

TextLayout layoutText(const StyledText& text, const TextMeasurer& measurer, const TextLimits& limits) {
  const FontMetrics metrics = combinedMetrics(text, measurer);
  const ShownTextBound bound = shownTextBound(limits, metrics.lineHeight, smallestFontSize(text));
  const FlatText flat(text, bound.codePoints);
  TextLayout layout;
  layout.lineHeight = metrics.lineHeight;
  layout.ascender = metrics.ascender;
  const Wrapper wrapper(flat, measurer, limits.width, bound.lineCodePoints);
  // One line past the bound tells whether the text goes on.
  const std::vector<LineSpan> spans = wrapper.wrap(bound.lines + 1);
  const std::size_t visible = std::min(spans.size(), bound.lines);
  for (std::size_t i = 0; i < visible; ++i) {
    const LineSpan span = spans[i];
    layout.lines.push_back({flat.slice(span.from, span.to), wrapper.widthOf(span.from, span.to), {}});
  }
  if (visible < spans.size() || flat.cut()) {
    layout.truncated = true;
    layout.lines.back() = truncatedLine(flat, wrapper, measurer, limits.width, spans[visible - 1].from);
  }
  for (const auto& line : layout.lines) layout.size.width = std::max(layout.size.width, line.width);
  layout.size.height = static_cast<double>(layout.lines.size()) * metrics.lineHeight;
  return layout;
}

}  // namespace quillan::render
