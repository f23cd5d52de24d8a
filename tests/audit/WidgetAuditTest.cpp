#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "audit/MirroringCheck.hpp"
#include "audit/WidgetAudit.hpp"
#include "render/DrawingFunctions.hpp"
#include "support/FileContents.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::audit {
namespace {

struct SeededTree {
  const char* file;  // under tests/data/audit/, in the `render --tree` format
  views::WidgetFamily family;
  AuditCheck check;
  std::size_t expected;  // findings of that check: 0 for a tree that is right
  double measured;       // the first finding's measurement, when there is one
};

render::WidgetReview inspected(const char* file, views::WidgetFamily family,
                               views::LayoutDirection direction = views::LayoutDirection::leftToRight) {
  const auto path = std::filesystem::path(QUILLAN_TEST_DATA_DIR) / "audit" / file;
  const auto tree = views::decodeViewTree(testing::readText(path));
  views::Environment environment;
  environment.layoutDirection = direction;
  const auto context = render::makeRenderContext(environment, family, render::DeviceProfile::defaultProfile(), 1);
  return render::drawingFunctions().reviewWidget(tree, context, /*withPicture=*/true);
}

TEST(WidgetAuditTest, EachCheckFlagsItsSeededFaultAndLeavesTheRightTreeAlone) {
  using enum AuditCheck;
  constexpr auto small = views::WidgetFamily::systemSmall;
  constexpr auto medium = views::WidgetFamily::systemMedium;
  const SeededTree table[] = {
      {"missing-glyphs.json", small, missingGlyphs, 1, 2},
      {"all-glyphs.json", small, missingGlyphs, 0, 0},
      // 120 to the right of a centred text: its frame and its ink leave the 158-point widget.
      {"pushed-out.json", small, clipping, 2, 0},
      {"inside.json", small, clipping, 0, 0},
      // The frame starts at the widget's corner, inside its bounds; the rounded mask cuts the first W.
      {"corner-cut.json", small, clipping, 1, 0},
      {"faint-text.json", small, contrast, 1, 0},
      {"plain-text.json", small, contrast, 0, 0},
      // A clear text is the view's way of hiding it: no contrast to judge.
      {"hidden-weekday.json", small, contrast, 0, 0},
      {"weekday-cut.json", small, truncation, 1, 0},
      {"short-word-cut.json", small, truncation, 1, 0},
      {"weekday-whole.json", small, truncation, 0, 0},
      // A note cut after its second line still shows plenty of itself.
      {"body-cut-late.json", small, truncation, 0, 0},
      // Frames (a hint) and glyphs (an error) both overlap.
      {"stacked-texts.json", small, overlap, 2, 0},
      {"spaced-texts.json", small, overlap, 0, 0},
      {"small-links.json", medium, tapTarget, 2, 20},
      {"overlapping-links.json", medium, tapTarget, 1, 6400},
      {"roomy-links.json", medium, tapTarget, 0, 0},
      // A small widget is one target, whatever links it holds.
      {"small-links.json", small, tapTarget, 0, 0},
  };
  for (const auto& seeded : table) {
    SCOPED_TRACE(seeded.file);
    const auto findings = auditWidget(inspected(seeded.file, seeded.family), {});
    std::vector<Finding> ofCheck;
    std::copy_if(findings.begin(), findings.end(), std::back_inserter(ofCheck),
                 [&](const Finding& finding) { return finding.check == seeded.check; });
    ASSERT_EQ(ofCheck.size(), seeded.expected);
    if (seeded.expected == 0 || seeded.measured == 0) continue;
    EXPECT_NEAR(ofCheck.front().measured, seeded.measured, 0.01);
    EXPECT_TRUE(ofCheck.front().element.starts_with("content") || ofCheck.front().element.starts_with("q://"));
  }
}

// A view that reverses its row by hand under right to left undoes the
// layout's own mirroring: both days and both links stay where left to right
// has them. The same row, left to the layout, mirrors.
TEST(WidgetAuditTest, ARightToLeftLayoutMustMirrorTheLeftToRightOne) {
  constexpr auto medium = views::WidgetFamily::systemMedium;
  const auto leftToRight = inspected("mirror-row.json", medium);
  const auto mirrored = inspected("mirror-row.json", medium, views::LayoutDirection::rightToLeft);
  EXPECT_TRUE(findUnmirroredElements(leftToRight, mirrored, {}).empty());
  const auto reversedByHand = inspected("mirror-row-reversed.json", medium, views::LayoutDirection::rightToLeft);
  const auto findings = findUnmirroredElements(leftToRight, reversedByHand, {});
  std::vector<std::string> elements;
  for (const auto& finding : findings) {
    EXPECT_EQ(finding.check, AuditCheck::mirroring);
    EXPECT_THAT(finding.detail, ::testing::HasSubstr("stays where the left-to-right layout has it"));
    elements.push_back(finding.element);
  }
  EXPECT_THAT(elements, ::testing::UnorderedElementsAre(::testing::HasSubstr("Text"), ::testing::HasSubstr("Text"),
                                                        "q://mon", "q://tue"));
}

}  // namespace
}  // namespace quillan::audit
