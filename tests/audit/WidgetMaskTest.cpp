#include <gtest/gtest.h>

#include "audit/FindingCrop.hpp"
#include "audit/WidgetMask.hpp"

namespace quillan::audit {
namespace {

TEST(WidgetMaskTest, RoundedCornersAndTheLockScreensCircleHideWhatLiesOutside) {
  render::WidgetReview rounded;
  rounded.size = {100, 60};
  rounded.cornerRadius = 20;
  rounded.scale = 2;
  render::WidgetReview circle;
  circle.size = {76, 76};
  circle.circularMask = true;
  const struct {
    const render::WidgetReview& widget;
    int x, y;  // a pixel of the picture
    bool inside;
  } table[] = {
      {rounded, 0, 0, false},     {rounded, 12, 12, true},  {rounded, 6, 6, false},    {rounded, 100, 0, true},
      {rounded, 199, 119, false}, {rounded, 199, 60, true}, {rounded, 200, 60, false}, {rounded, -1, 60, false},
      {circle, 38, 0, true},      {circle, 5, 5, false},    {circle, 38, 38, true},    {circle, 75, 38, true},
  };
  for (const auto& row : table)
    EXPECT_EQ(insideWidgetMask(row.widget, row.x, row.y), row.inside) << row.x << "," << row.y;
}

TEST(WidgetMaskTest, ACropKeepsInsideThePictureAndOutlinesTheFrame) {
  const render::PixelImage picture(200, 100, {255, 255, 255, 255});
  // Near the top-left corner: the margin is cut at the picture's edge.
  const auto crop = findingCrop(picture, 2, {10, 10, 20, 10});
  EXPECT_EQ(crop.width, (10 + 20 + 24) * 2);
  EXPECT_EQ(crop.height, (10 + 10 + 24) * 2);
  const render::PixelImage::Pixel white{255, 255, 255, 255};
  EXPECT_NE(crop.at(19, 25), white);  // on the outline's left edge
  EXPECT_EQ(crop.at(25, 25), white);  // inside the frame
  EXPECT_EQ(crop.at(10, 25), white);  // outside it
}

}  // namespace
}  // namespace quillan::audit
