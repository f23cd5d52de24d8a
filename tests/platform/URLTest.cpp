#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/URL.hpp"

namespace quillan::platform {
namespace {

TEST(URL, ParsesReferencesAndReadsTheirParts) {
  struct Case {
    const char* text;
    const char* scheme;
    const char* host;
    const char* path;
  };
  const Case cases[] = {
      {"widget-deeplink://OnThisDay", "widget-deeplink", "OnThisDay", ""},
      {"widget-deeplink-addrecord://RecordDate/2026-03-05", "widget-deeplink-addrecord", "RecordDate", "/2026-03-05"},
      {"https://user@example.org:8443/a%20b/c?q=1#top", "https", "example.org", "/a b/c"},
      {"file:///var/lib/Quillan.sqlite", "file", "", "/var/lib/Quillan.sqlite"},
      {"relative/path", "", "", "relative/path"},
  };
  for (const auto& c : cases) {
    const auto url = URL::parse(c.text);
    ASSERT_TRUE(url.has_value()) << c.text;
    EXPECT_EQ(url->absoluteString(), c.text);
    EXPECT_EQ(url->scheme(), c.scheme) << c.text;
    EXPECT_EQ(url->host(), c.host) << c.text;
    EXPECT_EQ(url->path(), c.path) << c.text;
  }
}

TEST(URL, RejectsTextThatIsNotAURLReference) {
  for (const char* text : {"", "has space://x", "widget deeplink://OnThisDay", "bad%zzescape", "trailing%2",
                           "1scheme://x", "sch^eme://x", "quote\"d", "emoji://🎉"}) {
    EXPECT_FALSE(URL::parse(text).has_value()) << text;
  }
}

TEST(URL, AppendingAPathComponentAddsOneSlashAndEncodes) {
  struct Case {
    const char* base;
    const char* component;
    const char* expected;
  };
  const Case cases[] = {
      {"widget-deeplink-addrecord://RecordDate", "2026-03-05", "widget-deeplink-addrecord://RecordDate/2026-03-05"},
      {"widget-deeplink-addrecord://RecordDate/", "2026-03-05", "widget-deeplink-addrecord://RecordDate/2026-03-05"},
      {"file:///tmp/dir/", "My Journal.sqlite", "file:///tmp/dir/My%20Journal.sqlite"},
      {"https://example.org/a?x=1", "b#c", "https://example.org/a/b%23c?x=1"},
      {"https://example.org/a", "Grüße", "https://example.org/a/Gr%C3%BC%C3%9Fe"},
  };
  for (const auto& c : cases) {
    const auto appended = URL::literal(c.base).appendingPathComponent(c.component);
    EXPECT_EQ(appended.absoluteString(), c.expected) << c.base << " + " << c.component;
    EXPECT_TRUE(URL::parse(appended.absoluteString()).has_value()) << appended.absoluteString();
  }
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
