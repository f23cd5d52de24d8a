#include "platform/FileManager.hpp"

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <system_error>

namespace quillan::platform {
namespace {

constexpr std::string_view kCocoaErrorDomain = "NSCocoaErrorDomain";
constexpr long kFileNoSuchFileError = 4;
constexpr long kFileWriteUnknownError = 512;
constexpr long kFileWriteNoPermissionError = 513;

struct Locations {
  std::mutex mutex;
  std::optional<std::filesystem::path> groupContainer;
  std::optional<std::filesystem::path> applicationSupport;
};

Locations& locations() {
  static Locations instance;
  return instance;
}

std::filesystem::path dataHome() {
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return xdg;
  const char* home = std::getenv("HOME");
  return std::filesystem::path(home && *home ? home : "/") / ".local" / "share";
}

// Directory URLs end in "/", as the platform hands them out.
URL directoryURL(const std::filesystem::path& directory) { return URL::fileURL(directory / ""); }

Error removalError(const URL& url, const std::error_code& cause) {
  const auto name = url.filePath().filename().string();
  long code = kFileWriteUnknownError;
  if (cause == std::errc::no_such_file_or_directory) code = kFileNoSuchFileError;
  if (cause == std::errc::permission_denied || cause == std::errc::operation_not_permitted) {
    code = kFileWriteNoPermissionError;
  }
  std::string description = "\"" + name + "\" couldn't be removed";
  description += code == kFileWriteNoPermissionError ? " because you don't have permission to access it." : ".";
  return Error{std::string(kCocoaErrorDomain),
               code,
               description,
               {{"NSFilePath", url.filePath().string()},
                {"NSUnderlyingError", "Error Domain=NSPOSIXErrorDomain Code=" + std::to_string(cause.value()) + " \"" +
                                          cause.message() + "\""}}};
}

}  // namespace

std::optional<URL> FileManager::containerURL(std::string_view groupIdentifier) {
  std::filesystem::path directory;
  {
    auto& state = locations();
    std::lock_guard lock(state.mutex);
    directory = state.groupContainer.value_or(defaultGroupContainerDirectory().parent_path() /
                                              std::string(groupIdentifier));
  }
  std::error_code ignored;
  if (!std::filesystem::is_directory(directory, ignored)) return std::nullopt;
  return directoryURL(directory);
}

URL FileManager::applicationSupportDirectory() {
  auto& state = locations();
  std::lock_guard lock(state.mutex);
  if (state.applicationSupport) return directoryURL(*state.applicationSupport);
  if (state.groupContainer) return directoryURL(applicationSupportBeside(*state.groupContainer));
  return directoryURL(defaultApplicationSupportDirectory());
}

void FileManager::setGroupContainerDirectory(std::filesystem::path directory) {
  auto& state = locations();
  std::lock_guard lock(state.mutex);
  state.groupContainer = std::move(directory);
}

void FileManager::setApplicationSupportDirectory(std::filesystem::path directory) {
  auto& state = locations();
  std::lock_guard lock(state.mutex);
  state.applicationSupport = std::move(directory);
}

std::filesystem::path FileManager::defaultGroupContainerDirectory() {
  return dataHome() / "quillan-widgets" / "group.com.tarvelo.Quillan";
}

std::filesystem::path FileManager::defaultApplicationSupportDirectory() {
  return applicationSupportBeside(defaultGroupContainerDirectory());
}

std::filesystem::path FileManager::applicationSupportBeside(const std::filesystem::path& groupContainer) {
  auto container = std::filesystem::absolute(groupContainer).lexically_normal();
  if (container.filename().empty()) container = container.parent_path();
  return container.parent_path() / "Application Support";
}

bool FileManager::fileExists(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

std::optional<Error> FileManager::removeItem(const URL& url) {
  std::error_code cause;
  if (std::filesystem::remove(url.filePath(), cause)) return std::nullopt;
  if (!cause) cause = std::make_error_code(std::errc::no_such_file_or_directory);
  return removalError(url, cause);
}

}  // namespace quillan::platform
