// URL text from a tree's Link destination or a deep link: parsed, taken apart,
// and extended by a path component as the store's file locations are.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FuzzCheck.hpp"
#include "platform/URL.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using quillan::platform::URL;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  // The first line is the URL, the rest a path component to append.
  const auto newline = text.find('\n');
  const auto url = URL::parse(text.substr(0, newline));
  if (!url) return 0;
  FUZZ_CHECK(URL::parse(url->absoluteString()) == url);
  (void)url->scheme();
  (void)url->host();
  (void)url->path();
  if (newline != std::string_view::npos) {
    const auto extended = url->appendingPathComponent(text.substr(newline + 1));
    // Whatever the component held is escaped: the result is still a URL.
    FUZZ_CHECK(URL::parse(extended.absoluteString()).has_value());
  }
  return 0;
}
