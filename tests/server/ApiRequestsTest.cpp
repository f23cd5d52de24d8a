#include "server/ApiRequests.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "server/ClockChange.hpp"
#include "server/RequestError.hpp"
#include "server/WidgetsJson.hpp"
#include "platform/ISO8601.hpp"

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
  const PageSettings page;
  const auto request = parseRenderRequest(
      {{"kind", "StreakWidget"}, {"format", "svg"}, {"colorScheme", "dark"}, {"scale", "1.5"}, {"v", "7"}}, page);
  EXPECT_EQ(request.kind, "StreakWidget");
  EXPECT_EQ(request.format, PictureFormat::svg);
  EXPECT_EQ(request.settings.colorScheme, "dark");
  EXPECT_EQ(request.settings.scale, 1.5);
  EXPECT_EQ(parseRenderRequest({{"kind", "StreakWidget"}}, page).format, PictureFormat::png);
}

TEST(RenderRequestTest, BadParametersAreNamed) {
  const PageSettings page;
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
  PageSettings settings;
  applySettingsJson(settings, {{"timeZone", "Asia/Tokyo"}, {"redacted", true}, {"scale", 3}});
  EXPECT_EQ(settings.timeZone, "Asia/Tokyo");
  EXPECT_TRUE(settings.redacted);
  const auto before = settings;
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"locale", "de_DE"}, {"scale", "2"}}); }),
              HasSubstr("scale: expected a number"));
  EXPECT_EQ(settings, before);
  applySettingsJson(settings, {{"timeZone", nullptr}});
  EXPECT_FALSE(settings.timeZone);
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"device", nullptr}}); }), HasSubstr("device:"));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, nlohmann::json::array()); }), HasSubstr("JSON object"));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"theme", "dark"}}); }), HasSubstr("unknown key \"theme\""));
}

TEST(EnvironmentBodyTest, TheLockScreenIsVibrantUnlessAModeIsNamed) {
  PageSettings settings;
  const auto lock = viewEnvironment(settings, views::WidgetFamily::accessoryCircular);
  EXPECT_EQ(lock.renderingMode, views::WidgetRenderingMode::vibrant);
  EXPECT_EQ(lock.colorScheme, views::ColorScheme::dark);
  EXPECT_EQ(viewEnvironment(settings, views::WidgetFamily::systemSmall).colorScheme, views::ColorScheme::light);
  settings.renderingMode = "accented";
  EXPECT_EQ(viewEnvironment(settings, views::WidgetFamily::accessoryCircular).renderingMode,
            views::WidgetRenderingMode::accented);
}

TEST(EnvironmentBodyTest, TheDirectionFollowsThePagesLocaleUnlessNamed) {
  PageSettings settings;
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
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"dynamicType", "huge"}}); }),
              HasSubstr("dynamicType: unknown value \"huge\""));
  EXPECT_THAT(refusal([&] { applySettingsJson(settings, {{"dynamicType", nullptr}}); }), HasSubstr("dynamicType:"));
}

TEST(ClockBodyTest, AcceptsTheThreeFormsOnly) {
  EXPECT_TRUE(std::holds_alternative<LiveClock>(parseClockChange(R"({"live": true})")));
  EXPECT_EQ(std::get<RunClockFaster>(parseClockChange(R"({"rate": 60})")).rate, 60);
  EXPECT_EQ(std::get<PinClock>(parseClockChange(R"({"now": "2026-03-29T01:59:00+01:00"})")).at,
            *platform::ISO8601::parse("2026-03-29T01:59:00+01:00"));
  for (const char* bad : {"", "[]", "{}", R"({"live": false})", R"({"rate": -1})", R"({"rate": 1e9})",
                          R"({"rate": "fast"})", R"({"now": "yesterday"})", R"({"now": "2026-11-22T08:00:00"})",
                          R"({"live": true, "rate": 2})", R"({"speed": 2})"}) {
    EXPECT_THAT(refusal([&] { parseClockChange(bad); }), Not("accepted")) << bad;
  }
  EXPECT_THAT(refusal([] { parseClockChange(R"({"now": "soon"})"); }), HasSubstr("now: not an ISO-8601 date"));
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
  const auto json = widgetsJson(*platform::ISO8601::parse("2026-11-22T09:00:00+01:00"),
                                {{failed, views::WidgetFamily::systemMedium},
                                 {fresh, views::WidgetFamily::accessoryCircular}},
                                zone);
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
