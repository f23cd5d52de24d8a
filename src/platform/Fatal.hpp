#pragma once

#include <optional>
#include <string_view>
#include <utility>

namespace quillan::platform {

// Stops the process the way a failed invariant does on the phone: prints
// "<source>: Fatal error: <message>" on standard error and aborts.
[[noreturn]] void fatalError(std::string_view source, std::string_view message);

// Stops the process at once without a word (the platform's reaction to a
// missing app-group container).
[[noreturn]] void silentStop();

// What the host says just before a silent stop (the command explains where it
// looked for the journal); the extension itself still says nothing.
void setSilentStopNotice(void (*notice)());

// The report of a force-unwrapped empty optional.
inline constexpr std::string_view kUnexpectedlyFoundNil = "Unexpectedly found nil while unwrapping an Optional value";

// Force-unwraps `value`, stopping with the nil report when it is empty.
template <typename T>
T unwrap(std::optional<T> value, std::string_view source) {
  if (!value) fatalError(source, kUnexpectedlyFoundNil);
  return std::move(*value);
}

}  // namespace quillan::platform
