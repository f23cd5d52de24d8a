#pragma once

#include <string>
#include <string_view>

#include "server/RequestScreen.hpp"

namespace quillan::testing {

// A request as a client writes it (request line, header lines, blank line,
// body), split as far as the server's screen and routes judge it: the
// headers the screen reads, the query of the target and the body.
struct IncomingRequestText {
  server::IncomingRequest request;
  std::string_view query;
  std::string_view body;
};

inline std::string_view nextRequestLine(std::string_view& text) {
  const auto end = text.find('\n');
  auto line = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

inline void takeRequestHeader(server::IncomingRequest& request, std::string_view line) {
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return;
  const std::string name(line.substr(0, colon));
  auto value = line.substr(colon + 1);
  while (!value.empty() && value.front() == ' ') value.remove_prefix(1);
  if (name == "Host") request.hosts.emplace_back(value);
  else if (name == "Origin") request.origin = value;
  else if (name == "Sec-Fetch-Site") request.fetchSite = value;
  else if (name == "Content-Type") request.contentType = value;
  else if (name == "Content-Length") request.contentLength = value;
  else if (name == "Transfer-Encoding") request.transferEncoded = true;
}

// A request written on one line, "LINE | HEADER | ... [|| BODY]", as the
// lines a client sends, each ended by `lineEnd`.
inline std::string requestFromOneLine(const std::string& written, const std::string& lineEnd = "\n") {
  const auto bodyAt = written.find(" || ");
  std::string text = written.substr(0, bodyAt);
  for (auto bar = text.find(" | "); bar != std::string::npos; bar = text.find(" | ", bar)) {
    text.replace(bar, 3, lineEnd);
  }
  return text + lineEnd + lineEnd + (bodyAt == std::string::npos ? "" : written.substr(bodyAt + 4));
}

// The parts of `text`, which it must outlive.
inline IncomingRequestText parseIncomingRequest(std::string_view text) {
  IncomingRequestText parsed;
  const auto requestLine = nextRequestLine(text);
  const auto space = requestLine.find(' ');
  parsed.request.method = std::string(requestLine.substr(0, space));
  auto target = space == std::string_view::npos ? std::string_view() : requestLine.substr(space + 1);
  target = target.substr(0, target.find(' '));
  const auto mark = target.find('?');
  parsed.request.path = std::string(target.substr(0, mark));
  parsed.query = mark == std::string_view::npos ? std::string_view() : target.substr(mark + 1);
  for (auto line = nextRequestLine(text); !line.empty(); line = nextRequestLine(text)) {
    takeRequestHeader(parsed.request, line);
  }
  parsed.body = text;
  return parsed;
}

}  // namespace quillan::testing
