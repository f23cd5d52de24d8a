// The command's side of `serve`: the call goes to the serving module, loaded
// on first use. Only the command links this file.
#include "cli/ModuleLoader.hpp"
#include "server/ServeLoop.hpp"
#include "server/ServingFunctions.hpp"

namespace quillan::server {

void serveUntilStopped(const ServerOptions& options, const std::function<void(int port)>& listening) {
  static const auto* functions = static_cast<const ServingFunctions*>(cli::loadModuleTable(
      "quillan-serving.so", kServingFunctionsSymbol, sizeof(ServingFunctions), QUILLAN_MODULE_BUILD_ID));
  functions->serveUntilStopped(options, listening);
}

}  // namespace quillan::server
