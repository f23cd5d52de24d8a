#include "server/RequestScreen.hpp"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "server/RequestError.hpp"
#include "server/RouteTable.hpp"

namespace quillan::server {
namespace {

// More digits than this cannot be a body the server takes, and would
// overflow before being compared.
constexpr std::size_t kMaxLengthDigits = 18;

std::string lowered(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// "application/json; charset=utf-8" -> "application/json".
std::string mediaType(std::string_view contentType) {
  auto type = contentType.substr(0, contentType.find(';'));
  while (!type.empty() && (type.back() == ' ' || type.back() == '\t')) type.remove_suffix(1);
  while (!type.empty() && (type.front() == ' ' || type.front() == '\t')) type.remove_prefix(1);
  return lowered(type);
}

Refusal refusal(int status, const RequestError& error) { return {status, error.what(), {}}; }

std::optional<Refusal> screenHost(const IncomingRequest& request, const ServedHosts& served) {
  if (request.hosts.size() != 1) {
    return Refusal{400, "Host: expected exactly one Host header, got " + std::to_string(request.hosts.size()), {}};
  }
  if (served.serves(request.hosts.front())) return std::nullopt;
  return refusal(421, badValue("Host", "not a name this server answers to", request.hosts.front(),
                               "open http://" + served.preferred() + "/"));
}

std::optional<Refusal> screenLength(const IncomingRequest& request) {
  if (request.transferEncoded) return Refusal{411, "Transfer-Encoding: a body must come with a Content-Length", {}};
  if (!request.contentLength) return std::nullopt;
  const auto& length = *request.contentLength;
  const bool digits = !length.empty() && length.size() <= kMaxLengthDigits &&
                      std::all_of(length.begin(), length.end(), [](unsigned char c) { return std::isdigit(c); });
  if (!digits) return refusal(400, badValue("Content-Length", "not a byte count", length));
  if (std::stoull(length) > kMaxBodyBytes) return Refusal{413, "request body larger than 16 KiB", {}};
  return std::nullopt;
}

std::optional<Refusal> screenChange(const IncomingRequest& request, const ServedHosts& served) {
  if (request.fetchSite && *request.fetchSite != "same-origin" && *request.fetchSite != "none") {
    return refusal(403, badValue("Sec-Fetch-Site", "only the page itself may change the host; this request is",
                                 *request.fetchSite));
  }
  if (request.origin && !served.isOwnOrigin(*request.origin)) {
    return refusal(403, badValue("Origin", "only the page itself may change the host, not", *request.origin));
  }
  if (!request.contentType || mediaType(*request.contentType) != "application/json") {
    return refusal(415, badValue("Content-Type", "expected application/json, got", request.contentType.value_or("")));
  }
  return std::nullopt;
}

}  // namespace

std::string allowedMethods(const std::string& path) {
  const auto* route = routeOf(path);
  if (!route) return {};
  return route->post ? "GET, HEAD, POST" : "GET, HEAD";
}

std::optional<Refusal> screenRequest(const IncomingRequest& request, const ServedHosts& served) {
  if (auto refused = screenHost(request, served)) return refused;
  const auto* route = routeOf(request.path);
  if (!route) return refusal(404, badValue("path", "no such path", request.path));
  const bool reads = request.method == "GET" || request.method == "HEAD";
  if (!reads && !(route->post && request.method == "POST")) {
    return Refusal{405, badValue("method", "not allowed on " + request.path + ":", request.method).what(),
                   allowedMethods(request.path)};
  }
  if (auto refused = screenLength(request)) return refused;
  if (!reads) return screenChange(request, served);
  return std::nullopt;
}

}  // namespace quillan::server
