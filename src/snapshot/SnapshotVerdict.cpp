#include "snapshot/SnapshotVerdict.hpp"

#include <cstdio>

#include "hosting/BoundedFile.hpp"
#include "render/ImageComparison.hpp"

namespace quillan::snapshot {
namespace {

// A recorded view tree is a few KB; one holding a long note's whole text, a
// few hundred. A recorded picture is at most a few MB. Larger files are no
// recordings of ours.
constexpr std::uintmax_t kRecordedViewLimit = 16 * 1024 * 1024;
constexpr std::uintmax_t kRecordedPictureLimit = 64 * 1024 * 1024;

// Why one recording cannot be compared: "<file>: <reason>".
class UnreadableRecording : public std::runtime_error {
 public:
  UnreadableRecording(const std::filesystem::path& file, const std::string& reason)
      : std::runtime_error(file.filename().string() + ": " + reason) {}
};

struct Recording {
  std::string view;
  std::string png;
};

std::string readRecordedFile(const std::filesystem::path& file, std::uintmax_t limit) {
  try {
    return hosting::readBoundedFile(file, limit);
  } catch (const hosting::BoundedFileError& error) {
    throw UnreadableRecording(file, error.what());
  }
}

render::PixelImage decodeRecordedPicture(const std::filesystem::path& file, const std::string& bytes,
                                         const render::DrawingFunctions& drawing) {
  try {
    return drawing.decodePNG(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  } catch (const std::exception&) {
    // The decoder's own reasons ("out of memory" for a cut-off file, or one
    // of no pixels) mislead.
    throw UnreadableRecording(file, "not a readable PNG");
  }
}

std::string percent(double share) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.4f%%", share * 100);
  return buffer;
}

std::optional<std::string> pictureProblem(const render::ImageComparison& comparison,
                                          const render::PixelImage& reference, const render::PixelImage& candidate,
                                          const SnapshotTolerance& tolerance) {
  if (!comparison.sameSize) {
    return "picture is " + std::to_string(candidate.width) + "x" + std::to_string(candidate.height) +
           " pixels, the recording " + std::to_string(reference.width) + "x" + std::to_string(reference.height);
  }
  if (comparison.passes(tolerance.precision)) return std::nullopt;
  return std::to_string(comparison.matchingCount) + " of " + std::to_string(comparison.pixelCount) + " pixels match (" +
         percent(comparison.matchingShare()) + "), fewer than the precision " + percent(tolerance.precision);
}

}  // namespace

SnapshotVerdict judgeSnapshot(const SnapshotCase& snapshotCase, const SnapshotPicture& picture,
                              const SnapshotFolder& folder, const SnapshotTolerance& tolerance,
                              const render::DrawingFunctions& drawing) {
  SnapshotVerdict verdict{snapshotCase.name, {}, std::nullopt, std::nullopt};
  const auto viewPath = folder.recordedView(snapshotCase);
  const auto picturePath = folder.recordedPicture(snapshotCase);
  std::error_code error;
  if (!std::filesystem::exists(viewPath, error) || !std::filesystem::exists(picturePath, error)) {
    verdict.problem = "no recording (record it with `snapshot record --case " + snapshotCase.name + "`)";
    return verdict;
  }
  Recording recording;
  render::PixelImage recordedPicture;
  try {
    recording = {readRecordedFile(viewPath, kRecordedViewLimit), readRecordedFile(picturePath, kRecordedPictureLimit)};
    // A PNG byte for byte the one drawn now is a readable one of the same
    // pixels, which any tolerance passes: most of a verify run is this.
    const std::string_view drawnPng(reinterpret_cast<const char*>(picture.png.data()), picture.png.size());
    if (recording.view == picture.viewJson && recording.png == drawnPng) {
      return verdict;
    }
    recordedPicture = decodeRecordedPicture(picturePath, recording.png, drawing);
  } catch (const UnreadableRecording& unreadable) {
    verdict.problem = std::string("unreadable recording (") + unreadable.what() + ")";
    return verdict;
  }

  std::vector<std::string> problems;
  if (recording.view != picture.viewJson) problems.push_back("view tree differs");
  const auto candidate = drawing.decodePNG(picture.png);
  const auto comparison = render::compareImages(recordedPicture, candidate, tolerance.perceptualPrecision);
  if (auto problem = pictureProblem(comparison, recordedPicture, candidate, tolerance)) problems.push_back(*problem);
  if (problems.empty()) return verdict;

  for (const auto& problem : problems) verdict.problem += (verdict.problem.empty() ? "" : "; ") + problem;
  verdict.difference = render::differenceImage(recordedPicture, candidate, comparison);
  return verdict;
}

}  // namespace quillan::snapshot
