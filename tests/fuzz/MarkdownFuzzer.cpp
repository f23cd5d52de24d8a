// Note text as the journal holds it, parsed as inline Markdown the way both
// memory widgets show it.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FuzzCheck.hpp"
#include "platform/AttributedString.hpp"
#include "platform/Utf8.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillan::platform;
  const std::string_view markdown(reinterpret_cast<const char*>(data), size);
  try {
    const auto text = AttributedString::fromInlineMarkdown(markdown);
    // Runs never split a character, whatever the syntax around it.
    for (const auto& run : text.runs()) FUZZ_CHECK(isValidUtf8(run.text));
  } catch (const MarkdownParseError&) {
    // The one parse error is text that is not UTF-8 (the widgets log it and show the text as typed).
    FUZZ_CHECK(!isValidUtf8(markdown));
  }
  return 0;
}
