#include "compose/WritingPrompts.hpp"

#include "platform/Fatal.hpp"
#include "platform/RandomSource.hpp"

namespace quillan::compose {

const std::string& pickPrompt(const std::vector<std::string>& texts) {
  if (texts.empty()) {
    platform::fatalError("OnThisDayWidgetExtension/ComposeButtonSmallView", platform::kUnexpectedlyFoundNil);
  }
  return texts[platform::RandomSource::nextBelow(texts.size())];
}

}  // namespace quillan::compose
