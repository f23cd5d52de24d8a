#include "server/ServedHosts.hpp"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

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

bool isWildcard(const std::string& address) { return address.empty() || address == "0.0.0.0" || address == "::"; }

// A server bound to every interface is reached by each interface's address
// as a literal: the names a user types to reach it from another machine. No
// host name is added, since a rebinding page's name could be made to match.
std::vector<std::string> interfaceAddresses() {
  std::vector<std::string> addresses;
  ifaddrs* interfaces = nullptr;
  if (getifaddrs(&interfaces) != 0) return addresses;
  for (const ifaddrs* entry = interfaces; entry; entry = entry->ifa_next) {
    if (!entry->ifa_addr) continue;
    char text[INET6_ADDRSTRLEN] = {};
    const int family = entry->ifa_addr->sa_family;
    const void* raw = nullptr;
    if (family == AF_INET) raw = &reinterpret_cast<const sockaddr_in*>(entry->ifa_addr)->sin_addr;
    if (family == AF_INET6) raw = &reinterpret_cast<const sockaddr_in6*>(entry->ifa_addr)->sin6_addr;
    if (raw && inet_ntop(family, raw, text, sizeof text)) addresses.push_back(bracketed(text));
  }
  freeifaddrs(interfaces);
  return addresses;
}

}  // namespace

ServedHosts::ServedHosts(const std::string& bindAddress, int port) {
  const std::string suffix = ":" + std::to_string(port);
  std::vector<std::string> addresses{bracketed(bindAddress), "127.0.0.1", "localhost", "[::1]"};
  if (isWildcard(bindAddress)) {
    addresses.erase(addresses.begin());
    for (auto& address : interfaceAddresses()) addresses.push_back(std::move(address));
  }
  for (const std::string& address : addresses) {
    if (std::find(names_.begin(), names_.end(), address + suffix) != names_.end()) continue;
    names_.push_back(address + suffix);
    // Browsers leave out the scheme's default port.
    if (port == 80) names_.push_back(address);
  }
}

bool ServedHosts::serves(std::string_view host) const {
  return std::any_of(names_.begin(), names_.end(),
                     [&](const std::string& name) { return sameIgnoringCase(host, name); });
}

bool ServedHosts::isOwnOrigin(std::string_view origin) const {
  constexpr std::string_view kScheme = "http://";
  return origin.size() > kScheme.size() && sameIgnoringCase(origin.substr(0, kScheme.size()), kScheme) &&
         serves(origin.substr(kScheme.size()));
}

}  // namespace quillan::server
