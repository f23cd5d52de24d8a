#include "cli/HostOptions.hpp"

#include "cli/OptionChecks.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/RandomSource.hpp"
#include "platform/TimeZone.hpp"

namespace quillan::cli {
namespace {

void requireDirectory(const std::filesystem::path& path, std::string_view option) {
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) {
    throw hosting::badOption(option, "no such directory", path.string());
  }
}

}  // namespace

void HostOptions::addTo(CLI::App& command) {
  command
      .add_option("--group-container", groupContainer,
                  "the app group's shared container holding Quillan.sqlite\n"
                  "(default: $XDG_DATA_HOME/quillan-widgets/group.com.tarvelo.Quillan)")
      ->group("Environment");
  command
      .add_option("--app-support", appSupport,
                  "the extension's application-support folder, where a legacy journal is looked for\n"
                  "(default: \"Application Support\" beside the group container, so\n"
                  "$XDG_DATA_HOME/quillan-widgets/Application Support when neither is given).\n"
                  "The first read of a journal moves a legacy journal found here into the group\n"
                  "container and deletes the old file, as the app's extension does.")
      ->group("Environment");
  command.add_option("--now", now, "pin the clock: ISO-8601 with offset or Z, e.g. 2026-11-22T08:30:00+01:00")
      ->group("Environment");
  command.add_option("--time-zone", timeZone, "IANA time zone, e.g. Europe/Berlin (default: $TZ)")
      ->group("Environment");
  command
      .add_option("--locale", locale,
                  "ICU locale, e.g. de_DE or ja_JP@calendar=japanese (default: LC_ALL, LC_TIME, LANG)")
      ->group("Environment");
  command
      .add_option("--color-scheme", colorScheme,
                  "light or dark (default: light; dark with --rendering-mode vibrant, as the lock screen is)")
      ->check(enumName<views::ColorScheme>("color scheme"))
      ->group("Environment");
  command.add_option("--rendering-mode", renderingMode, "fullColor, accented or vibrant (default: fullColor)")
      ->check(enumName<views::WidgetRenderingMode>("rendering mode"))
      ->group("Environment");
  command
      .add_option("--platform-version", platformVersion,
                  "the phone's OS version as it reports it, e.g. 17.0.1 or 18 (default: 17.0)")
      ->transform(cli::platformVersion())
      ->group("Environment");
  command
      .add_option("--layout-direction", layoutDirection,
                  "ltr or rtl (default: the locale's character order, rtl for e.g. ar_EG or he_IL)")
      ->check(enumName<views::LayoutDirection>("layout direction"))
      ->group("Environment");
  command
      .add_option("--dynamic-type", dynamicType,
                  "text size: xSmall, small, medium, large, xLarge, xxLarge, xxxLarge, accessibility1 ... "
                  "accessibility5 (default: large)")
      ->check(enumName<views::DynamicTypeSize>("dynamic type size"))
      ->group("Environment");
  command
      .add_option("--seed", seed,
                  "seed the random source (writing prompts) for reproducible output: a whole decimal number")
      ->transform(wholeNumber())
      ->group("Environment");
}

void HostOptions::apply() const {
  if (groupContainer) {
    requireDirectory(*groupContainer, "--group-container");
    platform::FileManager::setGroupContainerDirectory(*groupContainer);
  }
  if (appSupport) {
    requireDirectory(*appSupport, "--app-support");
    platform::FileManager::setApplicationSupportDirectory(*appSupport);
  }
  if (timeZone) {
    const auto zone = platform::TimeZone::named(*timeZone);
    if (!zone)
      throw hosting::badOption("--time-zone", "unknown time zone", *timeZone,
                               "expected an IANA name, e.g. Europe/Berlin");
    platform::TimeZone::setCurrent(*zone);
  }
  if (locale) {
    const auto named = platform::Locale::named(*locale);
    if (!named) throw hosting::badOption("--locale", "unknown locale", *locale, "expected an ICU name, e.g. de_DE");
    if (const auto calendar = named->calendarKeyword(); calendar && !platform::Locale::knowsCalendar(*calendar)) {
      throw hosting::badOption("--locale", "unknown calendar keyword", "calendar=" + *calendar,
                               "expected one ICU knows, e.g. gregorian, japanese, buddhist");
    }
    platform::Locale::setCurrent(*named);
  }
  if (now) {
    const auto date = platform::ISO8601::parse(*now);
    if (!date)
      throw hosting::badOption("--now", "not an ISO-8601 date with offset", *now, "e.g. 2026-11-22T08:30:00+01:00");
    platform::Clock::pin(*date);
  }
  if (seed) platform::RandomSource::seed(*seed);
  environment(views::WidgetFamily::systemSmall);
}

views::Environment HostOptions::environment(views::WidgetFamily family) const {
  views::Environment environment;
  try {
    environment.renderingMode = views::parseRenderingMode(renderingMode);
    const bool lockScreen = environment.renderingMode == views::WidgetRenderingMode::vibrant;
    environment.colorScheme = views::parseColorScheme(colorScheme.value_or(lockScreen ? "dark" : "light"));
    environment.platformVersion = views::parsePlatformVersion(platformVersion);
    environment.layoutDirection = layoutDirection ? views::parseLayoutDirection(*layoutDirection)
                                  : platform::Locale::current().isRightToLeft() ? views::LayoutDirection::rightToLeft
                                                                                : views::LayoutDirection::leftToRight;
    environment.dynamicTypeSize = views::parseDynamicTypeSize(dynamicType);
  } catch (const views::EnvironmentParseError& error) {
    throw hosting::UsageError(error.what());
  }
  environment.family = family;
  return environment;
}

}  // namespace quillan::cli
