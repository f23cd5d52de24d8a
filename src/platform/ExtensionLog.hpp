#pragma once

#include <functional>
#include <string_view>

namespace quillan::platform {

// The extension's standard output. On the phone an extension's prints go to the
// system log, not to whoever asked for a timeline; here the host decides where
// they go (the command sends them to standard error so that its JSON stays clean).
// Lines are written whole: `line` carries no terminator.
class ExtensionLog {
 public:
  using Sink = std::function<void(std::string_view line)>;

  static void print(std::string_view line);
  // Replaces the sink; an empty function restores standard output.
  static void setSink(Sink sink);
};

}  // namespace quillan::platform
