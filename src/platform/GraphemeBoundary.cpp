#include "platform/GraphemeBoundary.hpp"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <limits>
#include <memory>

#include "platform/Utf8.hpp"

namespace quillan::platform {
namespace {

struct UTextCloser {
  void operator()(UText* text) const { utext_close(text); }
};

// The longest sequence after a boundary that decides whether it is one.
constexpr std::size_t kLookahead = 4;

}  // namespace

std::size_t graphemeBoundaryAtOrBefore(std::string_view text, std::size_t offset) {
  const std::size_t cut = codePointBoundaryAtOrBefore(text, offset);
  if (cut == 0 || cut >= text.size()) return cut;
  // Whether a cluster ends at `cut` depends on the text before it and on the
  // one character after it, never on more.
  const std::string_view window = text.substr(0, std::min(text.size(), cut + kLookahead));
  if (window.size() > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) return cut;
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<UText, UTextCloser> utext(utext_openUTF8(nullptr, window.data(), static_cast<int64_t>(window.size()),
                                                           &status));
  std::unique_ptr<icu::BreakIterator> clusters(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(),
                                                                                           status));
  if (U_FAILURE(status)) return cut;
  clusters->setText(utext.get(), status);
  if (U_FAILURE(status) || clusters->isBoundary(static_cast<int32_t>(cut))) return cut;
  const int32_t preceding = clusters->preceding(static_cast<int32_t>(cut));
  return preceding > 0 ? static_cast<std::size_t>(preceding) : cut;
}

}  // namespace quillan::platform
