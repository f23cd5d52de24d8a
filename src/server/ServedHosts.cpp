#include "server/ServedHosts.hpp"

#include <algorithm>
#include <cctype>

namespace quillan::server {
namespace {

bool sameIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
  });
}

std::string bracketed(const std::string& address) {
  return address.find(':') != std::string::npos ? "[" + address + "]" : address;
}

}  // namespace

ServedHosts::ServedHosts(const std::string& bindAddress, int port) {
  const std::string suffix = ":" + std::to_string(port);
  for (const std::string& address : {bracketed(bindAddress), std::string("127.0.0.1"), std::string("localhost"),
                                     std::string("[::1]")}) {
    if (std::find(names_.begin(), names_.end(), address + suffix) != names_.end()) continue;
    names_.push_back(address + suffix);
    // Browsers leave out the scheme's default port.
    if (port == 80) names_.push_back(address);
  }
}

bool ServedHosts::serves(std::string_view host) const {
  return std::any_of(names_.begin(), names_.end(), [&](const std::string& name) { return sameIgnoringCase(host, name); });
}

bool ServedHosts::isOwnOrigin(std::string_view origin) const {
  constexpr std::string_view kScheme = "http://";
  return origin.size() > kScheme.size() && sameIgnoringCase(origin.substr(0, kScheme.size()), kScheme) &&
         serves(origin.substr(kScheme.size()));
}

}  // namespace quillan::server
