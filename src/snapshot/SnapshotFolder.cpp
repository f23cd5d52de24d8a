#include "snapshot/SnapshotFolder.hpp"

#include "hosting/UsageError.hpp"
#include "render/DrawingFunctions.hpp"
#include "render/PixelImage.hpp"
#include "snapshot/ReplacedFile.hpp"

namespace quillan::snapshot {
namespace {

bool isLink(const std::filesystem::path& entry) {
  std::error_code ignored;
  return std::filesystem::is_symlink(std::filesystem::symlink_status(entry, ignored));
}

hosting::UsageError cannotWrite(const std::filesystem::path& entry, const std::string& reason) {
  return hosting::badOption("--dir", "cannot write", entry.string(), reason);
}

}  // namespace

void SnapshotFolder::refuseLinks(const std::vector<SnapshotCase>& cases, bool ownConfig) const {
  std::vector<std::filesystem::path> entries = {this->cases(), differences(), report()};
  if (ownConfig) entries.push_back(config());
  for (const auto& snapshotCase : cases) {
    entries.push_back(recordedView(snapshotCase));
    entries.push_back(recordedPicture(snapshotCase));
  }
  for (const auto& entry : entries) {
    if (isLink(entry)) {
      throw hosting::badOption("--dir", "a symbolic link in the suite, not followed", entry.string(),
                               "replace it with a file or folder of its own");
    }
  }
}

void SnapshotFolder::makeFolder(const std::filesystem::path& folder) const {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw cannotWrite(folder, error.message());
}

void SnapshotFolder::write(const std::filesystem::path& file, std::string_view contents) const {
  try {
    replaceFile(file, contents);
  } catch (const ReplacedFileError& error) {
    throw cannotWrite(file, error.what());
  }
}

void SnapshotFolder::writePicture(const std::filesystem::path& file, const render::PixelImage& picture,
                                  const render::DrawingFunctions& drawing) const {
  try {
    replaceFileBy(file, [&](const std::filesystem::path& newFile) { drawing.writePNG(picture, newFile); });
  } catch (const ReplacedFileError& error) {
    throw cannotWrite(file, error.what());
  }
}

void SnapshotFolder::remove(const std::filesystem::path& entry) const {
  std::error_code error;
  std::filesystem::remove_all(entry, error);
  if (error)
    throw hosting::badOption("--dir", "cannot remove the result of an earlier run", entry.string(), error.message());
}

}  // namespace quillan::snapshot
