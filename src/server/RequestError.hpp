#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace quillan::server {

// A request the API refuses: the message is one line naming what was wrong,
// answered with status 400 as {"error": "<message>"}.
class RequestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// `<name>: <problem> "<value>"` (then `; <hint>`) with the value cut to a readable length and
// control characters shown as \xNN, so an echoed value never breaks the line.
RequestError badValue(std::string_view name, std::string_view problem, std::string_view value,
                      std::string_view hint = {});

}  // namespace quillan::server
