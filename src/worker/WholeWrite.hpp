#pragma once

#include <string_view>

namespace quillan::worker {

// Writes all of `bytes` to `fd`, as many write() calls as it takes; stops
// quietly at the first that fails, for the reader then sees a cut answer and
// says so.
void writeWhole(int fd, std::string_view bytes);

}  // namespace quillan::worker
