#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace quillan::snapshot {

// Why a file could not be written: one line without the path.
class ReplacedFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes the file at `path` whole, by way of a new file in the same folder
// renamed over it. Whatever `path` was before (a symbolic link to a file
// elsewhere, a FIFO, a file another process has open) is replaced as an entry
// and never written through, and no reader sees half a file. The new file is
// created exclusively, so not even a link planted under its name is followed.
// Throws ReplacedFileError; nothing is left behind on failure.
void replaceFile(const std::filesystem::path& path, std::string_view contents);

// The same for writers that take a path: `write` fills the new file, named by
// the path it is given, before it takes `path`'s place.
void replaceFileBy(const std::filesystem::path& path,
                   const std::function<void(const std::filesystem::path& newFile)>& write);

}  // namespace quillan::snapshot
