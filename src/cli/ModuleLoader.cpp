#include "cli/ModuleLoader.hpp"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace quillan::cli {
namespace {

struct TableHeader {
  std::size_t size;
  const char* buildId;
};

std::vector<std::filesystem::path> moduleFolders() {
  std::error_code error;
  const auto command = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return {};
  const auto folder = command.parent_path();
  return {folder, (folder / QUILLAN_MODULE_DIR_FROM_COMMAND).lexically_normal()};
}

}  // namespace

const void* loadModuleTable(const std::string& fileName, const char* symbol, std::size_t size,
                            const std::string& buildId) {
  std::string tried;
  for (const auto& folder : moduleFolders()) {
    const auto path = folder / fileName;
    if (!std::filesystem::exists(path)) {
      tried += (tried.empty() ? "" : ", ") + path.string();
      continue;
    }
    // RTLD_NOW: a module that cannot be resolved fails here, not halfway through a picture.
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) throw std::runtime_error("cannot load " + path.string() + ": " + dlerror());
    using Entry = const void* (*)();
    const auto entry = reinterpret_cast<Entry>(dlsym(handle, symbol));
    if (!entry) throw std::runtime_error(path.string() + " is not this command's module (no " + symbol + ")");
    const void* table = entry();
    const auto* header = static_cast<const TableHeader*>(table);
    if (header->size != size || buildId != header->buildId) {
      throw std::runtime_error(path.string() + " comes from another build of quillan-widgets (" + header->buildId +
                               "); reinstall the command");
    }
    return table;
  }
  throw std::runtime_error("cannot find " + fileName + ", a part of quillan-widgets (looked for " + tried +
                           "); reinstall the command");
}

namespace {

template <typename Table>
const Table& loadedTable(const std::string& fileName, const char* symbol) {
  return *static_cast<const Table*>(loadModuleTable(fileName, symbol, sizeof(Table), QUILLAN_MODULE_BUILD_ID));
}

}  // namespace

const render::DrawingFunctions& drawingModule() {
  static const auto& functions = loadedTable<render::DrawingFunctions>("quillan-drawing.so",
                                                                       render::kDrawingFunctionsSymbol);
  return functions;
}

void prepareDrawingFonts() { drawingModule().prepareFonts(); }

const server::ServingFunctions& servingModule() {
  if (!QUILLAN_SERVING_MODULE) {
    throw std::runtime_error(
        "serve: this build has no serving module (the demo's build leaves it out); build one with "
        "`cmake --preset demo -DQUILLAN_SERVING_MODULE=ON && cmake --build --preset demo`");
  }
  static const auto& functions = loadedTable<server::ServingFunctions>("quillan-serving.so",
                                                                       server::kServingFunctionsSymbol);
  return functions;
}

}  // namespace quillan::cli
