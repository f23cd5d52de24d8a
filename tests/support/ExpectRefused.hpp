#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/RunCommand.hpp"

namespace quillan::testing {

// An invocation the command must refuse: exit status 2, nothing on standard
// output, one line on standard error starting with "quillan-widgets: " and
// `start`, quoting `quoted` (escaped as the line shows it) when that is given.
inline void expectRefused(const std::vector<std::string>& arguments, const std::string& start,
                          const std::string& quoted = "") {
  std::string shown;
  for (const auto& argument : arguments) shown += argument.substr(0, 60) + " ";
  const auto result = runCommand(arguments);
  EXPECT_EQ(result.exitStatus, 2) << shown << result.err;
  EXPECT_TRUE(result.out.empty()) << shown << result.out;
  EXPECT_EQ(result.err.rfind("quillan-widgets: " + start, 0), 0u) << shown << result.err;
  EXPECT_NE(result.err.find(quoted), std::string::npos) << shown << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << shown << result.err;
}

}  // namespace quillan::testing
