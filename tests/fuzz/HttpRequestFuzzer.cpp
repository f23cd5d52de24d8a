// A request as a client writes it (request line, header lines, blank line,
// body) through what the server judges before and inside its routes: whether
// the bytes make a whole request, the host, origin, method and length checks,
// then the query or body parsing of the route it reaches.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "FuzzCheck.hpp"
#include "server/ApiRequests.hpp"
#include "server/BufferedRequest.hpp"
#include "server/ClockRequest.hpp"
#include "server/PageSettings.hpp"
#include "server/QueryText.hpp"
#include "server/RequestError.hpp"
#include "server/RequestScreen.hpp"
#include "support/IncomingRequestText.hpp"

namespace {

using namespace quillan::server;
using Parsed = quillan::testing::IncomingRequestText;

void checkRefusal(const Refusal& refusal) {
  for (const int known : {400, 403, 404, 405, 411, 413, 415, 421}) {
    if (refusal.status == known) {
      FUZZ_CHECK(!refusal.message.empty() && refusal.message.find('\n') == std::string::npos);
      FUZZ_CHECK(refusal.allow.empty() == (refusal.status != 405));
      return;
    }
  }
  FUZZ_CHECK(!"a refusal with an unexpected status");
}

// The route's own parsing; what it accepts must be usable as accepted.
void route(const Parsed& parsed) {
  const auto& path = parsed.request.path;
  const quillan::host::HostEnvironment page;
  if (path == "/api/render") {
    const auto request = parseRenderRequest(parseQueryText(parsed.query), page);
    (void)renderContext(request.settings, quillan::views::WidgetFamily::systemSmall);
  } else if (path == "/api/tap") {
    const auto request = parseTapRequest(parseQueryText(parsed.query), page);
    (void)renderContext(request.settings, quillan::views::WidgetFamily::accessoryCircular);
  } else if (path == "/api/clock" && parsed.request.method == "POST") {
    (void)parseClockChange(parsed.body);
  } else if (path == "/api/environment" && parsed.request.method == "POST") {
    quillan::host::HostEnvironment settings = page;
    applySettingsBody(settings, parsed.body);
    // What the page is told back must be taken again as it is.
    quillan::host::HostEnvironment again;
    applySettingsJson(again, toJson(settings));
    FUZZ_CHECK(again == settings);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  (void)requestArrival(text);
  const auto parsed = quillan::testing::parseIncomingRequest(text);
  static const ServedHosts served("127.0.0.1", 8080);
  if (const auto refusal = screenRequest(parsed.request, served)) {
    checkRefusal(*refusal);
    return 0;
  }
  try {
    route(parsed);
  } catch (const RequestError& error) {
    FUZZ_CHECK(std::string_view(error.what()).find('\n') == std::string_view::npos);
  }
  return 0;
}
