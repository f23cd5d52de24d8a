#pragma once

#include <string>
#include <string_view>

namespace quillan::hosting {

// A value from the command line or a file, echoed in an error message: in
// double quotes, with quotes, backslashes and control characters escaped, so
// that whatever was typed the message stays one line. Past 120 bytes the value
// is cut and ends in "...".
std::string quotedValue(std::string_view value);

// `message` with its control characters escaped: the last guard before a line
// reaches standard error, for messages that echo a value themselves.
std::string singleLine(std::string_view message);

}  // namespace quillan::hosting
