// The serving module: the live host's server behind one exported entry. The
// server and its drawing code stay inside the module; the layers below them
// (scheduler, worker, widgets, platform) bind to the command's copies.
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
