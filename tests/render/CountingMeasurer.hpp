#pragma once

#include <cstddef>

#include "render/TextMeasurer.hpp"

namespace quillan::render::testing {

// Passes measuring on to another measurer and counts the bytes of text it was
// asked to measure: the work a layout does, whatever the machine's speed.
class CountingMeasurer final : public TextMeasurer {
 public:
  explicit CountingMeasurer(const TextMeasurer& inner) : inner_(inner) {}

  double width(const StyledText& runs) const override {
    for (const auto& run : runs) bytes_ += run.text.size();
    return inner_.width(runs);
  }
  FontMetrics metrics(const FontDescription& font) const override { return inner_.metrics(font); }

  std::size_t bytesMeasured() const { return bytes_; }

 private:
  const TextMeasurer& inner_;
  mutable std::size_t bytes_ = 0;
};

}  // namespace quillan::render::testing
