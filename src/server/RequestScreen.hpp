#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "server/ServedHosts.hpp"

namespace quillan::server {

// Every body the API accepts is a small JSON object.
inline constexpr std::size_t kMaxBodyBytes = 16 * 1024;

// What is judged of a request before any route sees it: its line and the
// headers that decide whether it may be answered at all.
struct IncomingRequest {
  std::string method;
  std::string path;
  std::vector<std::string> hosts;  // every Host header given
  std::optional<std::string> origin;
  std::optional<std::string> fetchSite;  // Sec-Fetch-Site
  std::optional<std::string> contentType;
  std::optional<std::string> contentLength;
  bool transferEncoded = false;
};

// Why a request is not answered: a status and the one line said about it.
struct Refusal {
  int status;
  std::string message;
  std::string allow;  // the methods the path takes, for 405
};

// The methods a path takes ("GET, HEAD", "GET, HEAD, POST"); empty for a path
// that is not served.
std::string allowedMethods(const std::string& path);

// The first reason to refuse `request`, in the order a client can act on:
// a host this server is not reached by (421), an unknown path (404), a
// method the path does not take (405), a bad or too large Content-Length
// (400, 413) or a body of unstated length (411); then, for requests that
// change the host, another page's origin (403) and a body that is not JSON
// (415). Browsers let any page POST plain text without asking first, so
// only the page's own origin, or a client that names none, may change the
// host, and only with a JSON body.
std::optional<Refusal> screenRequest(const IncomingRequest& request, const ServedHosts& served);

}  // namespace quillan::server
