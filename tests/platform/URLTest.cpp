#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/URL.hpp"
#include "support/GoldenFile.hpp"

namespace quillan::platform {
namespace {

std::string parts(const std::string& question) {
  const auto plus = question.find(" + ");
  if (plus != std::string::npos) {
    const auto appended = URL::literal(question.substr(0, plus)).appendingPathComponent(question.substr(plus + 3));
    EXPECT_TRUE(URL::parse(appended.absoluteString()).has_value()) << appended.absoluteString();
    return appended.absoluteString();
  }
  const auto url = URL::parse(question);
  if (!url) return "rejected";
  EXPECT_EQ(url->absoluteString(), question);
  return "scheme \"" + url->scheme() + "\" host \"" + url->host() + "\" path \"" + url->path() + "\"";
}

TEST(URL, ParsesReferencesReadsTheirPartsAndAppendsEncodedComponents) {
  quillan::testing::expectGoldenAnswers("url_parse.txt", parts);
  EXPECT_FALSE(URL::parse("").has_value());
  EXPECT_EQ(URL::literal("file:///tmp/dir").appendingPathComponent("My Journal").path(), "/tmp/dir/My Journal");
}

TEST(URL, FileURLsRoundTripTheirPath) {
  const auto url = URL::fileURL("/var/data/group container/Quillan.sqlite");
  EXPECT_TRUE(url.isFileURL());
  EXPECT_EQ(url.absoluteString(), "file:///var/data/group%20container/Quillan.sqlite");
  EXPECT_EQ(url.filePath(), std::filesystem::path("/var/data/group container/Quillan.sqlite"));
}

TEST(URLDeathTest, ALiteralThatDoesNotParseStopsWithTheNilReport) {
  EXPECT_DEATH(URL::literal("not a url"),
               ::testing::StrEq("URL: Fatal error: Unexpectedly found nil while unwrapping an Optional value\n"));
}

}  // namespace
}  // namespace quillan::platform
