#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Locale.hpp"
#include "views/Environment.hpp"
#include "worker/Evaluation.hpp"

namespace quillan::host {

// The environment the host runs its widgets in: what the command line set,
// then what the page or one render request changed. Values are kept as the
// names the server's API accepts, already checked.
struct HostEnvironment {
  std::optional<std::string> colorScheme;  // unset: light, dark when vibrant
  // Unset: fullColor on the home screen; the lock screen's widgets are always
  // drawn vibrant unless a request names a mode.
  std::optional<std::string> renderingMode;
  std::string platformVersion = "17.0";
  std::optional<std::string> locale;           // unset: the process's
  std::optional<std::string> timeZone;         // unset: the process's
  std::optional<std::string> layoutDirection;  // unset: the locale's character order
  std::string dynamicType = "large";
  std::string device = "393x852";
  double scale = 2;
  bool redacted = false;
  // --seed: every evaluation starts the random source (writing prompts) from
  // it, so a seeded host shows the same prompts on every run. Not a page setting.
  std::optional<std::uint64_t> seed;

  bool operator==(const HostEnvironment&) const = default;
};

// The environment's locale, else the process's.
platform::Locale localeOf(const HostEnvironment& settings);

// What the views are told for a widget of `family`.
views::Environment viewEnvironment(const HostEnvironment& settings, views::WidgetFamily family);
// The extension process's zone, locale and seed.
worker::ProcessSettings processSettings(const HostEnvironment& settings);

}  // namespace quillan::host
