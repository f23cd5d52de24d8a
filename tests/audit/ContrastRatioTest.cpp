#include <gtest/gtest.h>

#include "audit/ContrastRatio.hpp"

namespace quillan::audit {
namespace {

TEST(ContrastRatioTest, RatiosAreWcags) {
  const render::Rgba black{0, 0, 0, 1}, white{1, 1, 1, 1};
  const struct {
    render::Rgba text, background;
    double ratio;
  } table[] = {
      {black, white, 21},
      {white, white, 1},
      // #767676 is the lightest grey that passes 4.5:1 on white.
      {render::Rgba::fromHex(0x767676), white, 4.54},
      // Half-transparent black over white reads as mid grey, #808080's 3.95:1 give or take its rounding.
      {black.withAlpha(0.5), white, 3.95},
  };
  for (const auto& row : table) {
    EXPECT_NEAR(contrastRatio(composited(row.text, row.background), row.background), row.ratio, 0.03);
  }
}

}  // namespace
}  // namespace quillan::audit
