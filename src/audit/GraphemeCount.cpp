#include "audit/GraphemeCount.hpp"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <memory>

namespace quillan::audit {

std::size_t graphemeCount(std::string_view text) {
  // One iterator per process: creating one loads ICU's break rules.
  static thread_local std::unique_ptr<icu::BreakIterator> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::BreakIterator>(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(),
                                                                                           status));
  }();
  const icu::UnicodeString unicode =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  if (!iterator) return static_cast<std::size_t>(unicode.countChar32());
  iterator->setText(unicode);
  std::size_t count = 0;
  for (std::int32_t at = iterator->next(); at != icu::BreakIterator::DONE; at = iterator->next()) ++count;
  return count;
}

}  // namespace quillan::audit
