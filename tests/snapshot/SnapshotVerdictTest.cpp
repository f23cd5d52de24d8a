#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "render/DrawingFunctions.hpp"
#include "render/PixelImage.hpp"
#include "snapshot/SnapshotVerdict.hpp"
#include "support/FileContents.hpp"
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

TEST_F(RecordedCase, PassesOnlyWithTheSameTreeAndAPictureWithinTheTolerance) {
  struct Case {
    std::string what;
    SnapshotPicture drawn;
    SnapshotTolerance tolerance;
    std::string problem;  // empty: passes
  };
  const std::vector<Case> cases = {
      {"the same", drawnAgain(gradient()), {}, ""},
      {"another tree", drawnAgain(gradient(), "{}"), {}, "view tree differs"},
      {"one pixel off",
       drawnAgain(onePixelOff()),
       {},
       "999 of 1000 pixels match (99.9000%), fewer than the precision 100.0000%"},
      {"one pixel off, 0.999", drawnAgain(onePixelOff()), {0.999, 1}, ""},
      {"far off in colour, perceptual 0.98", drawnAgain(onePixelOff()), {1, 0.98}, "999 of 1000 pixels match"},
      {"another tree and size",
       drawnAgain(gradient(24), "{}"),
       {},
       "view tree differs; picture is 40x24 pixels, the recording 40x25"},
  };
  for (const auto& c : cases) {
    const auto verdict = judgeSnapshot(case_, c.drawn, folder_, c.tolerance, render::drawingFunctions());
    EXPECT_EQ(verdict.caseName, case_.name);
    EXPECT_EQ(verdict.passed(), c.problem.empty()) << c.what << ": " << verdict.problem;
    EXPECT_EQ(verdict.problem.rfind(c.problem, 0), 0u) << c.what << ": " << verdict.problem;
    // Recording, new picture and difference side by side, for a failure only.
    EXPECT_EQ(verdict.difference.has_value(), !c.problem.empty()) << c.what;
    if (verdict.difference) {
      EXPECT_GE(verdict.difference->width, 3 * 40) << c.what;
    }
  }
}

TEST_F(RecordedCase, AMissingOrUnreadableRecordingFailsItsCaseNamingTheFile) {
  const auto fifo = [](const fs::path& path) {
    fs::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  };
  const auto bytes = [](const std::string& text) {
    return [text](const fs::path& path) { std::ofstream(path, std::ios::binary | std::ios::trunc) << text; };
  };
  const auto picture = testing::readText(folder_.recordedPicture(case_));
  struct Damage {
    const char* extension;
    std::function<void(const fs::path&)> apply;
    std::string problem;
  };
  const std::vector<Damage> damages = {
      {".png", [](const fs::path& path) { fs::remove(path); }, "no recording (record it with `snapshot record --case "},
      {".json", [](const fs::path& path) { fs::remove(path); }, "no recording"},
      {".png", fifo, "unreadable recording (Tea_light.png: not a regular file)"},
      {".json", fifo, "unreadable recording (Tea_light.json: not a regular file)"},
      {".png", bytes(picture.substr(0, picture.size() / 2)),
       "unreadable recording (Tea_light.png: not a readable PNG)"},
      {".png", bytes("no picture at all"), "unreadable recording (Tea_light.png: not a readable PNG)"},
      // A PNG of 0x0 pixels, well formed but for that.
      {".png", bytes(testing::readText(QUILLAN_TEST_DATA_DIR "/snapshot/empty.png")),
       "unreadable recording (Tea_light.png: not a readable PNG)"},
  };
  for (const auto& damage : damages) {
    SetUp();
    const auto file = std::string(damage.extension) == ".png" ? folder_.recordedPicture(case_)
                                                              : folder_.recordedView(case_);
    damage.apply(file);
    const auto verdict = judgeSnapshot(case_, drawnAgain(gradient()), folder_, {}, render::drawingFunctions());
    EXPECT_EQ(verdict.problem.rfind(damage.problem, 0), 0u) << verdict.problem;
    EXPECT_FALSE(verdict.difference) << damage.problem;
    fs::remove(file);
  }
}

}  // namespace
}  // namespace quillan::snapshot
