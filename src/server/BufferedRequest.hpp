#pragma once

#include <cstddef>
#include <string_view>

namespace quillan::server {

// Larger request lines and headers than this are not read.
inline constexpr std::size_t kMaxHeadBytes = 8 * 1024;

enum class RequestArrival {
  incomplete,  // more bytes are needed
  complete,    // the head, and the body its Content-Length announces, are all there
  tooLarge,    // the head passed kMaxHeadBytes without ending
};

// How much of a request `buffered` holds. A head with a missing, bad or
// oversized Content-Length counts as complete once the head is: the request
// is refused from the head alone.
RequestArrival requestArrival(std::string_view buffered);

}  // namespace quillan::server
