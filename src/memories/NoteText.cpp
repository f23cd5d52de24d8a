#include "memories/NoteText.hpp"

#include "platform/ExtensionLog.hpp"

namespace quillan::memories {

platform::AttributedString noteText(const std::optional<std::string>& markdown) {
  const std::string source = markdown.value_or("");
  try {
    return platform::AttributedString::fromInlineMarkdown(source, kNoteMarkdownBytes);
  } catch (const platform::MarkdownParseError& error) {
    // The message, then the separator, then the description: two spaces in all.
    platform::ExtensionLog::print(std::string("Couldn't parse: ") + " " + error.what());
    return platform::AttributedString(source);
  }
}

}  // namespace quillan::memories
