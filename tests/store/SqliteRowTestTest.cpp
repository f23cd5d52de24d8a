// The SQL function a judged scan filters with: asked once per row in scan
// order, failures raised as the test's own, and out of reach of the journal's
// own schema.
#include <gtest/gtest.h>

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
  Numbers numbers;
  std::vector<std::string> seen;
  SqliteRowTest test(numbers.database, "keeps", [&](const SqliteArgument& value) {
    seen.push_back(value.isNull() ? "null" : value.text());
    return !value.isNull() && value.real() > 20;
  });
  EXPECT_EQ(numbers.keysWhere("keeps(X)"), (std::vector<std::int64_t>{4}));
  EXPECT_EQ(seen, (std::vector<std::string>{"10", "null", "text", "40.5", "\x01"}));
  EXPECT_EQ(test.calls(), 5u);
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
