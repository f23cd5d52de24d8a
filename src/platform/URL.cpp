#include "platform/URL.hpp"

#include <cctype>

#include "platform/Fatal.hpp"

namespace quillan::platform {
namespace {

bool isUnreserved(unsigned char c) { return std::isalnum(c) || c == '-' || c == '.' || c == '_' || c == '~'; }

bool isSubDelim(unsigned char c) {
  return std::string_view("!$&'()*+,;=").find(static_cast<char>(c)) != std::string_view::npos;
}

bool isAllowedInReference(unsigned char c) {
  return isUnreserved(c) || isSubDelim(c) || c == ':' || c == '@' || c == '/' || c == '?' || c == '#' || c == '[' ||
         c == ']' || c == '%';
}

bool isPathCharacter(unsigned char c) { return isUnreserved(c) || isSubDelim(c) || c == ':' || c == '@'; }

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool hasValidEscapes(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') continue;
    if (i + 2 >= text.size()) return false;
    if (hexValue(text[i + 1]) < 0 || hexValue(text[i + 2]) < 0) return false;
    i += 2;
  }
  return true;
}

// Length of the scheme prefix (without ':'), or 0 when the text has none.
std::size_t schemeLength(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0) return 0;
  const auto slash = text.find_first_of("/?#");
  if (slash != std::string_view::npos && slash < colon) return 0;
  return colon;
}

bool isValidScheme(std::string_view scheme) {
  if (!std::isalpha(static_cast<unsigned char>(scheme.front()))) return false;
  for (unsigned char c : scheme) {
    if (!std::isalnum(c) && c != '+' && c != '-' && c != '.') return false;
  }
  return true;
}

std::string percentDecode(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size()) {
      out.push_back(static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2])));
      i += 2;
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

std::string percentEncodePath(std::string_view text, bool keepSlashes) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : text) {
    if (isPathCharacter(c) || (keepSlashes && c == '/')) {
      out.push_back(static_cast<char>(c));
    } else {
      out.push_back('%');
      out.push_back(kHex[c >> 4]);
      out.push_back(kHex[c & 0xF]);
    }
  }
  return out;
}

struct Parts {
  std::string_view scheme, authority, path, rest;
  bool hasAuthority = false;
};

Parts split(std::string_view text) {
  Parts parts;
  const auto schemeEnd = schemeLength(text);
  std::string_view remainder = text;
  if (schemeEnd > 0) {
    parts.scheme = text.substr(0, schemeEnd);
    remainder = text.substr(schemeEnd + 1);
  }
  if (remainder.starts_with("//")) {
    parts.hasAuthority = true;
    remainder.remove_prefix(2);
    const auto end = remainder.find_first_of("/?#");
    parts.authority = remainder.substr(0, end);
    remainder = end == std::string_view::npos ? std::string_view() : remainder.substr(end);
  }
  const auto pathEnd = remainder.find_first_of("?#");
  parts.path = remainder.substr(0, pathEnd);
  parts.rest = pathEnd == std::string_view::npos ? std::string_view() : remainder.substr(pathEnd);
  return parts;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  for (unsigned char c : text) {
    if (!isAllowedInReference(c)) return std::nullopt;
  }
  if (!hasValidEscapes(text)) return std::nullopt;
  const auto schemeEnd = schemeLength(text);
  if (schemeEnd > 0 && !isValidScheme(text.substr(0, schemeEnd))) return std::nullopt;
  return URL(std::string(text));
}

URL URL::literal(std::string_view text) { return unwrap(parse(text), "URL"); }

URL URL::fileURL(const std::filesystem::path& path) {
  const auto absolute = std::filesystem::absolute(path).lexically_normal().string();
  return URL("file://" + percentEncodePath(absolute, /*keepSlashes=*/true));
}

std::string URL::scheme() const { return std::string(split(text_).scheme); }

std::string URL::host() const {
  auto authority = split(text_).authority;
  if (const auto at = authority.rfind('@'); at != std::string_view::npos) {
    authority.remove_prefix(at + 1);
  }
  if (const auto colon = authority.rfind(':');
      colon != std::string_view::npos && authority.find(']') == std::string_view::npos) {
    authority = authority.substr(0, colon);
  }
  return percentDecode(authority);
}

std::string URL::path() const { return percentDecode(split(text_).path); }

URL URL::appendingPathComponent(std::string_view component) const {
  const auto parts = split(text_);
  std::string text;
  if (!parts.scheme.empty()) text.append(parts.scheme).append(":");
  if (parts.hasAuthority) text.append("//").append(parts.authority);
  text.append(parts.path);
  if (!text.ends_with('/')) text.push_back('/');
  text.append(percentEncodePath(component, /*keepSlashes=*/true));
  text.append(parts.rest);
  return URL(std::move(text));
}

}  // namespace quillan::platform
