#include <gtest/gtest.h>

#include <string>

#include "CountingMeasurer.hpp"
#include "render/FakeTextMeasurer.hpp"
#include "render/HitTest.hpp"
#include "render/LayoutJson.hpp"
#include "render/Renderer.hpp"
#include "render/WidgetLayout.hpp"
#include "support/SmallStack.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeLimits.hpp"

namespace quillan::render {
namespace {

// `levels` rows, each holding the next row and a text, the innermost a link;
// every row is aligned on its texts' first baselines and padded, so it counts
// two levels towards the decoder's limit.
std::string nestedRows(std::size_t levels) {
  std::string json =
      R"({"type": "Link", "destination": "widget-deeplink://Deep", "children": [{"type": "Text", "text": "in"}]})";
  for (std::size_t i = 1; i < levels; ++i) {
    json = R"({"type": "HStack", "alignment": "firstTextBaseline", "spacing": 0, "children": [)" + json +
           R"(, {"type": "Text", "text": "x"}], "modifiers": [{"modifier": "padding", "length": 0.5}]})";
  }
  return json;
}

// Finding a row's baseline places its subtree; done again at every level
// above, the work would double with each row.
TEST(DeepTree, TheDeepestTreeTheDecoderAcceptsIsDrawnOnASmallStackInLinearWork) {
  const std::size_t levels = views::limits::kMaxDepth / 2;
  const views::Node tree = views::decodeViewTree(nestedRows(levels));
  ASSERT_THROW(views::decodeViewTree(nestedRows(levels + 1)), views::ViewTreeJsonError);
  const RenderContext context{.env = {.platformVersion = {}, .family = views::WidgetFamily::systemMedium}};
  // Drawn, hit-tested, laid out and encoded on the small stack; the deepest
  // tree decodes there too.
  quillan::testing::runOnStackOf(1 << 20, [&] {
    EXPECT_GT(renderToPNGBytes(tree, context).size(), 0u);
    const auto regions = hitRegions(tree, context);
    ASSERT_EQ(regions.size(), 1u);
    EXPECT_EQ(regions.front().url, "widget-deeplink://Deep");
    EXPECT_NE(layoutJSON(tree, context).find("widget-deeplink://Deep"), std::string::npos);
    EXPECT_EQ(views::decodeViewTree(views::encodeViewTree(tree)), tree);
  });
  const FakeTextMeasurer fake;
  testing::CountingMeasurer counting(fake);
  layoutWidget(tree, context, counting);
  EXPECT_LT(counting.bytesMeasured(), 100'000u);
}

}  // namespace
}  // namespace quillan::render
