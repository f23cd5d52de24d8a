#include <gtest/gtest.h>

#include <algorithm>

#include "audit/AuditMatrix.hpp"
#include "audit/GraphemeCount.hpp"
#include "support/GoldenQuestion.hpp"

namespace quillan::audit {
namespace {

TEST(AuditMatrixTest, AllMeansEveryValueAndCasesOfOneKindAndLocaleFollowEachOther) {
  const AuditMatrix matrix{parseKinds({}), parseLocales("ar_EG,en_US"), parseDynamicTypes("all"),
                           parseColorSchemes("all"), parseRenderingModes("all")};
  EXPECT_EQ(matrix.kinds.size(), 5u);
  EXPECT_EQ(matrix.dynamicTypes.size(), 12u);
  ASSERT_EQ(caseCount(matrix), 5u * 2 * 12 * 2 * 3);
  EXPECT_EQ(caseAt(matrix, 0).name(), "OnThisDayWidget/ar_EG/xSmall/light/fullColor");
  EXPECT_EQ(caseAt(matrix, 1).renderingMode, "accented");
  EXPECT_EQ(caseAt(matrix, 3).colorScheme, "dark");
  EXPECT_EQ(caseAt(matrix, 12 * 2 * 3).locale, "en_US");
  EXPECT_EQ(caseAt(matrix, caseCount(matrix) - 1).name(), "ComposeButtonLockScreen/en_US/accessibility5/dark/vibrant");
  const auto all = parseLocales("all");
  EXPECT_GT(all.size(), 700u);
  EXPECT_NE(std::find(all.begin(), all.end(), "he_IL"), all.end());
}

// "TEXT" (escaped, '' when empty) => the graphemes a reader counts in it.
TEST(AuditMatrixTest, GraphemesAreWhatAReaderCounts) {
  testing::expectGoldenAnswers("grapheme_counts.txt", [](const std::string& question) {
    return std::to_string(graphemeCount(question == "''" ? "" : testing::unescaped(question)));
  });
}

}  // namespace
}  // namespace quillan::audit
