#include "server/QueryText.hpp"

#include <cctype>

#include "server/RequestError.hpp"

namespace quillan::server {
namespace {

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (lower >= 'a' && lower <= 'f') return lower - 'a' + 10;
  return -1;
}

std::string decoded(std::string_view text, std::string_view pair) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '+') {
      plain += ' ';
    } else if (text[at] != '%') {
      plain += text[at];
    } else {
      const int high = at + 2 < text.size() ? hexDigit(text[at + 1]) : -1;
      const int low = high >= 0 ? hexDigit(text[at + 2]) : -1;
      if (low < 0) throw badValue("query", "broken %-escape in", pair, "expected % and two hex digits");
      plain += static_cast<char>(high * 16 + low);
      at += 2;
    }
  }
  return plain;
}

}  // namespace

QueryParameters parseQueryText(std::string_view query) {
  QueryParameters parameters;
  while (!query.empty()) {
    const auto end = query.find('&');
    const auto pair = query.substr(0, end);
    query = end == std::string_view::npos ? std::string_view() : query.substr(end + 1);
    if (pair.empty()) continue;
    const auto equals = pair.find('=');
    const auto name = pair.substr(0, equals);
    const auto value = equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1);
    if (value.find('=') != std::string_view::npos) {
      throw badValue("query", "a second '=' in", pair, "escape it as %3D");
    }
    if (name.empty()) throw badValue("query", "a value without a name", pair);
    parameters.emplace(decoded(name, pair), decoded(value, pair));
  }
  return parameters;
}

}  // namespace quillan::server
