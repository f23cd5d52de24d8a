#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <set>

#include "pages/Filmstrip.hpp"
#include "pages/Gallery.hpp"
#include "pages/HtmlText.hpp"
#include "pages/ImageMap.hpp"
#include "pages/SnapshotReport.hpp"

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

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t n = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

struct Page {
  std::string name;
  std::function<std::string()> write;
};

const std::vector<Page> kPages = {{"gallery", gallery}, {"filmstrip", filmstrip}, {"snapshot report", report}};

TEST(Pages, EveryPageIsOneDocumentTitledAsItsHeadingWithItsOwnStyle) {
  const std::regex frame(
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>([^<]+)</title>\n<style>\n"
      "[^<]+</style>\n</head>\n<body>\n<h1>([^<]+)</h1>\n[^]*</body>\n</html>\n");
  for (const auto& page : kPages) {
    const auto html = page.write();
    std::smatch match;
    ASSERT_TRUE(std::regex_match(html, match, frame)) << page.name << "\n" << html.substr(0, 400);
    EXPECT_EQ(match[1], match[2]) << page.name;
    for (const auto* once : {"<html", "<head>", "<body>", "<style>", "<h1>", "</html>"}) {
      EXPECT_EQ(count(html, once), 1u) << page.name << ": " << once;
    }
  }
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

TEST(Pages, EveryImageUsesAMapOfItsOwnWithAnAreaPerTapTarget) {
  for (const auto& page : kPages) {
    const auto html = page.write();
    std::multiset<std::string> used;
    std::set<std::string> defined;
    const std::regex usemap("usemap=\"#([^\"]+)\"");
    const std::regex map("<map name=\"([^\"]+)\">\n((  <area [^\n]*\n)*)</map>");
    for (std::sregex_iterator it(html.begin(), html.end(), usemap), end; it != end; ++it) used.insert((*it)[1]);
    for (std::sregex_iterator it(html.begin(), html.end(), map), end; it != end; ++it) {
      EXPECT_TRUE(defined.insert((*it)[1]).second) << page.name << ": map defined twice: " << (*it)[1];
      EXPECT_EQ(count((*it)[2], "<area "), regions("").size()) << page.name;
    }
    std::set<std::string> usedNames(used.begin(), used.end());
    EXPECT_EQ(usedNames, defined) << page.name;
  }
  // The filmstrip's light and dark pictures share one map; the gallery's every picture has its own.
  EXPECT_EQ(count(filmstrip(), "<map "), 2u);
  EXPECT_EQ(count(filmstrip(), "usemap="), 4u);
  EXPECT_EQ(count(gallery(), "<map "), count(gallery(), "usemap="));
}

TEST(Pages, AreasAreTheRegionsCornersInPointsEachLinkingItsUrl) {
  const auto html = imageMap({{{10, 20.5, 100.25, 50}, "a://1"}, {{1.005, 0, 2.999, 1.1}, "a://2"}}, "m");
  EXPECT_NE(html.find("coords=\"10,20.5,110.25,70.5\" href=\"a://1\""), std::string::npos) << html;
  EXPECT_NE(html.find("coords=\"1,0,4,1.1\" href=\"a://2\""), std::string::npos) << html;
  EXPECT_LT(html.find("a://1"), html.find("a://2"));  // hit-test order: the first area wins, as a tap does
}

TEST(Pages, NumbersHaveAtMostTwoDecimalsAndNoTrailingZeros) {
  const std::vector<std::pair<double, std::string>> cases = {
      {0, "0"},     {100, "100"},   {0.1, "0.1"}, {-3.5, "-3.5"}, {155.25, "155.25"}, {1234.5678, "1234.57"},
      {2.999, "3"}, {10.004, "10"}, {0.001, "0"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(htmlNumber(value), text) << value;
}

TEST(Pages, TheSnapshotReportCountsTheMatchesAndShowsOnlyTheFailures) {
  const auto html = report();
  EXPECT_NE(html.find("1 of 3 cases match (precision 0.5, perceptual precision 0.98)"), std::string::npos);
  EXPECT_EQ(count(html, "<section>"), 2u);
  EXPECT_EQ(html.find("passing-case"), std::string::npos);
  EXPECT_EQ(count(html, "<img src=\"" + htmlEscaped(kHostile + ".png") + "\""), 2u);
}

}  // namespace
}  // namespace quillan::pages
