#include <gtest/gtest.h>

#include "render/ViewAdapter.hpp"
#include "views/Builders.hpp"
#include "views/DynamicType.hpp"

namespace quillan::render {
namespace {

using namespace views;

TEST(DynamicType, EveryStyleGrowsWithTheSizeAndLargeIsTheDefault) {
  for (const auto& [style, name] : enumNames(TextStyle{})) {
    double previous = 0;
    for (const auto& [size, sizeName] : enumNames(DynamicTypeSize{})) {
      const double points = pointSize(style, size);
      EXPECT_GE(points, previous) << name << " at " << sizeName;
      EXPECT_GE(points, 11) << name << " at " << sizeName;  // never below the smallest legible size
      previous = points;
    }
    EXPECT_EQ(pointSize(style, DynamicTypeSize::large), pointSize(style)) << name;
    EXPECT_GT(pointSize(style, DynamicTypeSize::accessibility5), 1.5 * pointSize(style)) << name;
  }
}

TEST(DynamicType, ScalesTextStylesAndTheSymbolsSizedByThemButNotFixedSizes) {
  const Node tree = vstack({text("styled").font(Font::body()), text("fixed").font(Font::system(12)),
                            image("checkmark").font(Font::title3()), text("default")});
  struct Case { DynamicTypeSize size; double body, title3; };
  for (const Case c : {Case{DynamicTypeSize::xSmall, 14, 17}, Case{DynamicTypeSize::large, 17, 20},
                       Case{DynamicTypeSize::accessibility5, 53, 55}}) {
    Environment env;
    env.dynamicTypeSize = c.size;
    const AdaptedWidget adapted = adaptViewTree(tree, env);
    const auto& children = adapted.content.children;
    ASSERT_EQ(children.size(), 4u);
    EXPECT_EQ(children[0].text.front().font.size, c.body);
    EXPECT_EQ(children[1].text.front().font.size, 12);
    EXPECT_EQ(children[2].symbolFont.size, c.title3);
    EXPECT_EQ(children[3].text.front().font.size, c.body);
  }
}

}  // namespace
}  // namespace quillan::render
