#include "server/RequestError.hpp"

#include <cstdio>

namespace quillan::server {
namespace {

constexpr std::size_t kShownValueBytes = 80;

std::string printable(std::string_view value) {
  std::string shown;
  for (const char c : value.substr(0, kShownValueBytes)) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || c == '"' || c == '\\') {
      char escaped[5];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
      shown += escaped;
    } else {
      shown += c;
    }
  }
  if (value.size() > kShownValueBytes) shown += "...";
  return shown;
}

}  // namespace

RequestError badValue(std::string_view name, std::string_view problem, std::string_view value, std::string_view hint) {
  std::string message = std::string(name) + ": " + std::string(problem) + " \"" + printable(value) + "\"";
  if (!hint.empty()) message += "; " + std::string(hint);
  return RequestError(message);
}

}  // namespace quillan::server
