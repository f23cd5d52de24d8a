#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace quillan::hosting {

// A new folder in the system's temporary folder (`$TMPDIR`, else /tmp) for
// what must not outlive the command: removed with everything in it when the
// object goes, and by SIGINT, SIGTERM, SIGHUP or abort() (see RemovalOnSignal). A
// process forked from the one that made it never removes it.
class ScratchFolder {
 public:
  // `prefix` names it: "<prefix>-XXXXXX". Throws std::runtime_error when it
  // cannot be created.
  explicit ScratchFolder(const std::string& prefix);
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
  pid_t owner_;
};

}  // namespace quillan::hosting
