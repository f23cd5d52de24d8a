#include "server/BufferedRequest.hpp"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>

#include "server/RequestScreen.hpp"

namespace quillan::server {
namespace {

// Where the head's blank line ends; clients may end lines with LF alone.
std::optional<std::size_t> headEnd(std::string_view buffered) {
  const auto crlf = buffered.find("\r\n\r\n");
  const auto lf = buffered.find("\n\n");
  const auto end = std::min(crlf == std::string_view::npos ? crlf : crlf + 4,
                            lf == std::string_view::npos ? lf : lf + 2);
  if (end == std::string_view::npos) return std::nullopt;
  return end;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(), [](char a, char b) {
           return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
         });
}

// The announced body length when it is a byte count the server would read.
std::optional<std::size_t> bodyLength(std::string_view head) {
  constexpr std::string_view kName = "content-length:";
  for (std::size_t start = 0; start < head.size();) {
    const auto end = std::min(head.find('\n', start), head.size());
    auto line = head.substr(start, end - start);
    start = end + 1;
    if (!startsWithIgnoringCase(line, kName)) continue;
    line.remove_prefix(kName.size());
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back()))) line.remove_suffix(1);
    std::size_t length = 0;
    if (line.empty() || line.size() > 6) return std::nullopt;
    for (const char c : line) {
      if (!std::isdigit(static_cast<unsigned char>(c))) return std::nullopt;
      length = length * 10 + static_cast<std::size_t>(c - '0');
    }
    return length <= kMaxBodyBytes ? std::optional(length) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

RequestArrival requestArrival(std::string_view buffered) {
  const auto end = headEnd(buffered);
  if (!end) return buffered.size() > kMaxHeadBytes ? RequestArrival::tooLarge : RequestArrival::incomplete;
  if (*end > kMaxHeadBytes) return RequestArrival::tooLarge;
  const auto length = bodyLength(buffered.substr(0, *end));
  return buffered.size() >= *end + length.value_or(0) ? RequestArrival::complete : RequestArrival::incomplete;
}

}  // namespace quillan::server
