#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ISO8601.hpp"
#include "server/ApiRequests.hpp"
#include "server/BufferedRequest.hpp"
#include "server/ClockRequest.hpp"
#include "server/QueryText.hpp"
#include "server/RequestError.hpp"
#include "server/RequestScreen.hpp"
#include "server/WidgetsJson.hpp"

namespace quillan::server {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string refusal(const std::function<void()>& parse) {
  try {
    parse();
  } catch (const RequestError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(RenderRequestTest, OverridesApplyToThePictureOnly) {
  const host::HostEnvironment page;
  const auto request = parseRenderRequest(
      {{"kind", "StreakWidget"}, {"format", "svg"}, {"colorScheme", "dark"}, {"scale", "1.5"}, {"v", "7"}}, page);
  EXPECT_EQ(request.kind, "StreakWidget");
  EXPECT_EQ(request.format, PictureFormat::svg);
  EXPECT_EQ(request.settings.colorScheme, "dark");
  EXPECT_EQ(request.settings.scale, 1.5);
  EXPECT_EQ(parseRenderRequest({{"kind", "StreakWidget"}}, page).format, PictureFormat::png);
}

TEST(RenderRequestTest, BadParametersAreNamed) {
  const host::HostEnvironment page;
  const auto render = [&](QueryParameters query) { return refusal([&] { parseRenderRequest(query, page); }); };
  EXPECT_EQ(render({}), "kind: required");
  EXPECT_THAT(render({{"kind", "Streak"}}), HasSubstr("kind: unknown widget \"Streak\"; expected OnThisDayWidget"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"format", "pdf"}}), HasSubstr("format: unknown format"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"scale", "0x2"}}), HasSubstr("scale:"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"scale", "3.5"}}), HasSubstr("scale:"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"redacted", "yes"}}), HasSubstr("redacted: expected true or false"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"device", "1x1"}}), HasSubstr("device: unknown device"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"platformVersion", "seventeen"}}), HasSubstr("platformVersion:"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"locale", std::string(500, 'a')}}), HasSubstr("value too long"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"kind", "OnThisDayWidget"}}), HasSubstr("more than once"));
  EXPECT_THAT(render({{"kind", "StreakWidget"}, {"x", "1"}}), HasSubstr("unknown parameter \"x\""));
}

TEST(RenderRequestTest, EchoedValuesStayOnOneLine) {
  const auto message = refusal([] { parseRenderRequest({{"kind", "a\nb\"<script>"}}, {}); });
  EXPECT_THAT(message, Not(HasSubstr("\n")));
  EXPECT_THAT(message, HasSubstr("a\\x0Ab\\x22<script>"));
  const auto longValue = refusal([] { parseRenderRequest({{"kind", std::string(5000, 'k')}}, {}); });
  EXPECT_LT(longValue.size(), 300u);
}

TEST(TapRequestTest, PointsAreDecimalsWithinReason) {
  const auto tap = parseTapRequest({{"kind", "StreakWidget"}, {"x", "12.5"}, {"y", "-3"}}, {});
  EXPECT_EQ(tap.x, 12.5);
  EXPECT_EQ(tap.y, -3);
  const auto refused = [](const std::string& x) {
    return refusal([&] { parseTapRequest({{"kind", "StreakWidget"}, {"x", x}, {"y", "1"}}, {}); });
  };
  for (const std::string bad : {"", "nan", "inf", "1e2", "0x10", "12px", "1000001"}) {
    EXPECT_THAT(refused(bad), HasSubstr("x: expected a decimal number")) << bad;
  }
  EXPECT_EQ(refusal([] { parseTapRequest({{"kind", "StreakWidget"}, {"x", "1"}}, {}); }), "y: required");
}

TEST(EnvironmentBodyTest, AppliesAllOrNothing) {
  host::HostEnvironment settings;
  applySettingsJson(settings, {{"timeZone", "Asia/Tokyo"}, {"redacted", true}, {"scale", 3}});
  EXPECT_EQ(settings.timeZone, "Asia/Tokyo");
  EXPECT_TRUE(settings.redacted);
  const auto before = settings;
  EXPECT_THAT(refusal([&] {
                applySettingsJson(settings, {{"locale", "de_DE"}, {"scale", "2"}});
              }),
              HasSubstr("scale: expected a number"));
  EXPECT_EQ(settings, before);
  applySettingsJson(settings, {{"timeZone", nullptr}});
  EXPECT_FALSE(settings.timeZone);
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"device", nullptr}}); }), HasSubstr("device:"));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, nlohmann::json::array()); }), HasSubstr("JSON object"));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"theme", "dark"}}); }), HasSubstr("unknown key \"theme\""));
}

TEST(EnvironmentBodyTest, TheLockScreenIsVibrantUnlessAModeIsNamed) {
  host::HostEnvironment settings;
  const auto lock = viewEnvironment(settings, views::WidgetFamily::accessoryCircular);
  EXPECT_EQ(lock.renderingMode, views::WidgetRenderingMode::vibrant);
  EXPECT_EQ(lock.colorScheme, views::ColorScheme::dark);
  EXPECT_EQ(viewEnvironment(settings, views::WidgetFamily::systemSmall).colorScheme, views::ColorScheme::light);
  settings.renderingMode = "accented";
  EXPECT_EQ(viewEnvironment(settings, views::WidgetFamily::accessoryCircular).renderingMode,
            views::WidgetRenderingMode::accented);
}

TEST(EnvironmentBodyTest, TheDirectionFollowsThePagesLocaleUnlessNamed) {
  host::HostEnvironment settings;
  settings.locale = "en_US";
  const auto family = views::WidgetFamily::systemMedium;
  EXPECT_EQ(viewEnvironment(settings, family).layoutDirection, views::LayoutDirection::leftToRight);
  applySettingsJson(settings, {{"locale", "ar_EG"}});
  EXPECT_EQ(viewEnvironment(settings, family).layoutDirection, views::LayoutDirection::rightToLeft);
  applySettingsJson(settings, {{"layoutDirection", "ltr"}, {"dynamicType", "accessibility5"}});
  EXPECT_EQ(viewEnvironment(settings, family).layoutDirection, views::LayoutDirection::leftToRight);
  EXPECT_EQ(viewEnvironment(settings, family).dynamicTypeSize, views::DynamicTypeSize::accessibility5);
  applySettingsJson(settings, {{"layoutDirection", nullptr}});
  EXPECT_EQ(viewEnvironment(settings, family).layoutDirection, views::LayoutDirection::rightToLeft);
  EXPECT_THAT(refusal([&] {
                applySettingsJson(settings, {{"dynamicType", "huge"}});
              }),
              HasSubstr("dynamicType: unknown value \"huge\""));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"dynamicType", nullptr}}); }), HasSubstr("dynamicType:"));
}

TEST(ClockBodyTest, AcceptsTheThreeFormsOnly) {
  EXPECT_TRUE(std::holds_alternative<host::LiveClock>(parseClockChange(R"({"live": true})")));
  EXPECT_EQ(std::get<host::RunClockFaster>(parseClockChange(R"({"rate": 60})")).rate, 60);
  EXPECT_EQ(std::get<host::PinClock>(parseClockChange(R"({"now": "2026-03-29T01:59:00+01:00"})")).at,
            *platform::ISO8601::parse("2026-03-29T01:59:00+01:00"));
  for (const char* bad : {"", "[]", "{}", R"({"live": false})", R"({"rate": -1})", R"({"rate": 1e9})",
                          R"({"rate": "fast"})", R"({"now": "yesterday"})", R"({"now": "2026-11-22T08:00:00"})",
                          R"({"live": true, "rate": 2})", R"({"speed": 2})"}) {
    EXPECT_THAT(refusal([&] { parseClockChange(bad); }), Not("accepted")) << bad;
  }
  EXPECT_THAT(refusal([] { parseClockChange(R"({"now": "soon"})"); }), HasSubstr("now: not an ISO-8601 date"));
}

TEST(QueryTextTest, DecodesFormPairsAndRefusesAmbiguousOnes) {
  EXPECT_EQ(parseQueryText("kind=StreakWidget&format=png&&v=3"),
            (QueryParameters{{"kind", "StreakWidget"}, {"format", "png"}, {"v", "3"}}));
  EXPECT_EQ(parseQueryText("locale=ja_JP%40calendar%3Djapanese&timeZone=Asia%2fTokyo&x=a+b&flag"),
            (QueryParameters{
                {"locale", "ja_JP@calendar=japanese"}, {"timeZone", "Asia/Tokyo"}, {"x", "a b"}, {"flag", ""}}));
  EXPECT_EQ(parseQueryText("kind=A&kind=B").count("kind"), 2u);
  const std::vector<std::pair<std::string, std::string>> refused = {
      {"kind=Streak=Widget", "a second '='"}, {"kind=%", "broken %-escape"},       {"kind=%4", "broken %-escape"},
      {"kind=%G1", "broken %-escape"},        {"=StreakWidget", "without a name"},
  };
  for (const auto& [query, problem] : refused) {
    EXPECT_THAT(refusal([&] { parseQueryText(query); }), HasSubstr(problem)) << query;
  }
}

// A request as the page sends it, to be spoiled one field at a time.
IncomingRequest pagePost(const std::string& path) {
  return {"POST", path, {"127.0.0.1:8080"}, "http://127.0.0.1:8080", "same-origin", "application/json", "12", false};
}

TEST(RequestScreenTest, RefusesWhatThePageWouldNeverSend) {
  const ServedHosts served("127.0.0.1", 8080);
  struct Case {
    std::string name;
    std::function<void(IncomingRequest&)> spoil;
    int status;  // 0: accepted
    std::string message;
  };
  const std::vector<Case> cases = {
      {"the page's own post", [](IncomingRequest&) {}, 0, ""},
      {"a client naming no origin", [](IncomingRequest& r) { r.origin.reset(), r.fetchSite.reset(); }, 0, ""},
      {"json with a charset", [](IncomingRequest& r) { r.contentType = "Application/JSON; charset=utf-8"; }, 0, ""},
      {"localhost", [](IncomingRequest& r) { r.hosts = {"LOCALHOST:8080"}, r.origin = "http://localhost:8080"; }, 0,
       ""},
      {"a read", [](IncomingRequest& r) { r.method = "GET", r.contentType.reset(), r.origin = "http://evil.example"; },
       0, ""},
      {"a rebound name", [](IncomingRequest& r) { r.hosts = {"evil.example:8080"}; }, 421, "Host: not a name"},
      {"another port", [](IncomingRequest& r) { r.hosts = {"127.0.0.1:8081"}; }, 421, "Host:"},
      {"no host", [](IncomingRequest& r) { r.hosts.clear(); }, 400, "exactly one Host"},
      {"two hosts", [](IncomingRequest& r) { r.hosts.push_back("127.0.0.1:8080"); }, 400, "exactly one Host"},
      {"an unknown path", [](IncomingRequest& r) { r.path = "/api/nothing"; }, 404, "no such path \"/api/nothing\""},
      {"a put", [](IncomingRequest& r) { r.method = "PUT"; }, 405, "method: not allowed"},
      {"a preflight", [](IncomingRequest& r) { r.method = "OPTIONS"; }, 405, "\"OPTIONS\""},
      {"a negative length", [](IncomingRequest& r) { r.contentLength = "-1"; }, 400,
       "Content-Length: not a byte count \"-1\""},
      {"a signed length", [](IncomingRequest& r) { r.contentLength = "+5"; }, 400, "Content-Length:"},
      {"an endless length", [](IncomingRequest& r) { r.contentLength = std::string(30, '9'); }, 400, "Content-Length:"},
      {"a long body", [](IncomingRequest& r) { r.contentLength = "16385"; }, 413, "16 KiB"},
      {"a chunked body", [](IncomingRequest& r) { r.transferEncoded = true; }, 411, "Content-Length"},
      {"another site", [](IncomingRequest& r) { r.fetchSite = "cross-site"; }, 403, "Sec-Fetch-Site"},
      {"another origin", [](IncomingRequest& r) { r.origin = "http://evil.example:8080"; }, 403, "Origin:"},
      {"an opaque origin", [](IncomingRequest& r) { r.origin = "null"; }, 403, "Origin:"},
      {"a form's text", [](IncomingRequest& r) { r.contentType = "text/plain"; }, 415, "expected application/json"},
      {"no type", [](IncomingRequest& r) { r.contentType.reset(); }, 415, "Content-Type:"},
  };
  for (const auto& [name, spoil, status, message] : cases) {
    SCOPED_TRACE(name);
    auto request = pagePost("/api/clock");
    spoil(request);
    const auto refused = screenRequest(request, served);
    EXPECT_EQ(refused ? refused->status : 0, status);
    if (refused) {
      EXPECT_THAT(refused->message, HasSubstr(message));
      EXPECT_EQ(refused->message.find('\n'), std::string::npos);
      EXPECT_EQ(refused->allow, status == 405 ? "GET, HEAD, POST" : "");
    }
  }
  auto post = pagePost("/api/render");
  EXPECT_EQ(screenRequest(post, served)->allow, "GET, HEAD");
}

TEST(RequestScreenTest, TheBoundAddressIsServedBesideTheLoopbackNames) {
  const ServedHosts served("::1", 80);
  for (const std::string host : {"[::1]:80", "[::1]", "localhost", "127.0.0.1:80"})
    EXPECT_TRUE(served.serves(host)) << host;
  for (const std::string host : {"::1", "[::1]:8080", "localhost.evil.example", ""})
    EXPECT_FALSE(served.serves(host)) << host;
  EXPECT_TRUE(served.isOwnOrigin("http://[::1]"));
  EXPECT_FALSE(served.isOwnOrigin("https://[::1]"));
  EXPECT_TRUE(ServedHosts("192.168.1.5", 9000).serves("192.168.1.5:9000"));
}

// Bound to every interface, the server is reached by the interfaces'
// addresses, never by the wildcard itself or a name.
TEST(RequestScreenTest, AWildcardBindServesEveryInterfaceAddress) {
  for (const std::string wildcard : {"0.0.0.0", "::"}) {
    const ServedHosts served(wildcard, 9000);
    for (const std::string host : {"127.0.0.1:9000", "[::1]:9000", "localhost:9000"})
      EXPECT_TRUE(served.serves(host)) << host;
    for (const std::string host : {"0.0.0.0:9000", "[::]:9000", "evil.example:9000"})
      EXPECT_FALSE(served.serves(host)) << host;
  }
}

TEST(BufferedRequestTest, ARequestIsCompleteWithItsHeadAndAnnouncedBody) {
  const std::string head = "POST /api/clock HTTP/1.1\r\nHost: h\r\ncontent-length:  4 \r\n\r\n";
  const std::vector<std::pair<std::string, RequestArrival>> cases = {
      {"", RequestArrival::incomplete},
      {"GET / HTTP/1.1\r\nHost: h\r\n", RequestArrival::incomplete},
      {"GET / HTTP/1.1\r\nHost: h\r\n\r\n", RequestArrival::complete},
      {"GET / HTTP/1.1\nHost: h\n\n", RequestArrival::complete},
      {head, RequestArrival::incomplete},
      {head + "{}", RequestArrival::incomplete},
      {head + "{ }}", RequestArrival::complete},
      {"POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n", RequestArrival::complete},
      {"POST / HTTP/1.1\r\nContent-Length: 999999\r\n\r\n", RequestArrival::complete},
      {"GET / HTTP/1.1\r\nX: " + std::string(kMaxHeadBytes, 'x'), RequestArrival::tooLarge},
      {"GET / HTTP/1.1\r\nX: " + std::string(kMaxHeadBytes, 'x') + "\r\n\r\n", RequestArrival::tooLarge},
  };
  for (const auto& [buffered, arrival] : cases) {
    EXPECT_EQ(requestArrival(buffered), arrival) << buffered.substr(0, 80);
  }
}

TEST(RequestBodyTest, EveryValidatorRefusesAsTheCommandLineDoes) {
  host::HostEnvironment settings;
  const std::string calendar = "locale: unknown calendar keyword \"calendar=martian\"";
  EXPECT_THAT(refusal([&] { applySettingsBody(settings, R"({"locale": "en_US@calendar=martian"})"); }),
              HasSubstr(calendar));
  EXPECT_THAT(refusal([&] { applySettingText(settings, "locale", "en_US@calendar=martian"); }), HasSubstr(calendar));
  applySettingsBody(settings, R"({"locale": "ja_JP@calendar=japanese", "platformVersion": "17.2.1"})");
  EXPECT_EQ(settings.locale, "ja_JP@calendar=japanese");
  EXPECT_EQ(settings.platformVersion, "17.2");
  for (const std::string version : {"17.0.", "17.0.x", "17.0.12345", "17..1", "seventeen"}) {
    EXPECT_THAT(refusal([&] { applySettingText(settings, "platformVersion", version); }),
                HasSubstr("platformVersion: not a version"))
        << version;
  }
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  EXPECT_THAT(refusal([&] { applySettingsBody(settings, deep); }), HasSubstr("environment: the body nests too deep"));
  EXPECT_THAT(refusal([&] { parseClockChange(R"({"rate": )" + deep + "}"); }),
              HasSubstr("clock: the body nests too deep"));
  EXPECT_THAT(refusal([&] { applySettingsBody(settings, "{locale"); }), HasSubstr("not JSON"));
}

TEST(WidgetsJsonTest, FailedWidgetsCarryTheirReasonAndUnknownsAreNull) {
  host::WidgetState failed;
  failed.kind = "StreakWidget";
  failed.failure = "Store.swift:12: Fatal error: no date";
  failed.reloads.policy = 3;
  failed.reloads.app = 2;
  host::WidgetState fresh;
  fresh.kind = "ComposeButtonLockScreen";
  const auto zone = *platform::TimeZone::named("Europe/Berlin");
  const auto json =
      widgetsJson(*platform::ISO8601::parse("2026-11-22T09:00:00+01:00"),
                  {{failed, views::WidgetFamily::systemMedium}, {fresh, views::WidgetFamily::accessoryCircular}}, zone);
  EXPECT_EQ(json["now"], "2026-11-22T09:00:00+01:00");
  EXPECT_EQ(json["widgets"][0]["state"], "failed");
  EXPECT_EQ(json["widgets"][0]["reason"], "Store.swift:12: Fatal error: no date");
  EXPECT_EQ(json["widgets"][0]["reloads"], nlohmann::json({{"policy", 3}, {"app", 2}, {"budget", 70}}));
  EXPECT_EQ(json["widgets"][1]["state"], "loading");
  EXPECT_FALSE(json["widgets"][1].contains("reason"));
  EXPECT_TRUE(json["widgets"][1]["entry"]["date"].is_null());
  EXPECT_TRUE(json["widgets"][1]["policy"].is_null());
  EXPECT_EQ(json["widgets"][1]["family"], "accessoryCircular");
}

}  // namespace
}  // namespace quillan::server
