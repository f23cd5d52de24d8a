// The serving module: the live host's server behind one exported entry. It
// carries its own copy of the host, the worker and the drawing code; every
// symbol but the entry stays inside the module.
#include "server/ServeLoop.hpp"
#include "server/ServingFunctions.hpp"

extern "C" __attribute__((visibility("default"))) const quillan::server::ServingFunctions* quillanServingFunctions() {
  using namespace quillan::server;
  static const ServingFunctions functions{
      .size = sizeof(ServingFunctions),
      .buildId = QUILLAN_MODULE_BUILD_ID,
      .serveUntilStopped = &serveUntilStopped,
  };
  return &functions;
}
