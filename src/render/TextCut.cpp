#include "render/TextCut.hpp"

#include <algorithm>

#include "platform/GraphemeBoundary.hpp"
#include "render/Utf8.hpp"

namespace quillan::render {

CutText cutToCodePoints(const StyledText& runs, std::size_t maxCodePoints) {
  // Enough bytes for the kept code points and the one after, which decides
  // whether the cut ends a grapheme cluster.
  const std::size_t budget = (maxCodePoints + 1) * kMaxCodePointBytes;
  std::string flat;
  std::size_t total = 0;
  for (const auto& run : runs) {
    if (flat.size() < budget) flat.append(run.text, 0, budget - flat.size());
    total += run.text.size();
  }
  const auto bounds = codePointBoundaries(flat);
  std::size_t keep = flat.size();
  if (bounds.size() - 1 > maxCodePoints) keep = platform::graphemeBoundaryAtOrBefore(flat, bounds[maxCodePoints]);
  CutText out;
  out.cut = keep < total;
  std::size_t start = 0;
  for (const auto& run : runs) {
    if (start >= keep) break;
    const std::size_t length = std::min(run.text.size(), keep - start);
    StyledRun kept = run;
    kept.text = run.text.substr(0, length);
    out.runs.push_back(std::move(kept));
    start += run.text.size();
  }
  return out;
}

}  // namespace quillan::render
