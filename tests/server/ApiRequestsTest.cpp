#include <gtest/gtest.h>

#include <regex>

#include "platform/ISO8601.hpp"
#include "server/ApiRequests.hpp"
#include "server/BufferedRequest.hpp"
#include "server/ClockRequest.hpp"
#include "server/PageSettings.hpp"
#include "server/QueryText.hpp"
#include "server/RequestError.hpp"
#include "server/RequestScreen.hpp"
#include "server/WidgetsJson.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"
#include "support/IncomingRequestText.hpp"

namespace quillan::server {
namespace {

// What a parser made of its input, or "refused: <its one line>".
std::string answerOf(const std::function<std::string()>& parse) {
  try {
    return parse();
  } catch (const RequestError& error) {
    return "refused: " + std::string(error.what());
  }
}

// The page settings that differ from the defaults, "key=value ...".
std::string changedSettings(const host::HostEnvironment& settings) {
  const auto defaults = toJson(host::HostEnvironment{});
  const auto json = toJson(settings);
  std::string changed;
  for (const auto& [key, value] : json.items()) {
    if (value != defaults[key]) changed += " " + key + "=" + value.dump();
  }
  return changed;
}

std::string viewsAreTold(const host::HostEnvironment& settings, views::WidgetFamily family) {
  const auto environment = viewEnvironment(settings, family);
  return std::string(views::toString(family)) + ": " + std::string(views::toString(environment.colorScheme)) + " " +
         std::string(views::toString(environment.renderingMode)) + " " +
         std::string(views::toString(environment.layoutDirection)) + " " +
         std::string(views::toString(environment.dynamicTypeSize));
}

// "BODY then BODY ...", applied in turn to the default settings: each refused
// body must change nothing.
std::string environmentAfter(const std::string& bodies) {
  host::HostEnvironment settings;
  std::string answer;
  for (std::size_t start = 0; start != std::string::npos;) {
    const auto end = bodies.find(" then ", start);
    const auto body = bodies.substr(start, end == std::string::npos ? end : end - start);
    const auto before = settings;
    const auto refused = answerOf([&] {
      applySettingsBody(settings, body);
      return std::string();
    });
    if (!refused.empty()) answer += refused + (settings == before ? "; " : " AFTER A CHANGE; ");
    start = end == std::string::npos ? end : end + 6;
  }
  return answer + "set" + changedSettings(settings) + "; " + viewsAreTold(settings, views::WidgetFamily::systemMedium) +
         "; " + viewsAreTold(settings, views::WidgetFamily::accessoryCircular);
}

std::string clockChangeText(const host::ClockChange& change) {
  if (const auto* pin = std::get_if<host::PinClock>(&change)) return "pin " + platform::ISO8601::format(pin->at, 0);
  if (const auto* faster = std::get_if<host::RunClockFaster>(&change))
    return "faster " + nlohmann::json(faster->rate).dump();
  return "live";
}

std::string screenAnswer(const std::string& question) {
  const auto text = testing::requestFromOneLine(question);
  const auto parsed = testing::parseIncomingRequest(text);
  const auto refused = screenRequest(parsed.request, ServedHosts("127.0.0.1", 8080));
  if (!refused) return "accepted";
  return std::to_string(refused->status) + " " + refused->message +
         (refused->allow.empty() ? "" : " [Allow: " + refused->allow + "]");
}

// "BIND PORT HOST": whether a server bound there serves that Host (an origin
// when it starts with http).
std::string servedAnswer(const std::string& question) {
  const auto words = testing::words(question);
  const ServedHosts served(words[0], std::stoi(words[1]));
  const auto name = words.size() > 2 ? words[2] : "";
  if (name.starts_with("http")) return served.isOwnOrigin(name) ? "own origin" : "foreign origin";
  return served.serves(name) ? "served" : "not served";
}

// "C{N}" in a question stands for the character C written N times: inputs
// too large to write out.
std::string expandedRuns(const std::string& question) {
  static const std::regex run(R"((.)\{(\d+)\})");
  std::string text;
  auto from = question.cbegin();
  for (std::sregex_iterator it(question.begin(), question.end(), run), end; it != end; ++it) {
    text.append(from, (*it)[0].first).append(std::stoul((*it)[2]), (*it)[1].str()[0]);
    from = (*it)[0].second;
  }
  return text.append(from, question.cend());
}

// Each line of server_requests.txt is "<what> <input>": a render or tap
// query, a clock or environment body, query text, a request's head for the
// screen, a bound address with a Host, or the bytes of a request as they
// arrive (escaped as unescaped() reads them).
std::string requestAnswer(const std::string& written) {
  const auto question = expandedRuns(written);
  const auto space = std::min(question.find(' '), question.size());
  const auto what = question.substr(0, space), input = question.substr(std::min(space + 1, question.size()));
  const host::HostEnvironment page;
  if (what == "render") {
    return answerOf([&] {
      const auto request = parseRenderRequest(parseQueryText(input), page);
      return request.kind + " " + formatName(request.format) + changedSettings(request.settings);
    });
  }
  if (what == "tap") {
    return answerOf([&] {
      const auto tap = parseTapRequest(parseQueryText(input), page);
      return tap.kind + " at " + nlohmann::json(tap.x).dump() + "," + nlohmann::json(tap.y).dump() +
             changedSettings(tap.settings);
    });
  }
  if (what == "query") {
    return answerOf([&] {
      std::string pairs;
      for (const auto& [name, value] : parseQueryText(input)) pairs += " [" + name + "] [" + value + "]";
      return "pairs" + pairs;
    });
  }
  if (what == "clock") return answerOf([&] { return clockChangeText(parseClockChange(input)); });
  if (what == "environment") return environmentAfter(input);
  if (what == "setting") {
    host::HostEnvironment settings;
    const auto equals = input.find('=');
    return answerOf([&] {
      applySettingText(settings, input.substr(0, equals), input.substr(equals + 1));
      return "set" + changedSettings(settings);
    });
  }
  if (what == "screen") return screenAnswer(input);
  if (what == "arrival") {
    const auto arrival = requestArrival(quillan::testing::unescaped(input));
    return arrival == RequestArrival::complete     ? "complete"
           : arrival == RequestArrival::incomplete ? "incomplete"
                                                   : "too large";
  }
  if (what == "serves") return servedAnswer(input);
  return "unknown question";
}

TEST(ApiRequestsTest, EachPartOfARequestIsParsedOrRefusedInOneLine) {
  quillan::testing::expectGoldenAnswers("server_requests.txt", requestAnswer);
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
  quillan::testing::expectGoldenJson(
      widgetsJson(*platform::ISO8601::parse("2026-11-22T09:00:00+01:00"),
                  {{failed, views::WidgetFamily::systemMedium}, {fresh, views::WidgetFamily::accessoryCircular}}, zone),
      "widgets_failed_and_loading.json");
}

}  // namespace
}  // namespace quillan::server
