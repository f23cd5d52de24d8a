#pragma once

#include <gtest/gtest.h>

#include "support/TestJournal.hpp"

namespace quillan::testing {

// A test that writes the process's shared journal, which it finds empty.
class JournalTest : public ::testing::Test {
 protected:
  void SetUp() override { journal.clear(); }
  TestJournal& journal = TestJournal::shared();
};

}  // namespace quillan::testing
