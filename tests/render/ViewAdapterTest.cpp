#include <gtest/gtest.h>

#include "render/ViewAdapter.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

using namespace views;

TEST(ViewAdapter, ForegroundColoursAndHierarchicalLevelsCombine) {
  struct Case {
    const char* name;
    Node tree;
    ColorScheme scheme;
    Rgba color;
  };
  const Case cases[] = {
      // A level nearer the text lowers the opacity of a colour set outside it.
      {"secondary orange",
       text("a").foregroundStyle(HierarchicalShapeStyle::secondary).foregroundColor(Color::orange()),
       ColorScheme::light, Rgba::fromHex(0xFF9500, 0.5)},
      {"tertiary orange in the dark",
       text("a").foregroundStyle(HierarchicalShapeStyle::tertiary).foregroundStyle(Color::orange()), ColorScheme::dark,
       Rgba::fromHex(0xFF9F0A, 0.25)},
      // Without a colour, levels are the label colours.
      {"secondary label", text("a").foregroundStyle(HierarchicalShapeStyle::secondary), ColorScheme::light,
       Rgba::fromHex(0x3C3C43, 0.6)},
      {"primary label", text("a"), ColorScheme::light, Rgba::fromHex(0x000000)},
      {"the nearer colour wins", text("a").foregroundColor(Color::red()).foregroundColor(Color::orange()),
       ColorScheme::light, Rgba::fromHex(0xFF3B30)},
  };
  for (const auto& c : cases) {
    Environment environment;
    environment.colorScheme = c.scheme;
    EXPECT_EQ(adaptViewTree(c.tree, environment).content.foreground.color, c.color) << c.name;
  }
}

TEST(ViewAdapter, RowAlignmentsReachTheLayoutNodes) {
  struct Case {
    VerticalAlignment alignment;
    Baseline baseline;
    double fraction;
  };
  const Case cases[] = {{VerticalAlignment::firstTextBaseline, Baseline::first, 0.5},
                        {VerticalAlignment::lastTextBaseline, Baseline::last, 0.5},
                        {VerticalAlignment::bottom, Baseline::none, 1.0}};
  for (const auto& c : cases) {
    const auto adapted = adaptViewTree(hstack(c.alignment, {text("a")}), Environment{});
    EXPECT_EQ(adapted.content.alignment.baseline, c.baseline) << static_cast<int>(c.alignment);
    EXPECT_DOUBLE_EQ(adapted.content.alignment.vertical, c.fraction) << static_cast<int>(c.alignment);
  }
}

TEST(ViewAdapter, ScalesTextStylesAndTheSymbolsSizedByThemButNotFixedSizes) {
  const Node tree = vstack({text("styled").font(Font::body()), text("fixed").font(Font::system(12)),
                            image("checkmark").font(Font::title3()), text("default")});
  struct Case {
    DynamicTypeSize size;
    double body, title3;
  };
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
