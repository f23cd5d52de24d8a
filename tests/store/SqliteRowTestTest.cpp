// The SQL function a judged scan filters with: asked once per row in scan
// order, failures raised as the test's own, and out of reach of the journal's
// own schema.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "StoreTestSupport.hpp"
#include "store/SqliteRowTest.hpp"

namespace quillan::store {
namespace {

using testing::TemporaryDirectory;

struct Numbers {
  TemporaryDirectory directory;
  SqliteDatabase database{directory / "numbers.sqlite", SqliteDatabase::Mode::readWriteCreate};

  Numbers() {
    database.execute("CREATE TABLE T (Z_PK INTEGER PRIMARY KEY, X)");
    database.execute("INSERT INTO T VALUES (1, 10), (2, NULL), (3, 'text'), (4, 40.5), (5, X'01')");
  }

  std::vector<std::int64_t> keysWhere(const std::string& condition) {
    auto statement = database.prepare("SELECT Z_PK FROM T WHERE " + condition + " ORDER BY Z_PK");
    std::vector<std::int64_t> keys;
    while (statement.step()) keys.push_back(statement.integer(0));
    return keys;
  }
};

TEST(SqliteRowTest, IsAskedAboutEveryRowOnceInOrderAndOnlyKeptRowsComeBack) {
  // With ranges, numbers in their span but outside them are answered no
  // unasked; NULL, text and blobs always reach the test.
  const KeepRanges ranges({0, 100}, {{35, 45}});
  const struct {
    const KeepRanges* ranges;
    std::vector<std::string> seen;
    std::vector<std::int64_t> kept;
  } cases[] = {
      {nullptr, {"10", "null", "text", "40.5", "\x01"}, {1, 4}},
      {&ranges, {"null", "text", "40.5", "\x01"}, {4}},
  };
  for (const auto& c : cases) {
    Numbers numbers;
    std::vector<std::string> seen;
    SqliteRowTest test(
        numbers.database, "keeps",
        [&](const SqliteArgument& value) {
          seen.push_back(value.isNull() ? "null" : value.text());
          return !value.isNull() && value.real() > 5;
        },
        c.ranges);
    EXPECT_EQ(numbers.keysWhere("keeps(X)"), c.kept);
    EXPECT_EQ(seen, c.seen);
    EXPECT_EQ(test.calls(), 5u);
  }
}

TEST(KeepRanges, RuleOutNumbersInTheSpanOutsideEveryRangeAndNothingElse) {
  const KeepRanges ranges({0, 100}, {{50, 60}, {15, 30}, {10, 20}, {60, 61}, {70, 70}, {90, 80}});
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const std::pair<double, bool> numbersAndWhetherKept[] = {
      {-1, true},     {0, false},  {9.999, false}, {10, true},    {17, true},  {29.999, true},   {30, false},
      {49, false},    {50, true},  {60, true},     {60.5, true},  {61, false}, {70, false},      {85, false},
      {99.99, false}, {100, true}, {1e300, true},  {-0.0, false}, {nan, true}, {infinity, true}, {-infinity, true},
  };
  std::size_t hint = 0;
  for (const auto& [number, mayKeep] : numbersAndWhetherKept) {
    EXPECT_EQ(ranges.mayKeep(number), mayKeep) << number;
    // Asked in this order, the hint jumps about; it must not change an answer.
    EXPECT_EQ(ranges.mayKeep(number, hint), mayKeep) << number;
  }
}

TEST(SqliteRowTest, WhatTheTestThrowsEndsTheStatementAndIsRaisedAsItself) {
  Numbers numbers;
  SqliteRowTest test(numbers.database, "keeps", [](const SqliteArgument& value) -> bool {
    if (value.isNull()) throw std::length_error("no value");
    return true;
  });
  EXPECT_THROW(numbers.keysWhere("keeps(X)"), SqliteException);
  EXPECT_EQ(test.calls(), 2u);
  EXPECT_THROW(test.rethrowFailure(), std::length_error);
}

// A hostile journal could name the function in a view or trigger of its own.
TEST(SqliteRowTest, TheJournalsOwnSchemaCannotCallItAndItIsGoneWithTheTest) {
  Numbers numbers;
  numbers.database.execute("CREATE VIEW Kept AS SELECT Z_PK FROM T WHERE keeps(X)");
  {
    SqliteRowTest test(numbers.database, "keeps", [](const SqliteArgument&) { return true; });
    EXPECT_THROW(numbers.database.prepare("SELECT * FROM Kept"), SqliteException);
    EXPECT_EQ(test.calls(), 0u);
    EXPECT_EQ(numbers.keysWhere("keeps(X)").size(), 5u);
  }
  EXPECT_THROW(numbers.keysWhere("keeps(X)"), SqliteException);
}

}  // namespace
}  // namespace quillan::store
