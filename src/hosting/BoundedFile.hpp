#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace quillan::hosting {

// Why a file could not be read whole: one line without the path, e.g.
// "not a regular file" or "larger than the limit of 4 MiB".
class BoundedFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The contents of the regular file at `path`, which must hold at most
// `limitBytes`. Devices, FIFOs and folders are refused without blocking on
// them, and a file that grows while it is read is refused once it passes the
// limit, so no input can make the read unbounded. Throws BoundedFileError.
std::string readBoundedFile(const std::filesystem::path& path, std::uintmax_t limitBytes);

// "4 MiB", "512 KiB", "100 bytes": a limit as the messages and help show it.
std::string byteCountName(std::uintmax_t bytes);

}  // namespace quillan::hosting
