#include "cli/SnapshotVerdict.hpp"

#include <cstdio>

#include "cli/BoundedFile.hpp"
#include "render/ImageComparison.hpp"

namespace quillan::cli {
namespace {

// A recorded view tree is a few KB; one holding a long note's whole text, a
// few hundred. Larger files are no recordings of ours.
constexpr std::uintmax_t kRecordedViewLimit = 16 * 1024 * 1024;

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
  return std::to_string(comparison.matchingCount) + " of " + std::to_string(comparison.pixelCount) +
         " pixels match (" + percent(comparison.matchingShare()) + "), fewer than the precision " +
         percent(tolerance.precision);
}

}  // namespace

SnapshotVerdict judgeSnapshot(const SnapshotCase& snapshotCase, const SnapshotPicture& picture,
                              const SnapshotFolder& folder, const SnapshotTolerance& tolerance) {
  SnapshotVerdict verdict{snapshotCase.name, {}, std::nullopt};
  const auto viewPath = folder.recordedView(snapshotCase);
  const auto picturePath = folder.recordedPicture(snapshotCase);
  std::error_code error;
  if (!std::filesystem::exists(viewPath, error) || !std::filesystem::exists(picturePath, error)) {
    verdict.problem = "no recording (record it with `snapshot record --case " + snapshotCase.name + "`)";
    return verdict;
  }
  std::vector<std::string> problems;
  if (readBoundedFile(viewPath, kRecordedViewLimit) != picture.viewJson) problems.push_back("view tree differs");

  const auto diff = folder.differenceImage(snapshotCase);
  std::filesystem::create_directories(diff.parent_path());
  const auto reference = render::readPNG(picturePath);
  const auto candidate = render::decodePNG(picture.png);
  const auto comparison = render::compareImages(reference, candidate, tolerance.perceptualPrecision);
  if (auto problem = pictureProblem(comparison, reference, candidate, tolerance)) problems.push_back(*problem);
  if (problems.empty()) return verdict;

  for (const auto& problem : problems) verdict.problem += (verdict.problem.empty() ? "" : "; ") + problem;
  render::writePNG(render::differenceImage(reference, candidate, comparison), diff);
  verdict.differenceImage = diff.lexically_relative(folder.root).string();
  return verdict;
}

}  // namespace quillan::cli
