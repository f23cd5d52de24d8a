#include <gtest/gtest.h>

#include "render/ViewAdapter.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

TEST(BaselineAdapter, RowAlignmentsReachTheLayoutNodes) {
  struct Case {
    views::VerticalAlignment alignment;
    Baseline baseline;
    double fraction;
  };
  const Case cases[] = {{views::VerticalAlignment::firstTextBaseline, Baseline::first, 0.5},
                        {views::VerticalAlignment::lastTextBaseline, Baseline::last, 0.5},
                        {views::VerticalAlignment::bottom, Baseline::none, 1.0}};
  for (const auto& c : cases) {
    const auto adapted = adaptViewTree(views::hstack(c.alignment, {views::text("a")}), views::Environment{});
    EXPECT_EQ(adapted.content.alignment.baseline, c.baseline) << static_cast<int>(c.alignment);
    EXPECT_DOUBLE_EQ(adapted.content.alignment.vertical, c.fraction) << static_cast<int>(c.alignment);
  }
}

}  // namespace
}  // namespace quillan::render
