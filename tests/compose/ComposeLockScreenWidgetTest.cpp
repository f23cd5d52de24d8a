#include "compose/ComposeLockScreenWidget.hpp"

#include <gtest/gtest.h>

namespace quillan::compose {
namespace {

using namespace views;

Node iconTree(int major) {
  Environment environment;
  environment.family = WidgetFamily::accessoryCircular;
  environment.platformVersion = {major, 0};
  return ComposeLockScreenWidgetEntryView({platform::Date()}).body(environment);
}

// The symbol fills the circular slot and takes the lock screen's two tint
// levels; nothing else colours, frames or pads it.
const std::vector<Modifier> kIconModifiers = {
    {modifiers::Resizable{EdgeInsets{}, ResizingMode::stretch}},
    {modifiers::ForegroundStyle{HierarchicalShapeStyle::primary, HierarchicalShapeStyle::secondary}},
    {modifiers::ImageScale{ImageScale::large}},
    {modifiers::Font{Font::title()}},
};

TEST(ComposeLockScreen, FromPlatform17TheContainerBackgroundIsClear) {
  const auto tree = iconTree(17);
  ASSERT_TRUE(std::holds_alternative<AnyView>(tree.kind));
  EXPECT_EQ(tree.modifiers, std::vector<Modifier>{{modifiers::WidgetURL{"widget-deeplink://AddRecord"}}});
  const auto& icon = tree.children().at(0);
  EXPECT_EQ(std::get<Image>(icon.kind).systemName, "square.and.pencil.circle.fill");
  ASSERT_EQ(icon.modifiers.size(), kIconModifiers.size() + 1);
  EXPECT_TRUE(std::equal(kIconModifiers.begin(), kIconModifiers.end(), icon.modifiers.begin()));
  const auto& background = std::get<modifiers::ContainerBackground>(icon.modifiers.back().kind);
  EXPECT_EQ(background.alignment, Alignment::center);
  EXPECT_EQ(background.content, Node(Color::clear()));
}

TEST(ComposeLockScreen, BeforePlatform17NoContainerBackgroundIsSet) {
  const auto tree = iconTree(16);
  ASSERT_TRUE(std::holds_alternative<AnyView>(tree.kind));
  EXPECT_EQ(tree.children().at(0).modifiers, kIconModifiers);
  EXPECT_EQ(tree.modifiers, std::vector<Modifier>{{modifiers::WidgetURL{"widget-deeplink://AddRecord"}}});
}

}  // namespace
}  // namespace quillan::compose
