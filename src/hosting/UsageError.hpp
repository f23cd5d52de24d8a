#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan::hosting {

// A bad value on the command line: one line on standard error, exit status 2.
// Its message starts with the option's name.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The one shape of every complaint about a value, after the option's name:
// `<problem>: "<value>"`, then ` (<hint>)` when there is one, the value quoted
// so that the line stays one line.
std::string badValue(std::string_view problem, std::string_view value, std::string_view hint = {});

// `<option>: ` + badValue(...).
UsageError badOption(std::string_view option, std::string_view problem, std::string_view value,
                     std::string_view hint = {});

}  // namespace quillan::hosting
