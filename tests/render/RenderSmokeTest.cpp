#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "SampleTrees.hpp"
#include "render/Renderer.hpp"

namespace quillan::render {
namespace {

TEST(RenderSmoke, WritesPNG) {
  RenderContext context;
  context.env.family = views::WidgetFamily::systemMedium;
  const auto bytes = renderToPNGBytes(testing::memoriesAndCompose(), context);
  ASSERT_GT(bytes.size(), 8u);
  EXPECT_EQ(bytes[1], 'P');
  if (const char* dir = std::getenv("QUILLAN_RENDER_OUT")) {
    renderToFile(testing::memoriesAndCompose(), context, Format::png, std::string(dir) + "/medium.png");
    renderToFile(testing::streakMedium(), context, Format::png, std::string(dir) + "/streak.png");
    context.env.colorScheme = views::ColorScheme::dark;
    context.redacted = true;
    renderToFile(testing::streakMedium(), context, Format::png, std::string(dir) + "/streak-redacted.png");
    context.env.family = views::WidgetFamily::accessoryCircular;
    context.env.renderingMode = views::WidgetRenderingMode::vibrant;
    renderToFile(testing::lockScreenCompose(), context, Format::png, std::string(dir) + "/lock.png");
  }
}

}  // namespace
}  // namespace quillan::render
