#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "platform/Fatal.hpp"

namespace quillan::platform {
namespace {

TEST(FatalDeathTest, ReportsSourceAndMessageOnOneLine) {
  EXPECT_DEATH(fatalError("CoreDataStack", "Unresolved error store failed, [:]"),
               ::testing::StrEq("CoreDataStack: Fatal error: Unresolved error store failed, [:]\n"));
}

TEST(FatalDeathTest, UnwrappingNothingStopsWithTheNilReport) {
  EXPECT_DEATH(unwrap(std::optional<int>(), "Memories"),
               ::testing::StrEq("Memories: Fatal error: Unexpectedly found nil while unwrapping an Optional value\n"));
  EXPECT_EQ(unwrap(std::optional<int>(7), "Memories"), 7);
}

TEST(FatalDeathTest, SilentStopSaysNothing) { EXPECT_DEATH(silentStop(), ::testing::StrEq("")); }

}  // namespace
}  // namespace quillan::platform
