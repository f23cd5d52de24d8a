#include "render/TextLayout.hpp"

#include <algorithm>
#include <cmath>

#include "render/Utf8.hpp"

namespace quillan::render {

namespace {

constexpr const char* kEllipsis = "\u2026";
// Widths are compared with this slack so that a line measuring exactly the
// proposal still fits despite floating-point noise.
constexpr double kFitTolerance = 1e-9;

// The text flattened to one string, with the run each byte belongs to.
class FlatText {
 public:
  explicit FlatText(const StyledText& runs) : runs_(runs) {
    for (const auto& run : runs) {
      runStarts_.push_back(text_.size());
      text_ += run.text;
    }
    runStarts_.push_back(text_.size());
    bounds_ = codePointBoundaries(text_);
  }

  std::size_t codePoints() const { return bounds_.size() - 1; }
  char byteAt(std::size_t codePoint) const { return text_[bounds_[codePoint]]; }
  bool isSpace(std::size_t cp) const { return byteAt(cp) == ' ' || byteAt(cp) == '\t'; }
  bool isNewline(std::size_t cp) const { return byteAt(cp) == '\n'; }

  // Runs covering code points [from, to).
  StyledText slice(std::size_t from, std::size_t to) const {
    StyledText out;
    const std::size_t begin = bounds_[from], end = bounds_[to];
    for (std::size_t r = 0; r < runs_.size(); ++r) {
      const std::size_t lo = std::max(begin, runStarts_[r]), hi = std::min(end, runStarts_[r + 1]);
      if (lo >= hi) continue;
      StyledRun piece = runs_[r];
      piece.text = text_.substr(lo, hi - lo);
      out.push_back(std::move(piece));
    }
    return out;
  }

  // The style of the run at code point `cp` (the last run when past the end).
  StyledRun styleAt(std::size_t cp) const {
    const std::size_t byte = bounds_[std::min(cp, codePoints() - 1)];
    for (std::size_t r = 0; r + 1 < runStarts_.size(); ++r)
      if (byte < runStarts_[r + 1]) return runs_[r];
    return runs_.back();
  }

 private:
  const StyledText& runs_;
  std::string text_;
  std::vector<std::size_t> runStarts_;
  std::vector<std::size_t> bounds_;
};

struct LineSpan {
  std::size_t from;
  std::size_t to;  // exclusive, trailing spaces already dropped
};

class Wrapper {
 public:
  Wrapper(const FlatText& flat, const TextMeasurer& measurer, std::optional<double> width)
      : flat_(flat), measurer_(measurer), width_(width) {}

  std::vector<LineSpan> wrapAll() const {
    std::vector<LineSpan> lines;
    std::size_t start = 0;
    const std::size_t n = flat_.codePoints();
    while (start <= n) {
      std::size_t end = start;
      while (end < n && !flat_.isNewline(end)) ++end;
      wrapParagraph(start, end, lines);
      start = end + 1;
    }
    return lines;
  }

  double widthOf(std::size_t from, std::size_t to) const {
    return from >= to ? 0.0 : measurer_.width(flat_.slice(from, to));
  }
  bool fits(std::size_t from, std::size_t to) const {
    return !width_ || widthOf(from, to) <= *width_ + kFitTolerance;
  }

 private:
  std::size_t trimSpaces(std::size_t from, std::size_t to) const {
    while (to > from && flat_.isSpace(to - 1)) --to;
    return to;
  }

  void wrapParagraph(std::size_t from, std::size_t end, std::vector<LineSpan>& lines) const {
    if (!width_ || from == end) {
      lines.push_back({from, trimSpaces(from, end)});
      return;
    }
    std::size_t lineStart = from;
    while (lineStart < end) {
      const std::size_t lineEnd = longestFittingWords(lineStart, end);
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

 public:
  std::size_t longestFittingPrefix(std::size_t from, std::size_t end) const {
    std::size_t lo = from + 1, hi = end;  // lo always accepted
    while (lo < hi) {
      const std::size_t mid = (lo + hi + 1) / 2;
      if (fits(from, mid)) lo = mid; else hi = mid - 1;
    }
    return lo;
  }

 private:
  const FlatText& flat_;
  const TextMeasurer& measurer_;
  std::optional<double> width_;
};

// The last visible line, re-set from its start to the end of its paragraph,
// cut to fit with "…" after it.
TextLine truncatedLine(const FlatText& flat, const TextMeasurer& measurer, std::optional<double> width,
                       std::size_t from) {
  std::size_t end = from;
  while (end < flat.codePoints() && !flat.isNewline(end)) ++end;
  StyledRun ellipsis = flat.styleAt(end > from ? end - 1 : from);
  ellipsis.text = kEllipsis;
  ellipsis.link.reset();
  auto withEllipsis = [&](std::size_t to) {
    while (to > from && flat.isSpace(to - 1)) --to;
    StyledText runs = flat.slice(from, to);
    runs.push_back(ellipsis);
    return runs;
  };
  std::size_t lo = from, hi = end;
  while (lo < hi) {
    const std::size_t mid = (lo + hi + 1) / 2;
    if (!width || measurer.width(withEllipsis(mid)) <= *width + kFitTolerance) lo = mid; else hi = mid - 1;
  }
  StyledText runs = withEllipsis(lo);
  return {runs, measurer.width(runs)};
}

FontMetrics combinedMetrics(const StyledText& text, const TextMeasurer& measurer) {
  FontMetrics result{};
  if (text.empty()) return measurer.metrics(FontDescription{});
  for (const auto& run : text) {
    const FontMetrics m = measurer.metrics(run.font);
    result.lineHeight = std::max(result.lineHeight, m.lineHeight);
    result.ascender = std::max(result.ascender, m.ascender);
    result.descender = std::max(result.descender, m.descender);
    result.capHeight = std::max(result.capHeight, m.capHeight);
  }
  return result;
}

std::size_t visibleLineCount(std::size_t total, double lineHeight, const TextLimits& limits) {
  std::size_t count = total;
  if (limits.lineLimit && *limits.lineLimit > 0)
    count = std::min(count, static_cast<std::size_t>(*limits.lineLimit));
  if (limits.height && lineHeight > 0) {
    const auto fitting = static_cast<std::size_t>(std::floor(*limits.height / lineHeight + kFitTolerance));
    count = std::min(count, std::max<std::size_t>(1, fitting));
  }
  return std::max<std::size_t>(1, count);
}

}  // namespace

TextLayout layoutText(const StyledText& text, const TextMeasurer& measurer, const TextLimits& limits) {
  const FlatText flat(text);
  const FontMetrics metrics = combinedMetrics(text, measurer);
  TextLayout layout;
  layout.lineHeight = metrics.lineHeight;
  layout.ascender = metrics.ascender;
  const Wrapper wrapper(flat, measurer, limits.width);
  const std::vector<LineSpan> spans = wrapper.wrapAll();
  const std::size_t visible = visibleLineCount(spans.size(), metrics.lineHeight, limits);
  for (std::size_t i = 0; i < visible; ++i) {
    const LineSpan span = spans[i];
    layout.lines.push_back({flat.slice(span.from, span.to), wrapper.widthOf(span.from, span.to)});
  }
  if (visible < spans.size()) {
    layout.truncated = true;
    layout.lines.back() = truncatedLine(flat, measurer, limits.width, spans[visible - 1].from);
  }
  for (const auto& line : layout.lines) layout.size.width = std::max(layout.size.width, line.width);
  layout.size.height = static_cast<double>(layout.lines.size()) * metrics.lineHeight;
  return layout;
}

}  // namespace quillan::render
