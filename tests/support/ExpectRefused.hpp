#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/RunCommand.hpp"

namespace quillan::testing {

// Exit status 2, nothing on standard output, and one line on standard error naming `option`.
inline void expectRefused(const std::vector<std::string>& arguments, const std::string& option,
                          const std::vector<std::string>& environment = {}) {
  std::string shown;
  for (const auto& argument : arguments) shown += argument + " ";
  const auto result = runCommand(arguments, environment);
  EXPECT_EQ(result.exitStatus, 2) << shown << result.err;
  EXPECT_TRUE(result.out.empty()) << shown << result.out;
  EXPECT_EQ(result.err.rfind("quillan-widgets: " + option + ": ", 0), 0u) << shown << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << shown << result.err;
}

}  // namespace quillan::testing
