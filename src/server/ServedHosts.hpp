#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillan::server {

// The names a browser reaches this server by: the loopback names and the
// bound address, each with the port. A request naming any other host was
// sent to a name that merely resolves here (a rebinding page's own name, for
// one), so its answer would land in that page's origin.
class ServedHosts {
 public:
  ServedHosts(const std::string& bindAddress, int port);

  // A Host header's value, compared without regard to case.
  bool serves(std::string_view host) const;
  // An Origin header's value: the page's own, http://<served host>.
  bool isOwnOrigin(std::string_view origin) const;
  // The first name, for telling a refused client where the page is.
  const std::string& preferred() const { return names_.front(); }

 private:
  std::vector<std::string> names_;
};

}  // namespace quillan::server
