#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <sstream>

#include "audit/MirroringCheck.hpp"
#include "audit/WidgetAudit.hpp"
#include "render/DrawingFunctions.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::audit {
namespace {

render::WidgetReview inspected(const char* file, views::WidgetFamily family,
                               views::LayoutDirection direction = views::LayoutDirection::leftToRight) {
  const auto path = std::filesystem::path(QUILLAN_TEST_DATA_DIR) / "audit" / file;
  const auto tree = views::decodeViewTree(testing::readText(path));
  views::Environment environment;
  environment.layoutDirection = direction;
  const auto context = render::makeRenderContext(environment, family, render::DeviceProfile::defaultProfile(), 1);
  return render::drawingFunctions().reviewWidget(tree, context, /*withPicture=*/true);
}

// "FILE FAMILY CHECK" (a tree under tests/data/audit/, in the `render --tree`
// format) => that check's findings: severity, measurement and element.
std::string seededAnswer(const std::string& question) {
  const auto words = testing::words(question);
  const auto check = views::fromString<AuditCheck>(words[2]);
  const auto family = views::fromString<views::WidgetFamily>(words[1]);
  std::string answer;
  for (const auto& finding : auditWidget(inspected(words[0].c_str(), *family), {})) {
    if (finding.check != *check) continue;
    std::ostringstream measured;
    measured << std::fixed << std::setprecision(1) << finding.measured;
    answer += std::string(views::toString(finding.severity)) + " " + measured.str() + " at " + finding.element + "; ";
  }
  return answer.empty() ? "none" : answer.substr(0, answer.size() - 2);
}

TEST(WidgetAuditTest, EachCheckFlagsItsSeededFaultAndLeavesTheRightTreeAlone) {
  testing::expectGoldenAnswers("audit_seeded_trees.txt", seededAnswer);
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
