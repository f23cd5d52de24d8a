#pragma once

#include "render/StyledRun.hpp"
#include "render/TextMeasurer.hpp"

namespace quillan::render {

// The tallest line, ascender, descender and cap height among the runs' fonts
// (the default font's for no runs): what a line of the text must hold.
FontMetrics combinedMetrics(const StyledText& text, const TextMeasurer& measurer);

// The smallest font size among the runs (the default size for no runs).
double smallestFontSize(const StyledText& text);

}  // namespace quillan::render
