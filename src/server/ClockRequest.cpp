#include "server/ClockRequest.hpp"

#include <cmath>

#include <nlohmann/json.hpp>

#include "platform/ISO8601.hpp"
#include "server/RequestError.hpp"
#include "views/JsonNesting.hpp"

namespace quillan::server {
namespace {

constexpr const char* kExpected = R"(clock: expected {"now": ISO-8601}, {"live": true} or {"rate": N})";

host::ClockChange fromMember(const std::string& key, const nlohmann::json& value) {
  if (key == "now") {
    if (!value.is_string())
      throw RequestError("now: expected an ISO-8601 date with offset, e.g. 2026-11-22T08:30:00+01:00");
    const auto text = value.get<std::string>();
    const auto date = platform::ISO8601::parse(text);
    if (!date) throw badValue("now", "not an ISO-8601 date with offset", text, "e.g. 2026-11-22T08:30:00+01:00");
    return host::PinClock{*date};
  }
  if (key == "live") {
    if (value != true) throw RequestError("live: expected true");
    return host::LiveClock{};
  }
  if (key == "rate") {
    const double rate = value.is_number() ? value.get<double>() : 0;
    if (!value.is_number() || !std::isfinite(rate) || rate <= 0 || rate > host::HostClock::kMaxRate) {
      throw RequestError("rate: expected a number above 0 and at most 1000000");
    }
    return host::RunClockFaster{rate};
  }
  throw badValue("clock", "unknown key", key, "expected now, live or rate");
}

}  // namespace

host::ClockChange parseClockChange(std::string_view body) {
  if (!views::jsonNestsWithin(body)) throw RequestError("clock: the body nests too deep");
  const auto json = nlohmann::json::parse(body, nullptr, /*allow_exceptions=*/false);
  if (json.is_discarded()) throw RequestError("clock: the body is not JSON");
  if (!json.is_object() || json.size() != 1) throw RequestError(kExpected);
  const auto member = json.begin();
  return fromMember(member.key(), member.value());
}

}  // namespace quillan::server
