#include "render/FakeTextMeasurer.hpp"

#include "render/Utf8.hpp"

namespace quillan::render {

double FakeTextMeasurer::width(const StyledText& runs) const {
  std::size_t count = 0;
  for (const auto& run : runs) count += codePointCount(run.text);
  return static_cast<double>(count) * advance_;
}

FontMetrics FakeTextMeasurer::metrics(const FontDescription&) const {
  return {lineHeight_, lineHeight_ * 0.8, lineHeight_ * 0.2, lineHeight_ * 0.6};
}

}  // namespace quillan::render
