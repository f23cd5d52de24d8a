#pragma once

#include <stdexcept>
#include <string>

namespace quillan::server {

// Another process already listens on the port asked for.
class PortInUse : public std::runtime_error {
 public:
  explicit PortInUse(int port) : std::runtime_error("port " + std::to_string(port) + " is in use") {}
};

}  // namespace quillan::server
