#pragma once

#include <cstddef>
#include <functional>

#include "server/ServerOptions.hpp"

namespace quillan::server {

// `serve` as one table: the command keeps the HTTP server (and the TLS and
// compression libraries it brings) in a module loaded only by `serve`.
struct ServingFunctions {
  // Checked by the command before any call: the module must come from its build.
  std::size_t size;
  const char* buildId;
  void (*serveUntilStopped)(const ServerOptions&, const std::function<void(int port)>&);
};

// The module's one exported function: `const ServingFunctions* quillanServingFunctions()`.
inline constexpr const char* kServingFunctionsSymbol = "quillanServingFunctions";

}  // namespace quillan::server
