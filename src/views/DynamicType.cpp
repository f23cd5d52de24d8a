#include "views/DynamicType.hpp"

#include <array>

namespace quillan::views {

namespace {

constexpr std::size_t kSizes = 12;
constexpr std::size_t kStyles = 11;

// Rows follow TextStyle's order (largeTitle, title, title2, title3, headline,
// subheadline, body, callout, footnote, caption, caption2); columns follow
// DynamicTypeSize's (xSmall ... accessibility5). The large column is the
// default sizes.
constexpr std::array<std::array<double, kSizes>, kStyles> kPointSizes{{
    {31, 32, 33, 34, 36, 38, 40, 44, 48, 52, 56, 60},  // largeTitle
    {25, 26, 27, 28, 30, 32, 34, 38, 43, 48, 53, 58},  // title
    {19, 20, 21, 22, 24, 26, 28, 34, 39, 44, 50, 56},  // title2
    {17, 18, 19, 20, 22, 24, 26, 31, 37, 43, 49, 55},  // title3
    {14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53},  // headline
    {12, 13, 14, 15, 17, 19, 21, 25, 30, 36, 42, 49},  // subheadline
    {14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53},  // body
    {13, 14, 15, 16, 18, 20, 22, 26, 32, 38, 44, 51},  // callout
    {12, 12, 12, 13, 15, 17, 19, 23, 27, 33, 38, 44},  // footnote
    {11, 11, 11, 12, 14, 16, 18, 22, 26, 32, 37, 43},  // caption
    {11, 11, 11, 11, 13, 15, 17, 20, 24, 29, 34, 40},  // caption2
}};

}  // namespace

double pointSize(TextStyle style, DynamicTypeSize size) {
  return kPointSizes[static_cast<std::size_t>(style)][static_cast<std::size_t>(size)];
}

}  // namespace quillan::views
