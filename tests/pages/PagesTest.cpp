#include <gtest/gtest.h>

#include <functional>

#include "pages/Filmstrip.hpp"
#include "pages/Gallery.hpp"
#include "pages/HtmlText.hpp"
#include "pages/ImageMap.hpp"
#include "pages/SnapshotReport.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::pages {
namespace {

// Text a note, a kind or a deep link may carry into a page.
const std::string kHostile = "<b onclick=\"x\">'Tom' & Jerry</b>";

std::vector<render::HitRegion> regions(const std::string& url) {
  return {{{10, 20.5, 100.25, 50}, url}, {{0, 0, 155, 155}, url + "2"}};
}

std::string gallery() {
  GalleryImage image{kHostile + ".png", kHostile, 155, 155, regions(kHostile)};
  return galleryPage({{kHostile, kHostile, kHostile, kHostile, {image, image}}, {"b", "B", "", "{}", {image}}},
                     kHostile);
}

std::string filmstrip() {
  const EntryPictures pictures{kHostile + "-light.png", kHostile + "-dark.png", kHostile + ".json", 329, 155,
                               regions(kHostile)};
  return filmstripPage({{kHostile, kHostile, {{kHostile, pictures, ""}, {kHostile, std::nullopt, kHostile}}},
                        {"b", "B", {{"t", pictures, ""}}}},
                       kHostile);
}

std::string report() {
  snapshot::SnapshotVerdict failed{kHostile, kHostile, std::nullopt, kHostile + ".png"};
  snapshot::SnapshotVerdict passed{"passing-case", "", std::nullopt, std::nullopt};
  return snapshotReportPage({failed, passed, failed}, {0.5, 0.98});
}

struct Page {
  std::string name;
  std::function<std::string()> write;
};

const std::vector<Page> kPages = {{"gallery", gallery}, {"filmstrip", filmstrip}, {"snapshot_report", report}};

// Each page compared with tests/data/golden/page_<name>.html: one document
// titled as its heading, with its own style; every picture with a map of its
// own (the filmstrip's light and dark pictures share one) holding an area per
// tap target, in hit-test order, at the region's corners in points; the
// snapshot report counting the matches and showing only the failures.
TEST(Pages, EveryPageIsWrittenAsTheGoldenFileHolds) {
  for (const auto& page : kPages) quillan::testing::expectGoldenText(page.write(), "page_" + page.name + ".html");
}

TEST(Pages, TextFromTheJournalIsEscapedEverywhere) {
  const auto escaped = htmlEscaped(kHostile);
  EXPECT_EQ(escaped.find_first_of("<>\"'"), std::string::npos) << escaped;
  for (const auto& page : kPages) {
    const auto html = page.write();
    EXPECT_EQ(html.find(kHostile), std::string::npos) << page.name;
    EXPECT_EQ(html.find("<b "), std::string::npos) << page.name;
    EXPECT_NE(html.find(escaped), std::string::npos) << page.name;
  }
}

TEST(Pages, NumbersHaveAtMostTwoDecimalsAndNoTrailingZeros) {
  const std::vector<std::pair<double, std::string>> cases = {
      {0, "0"},     {100, "100"},   {0.1, "0.1"}, {-3.5, "-3.5"}, {155.25, "155.25"}, {1234.5678, "1234.57"},
      {2.999, "3"}, {10.004, "10"}, {0.001, "0"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(htmlNumber(value), text) << value;
}

}  // namespace
}  // namespace quillan::pages
