#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "render/DrawingFunctions.hpp"
#include "render/PixelImage.hpp"
#include "snapshot/SnapshotVerdict.hpp"
#include "support/FileContents.hpp"
#include "support/GoldenFile.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::snapshot {
namespace {

namespace fs = std::filesystem;

// 1,000 pixels of a gradient, so that one changed pixel is 0.1 % of them.
render::PixelImage gradient(int height = 25) {
  render::PixelImage image(40, height);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      image.at(x, y) = {static_cast<std::uint8_t>(x * 6), static_cast<std::uint8_t>(y * 10), 128, 255};
    }
  }
  return image;
}

render::PixelImage onePixelOff() {
  auto image = gradient();
  auto& pixel = image.at(20, 12);
  pixel.red = static_cast<std::uint8_t>(255 - pixel.red);
  return image;
}

std::string verdictText(const SnapshotVerdict& verdict) {
  const auto& difference = verdict.difference;
  return verdict.caseName + ": " + (verdict.passed() ? "passes" : verdict.problem) +
         (difference
              ? " [difference " + std::to_string(difference->width) + "x" + std::to_string(difference->height) + "]"
              : "");
}

// A suite holding one case's recording, and that case drawn again.
class RecordedCase : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder_.cases());
    std::ofstream(folder_.recordedView(case_)) << kView;
    render::writePNG(gradient(), folder_.recordedPicture(case_));
  }

  SnapshotPicture drawnAgain(const render::PixelImage& image, const std::string& view = kView) const {
    const auto file = scratch_.path() / "drawn.png";
    render::writePNG(image, file);
    const auto bytes = testing::readText(file);
    return {view, {bytes.begin(), bytes.end()}};
  }

  static constexpr const char* kView = R"({"type":"Text","text":"Tea"})";
  testing::TemporaryFolder scratch_;
  SnapshotFolder folder_{scratch_.path() / "suite"};
  SnapshotCase case_{"Tea_light", "Tea", "light", "fullColor", "17.0", "393x852", "en_US"};
};

// "PICTURE [tree TEXT] [precision P] [perceptual Q]": the case drawn again as
// PICTURE (same, one-pixel-off, shorter) => the verdict: its problem and the
// size of its difference image (recording, new picture and difference side by side).
TEST_F(RecordedCase, PassesOnlyWithTheSameTreeAndAPictureWithinTheTolerance) {
  testing::expectGoldenAnswers("snapshot_verdicts.txt", [this](const std::string& question) {
    const auto words = testing::words(question);
    std::string view = kView;
    SnapshotTolerance tolerance;
    for (std::size_t word = 1; word + 1 < words.size(); word += 2) {
      if (words[word] == "tree") view = words[word + 1];
      if (words[word] == "precision") tolerance.precision = std::stod(words[word + 1]);
      if (words[word] == "perceptual") tolerance.perceptualPrecision = std::stod(words[word + 1]);
    }
    const auto image = words[0] == "same" ? gradient() : words[0] == "shorter" ? gradient(24) : onePixelOff();
    return verdictText(judgeSnapshot(case_, drawnAgain(image, view), folder_, tolerance, render::drawingFunctions()));
  });
}

// "FILE DAMAGE": the recording's picture (png) or view tree (json) removed,
// made a FIFO, cut to half its bytes or replaced by text or an empty PNG =>
// the case's verdict, naming the file.
TEST_F(RecordedCase, AMissingOrUnreadableRecordingFailsItsCaseNamingTheFile) {
  testing::expectGoldenAnswers("snapshot_damaged_recordings.txt", [this](const std::string& question) {
    SetUp();
    const auto words = testing::words(question);
    const auto file = words[0] == "png" ? folder_.recordedPicture(case_) : folder_.recordedView(case_);
    const auto bytes = testing::readText(file);
    fs::remove(file);
    if (words[1] == "fifo") ::mkfifo(file.c_str(), 0600);
    if (words[1] == "half") std::ofstream(file, std::ios::binary) << bytes.substr(0, bytes.size() / 2);
    if (words[1] == "text") std::ofstream(file, std::ios::binary) << "no picture at all";
    if (words[1] == "empty-png") fs::copy_file(QUILLAN_TEST_DATA_DIR "/snapshot/empty.png", file);
    const auto verdict = judgeSnapshot(case_, drawnAgain(gradient()), folder_, {}, render::drawingFunctions());
    fs::remove(file);
    return verdictText(verdict);
  });
}

}  // namespace
}  // namespace quillan::snapshot
