#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "hosting/UsageError.hpp"
#include "views/Environment.hpp"

namespace quillan::cli {

// The environment the host gives the extension, as the command line states it.
// Unset values fall back to the process's own: clock, TZ, LANG/LC_ALL, XDG folders.
struct HostOptions {
  std::optional<std::filesystem::path> groupContainer;
  std::optional<std::filesystem::path> appSupport;
  std::optional<std::string> now;
  std::optional<std::string> timeZone;
  std::optional<std::string> locale;
  std::optional<std::string> colorScheme;  // unset: dark when vibrant (the lock screen), else light
  std::string renderingMode = "fullColor";
  std::string platformVersion = "17.0";
  std::optional<std::string> layoutDirection;  // unset: the locale's character order
  std::string dynamicType = "large";
  std::optional<std::uint64_t> seed;

  // Declares the options on the app; subcommands fall through to them, so they
  // are accepted before or after the subcommand's name.
  void addTo(CLI::App& command);

  // Validates every value and makes it the process default (clock, zone, locale,
  // random source, file locations). Throws UsageError naming the bad value.
  void apply() const;

  // The display environment for `family`. Throws UsageError on a bad value.
  views::Environment environment(views::WidgetFamily family) const;
};

}  // namespace quillan::cli
