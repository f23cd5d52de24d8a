#include "host/HostEnvironment.hpp"

namespace quillan::host {

platform::Locale localeOf(const HostEnvironment& settings) {
  if (settings.locale) {
    if (auto locale = platform::Locale::named(*settings.locale)) return *locale;
  }
  return platform::Locale::current();
}

views::Environment viewEnvironment(const HostEnvironment& settings, views::WidgetFamily family) {
  views::Environment environment;
  environment.family = family;
  const bool lockScreen = family == views::WidgetFamily::accessoryCircular;
  environment.renderingMode = settings.renderingMode ? views::parseRenderingMode(*settings.renderingMode)
                              : lockScreen           ? views::WidgetRenderingMode::vibrant
                                                     : views::WidgetRenderingMode::fullColor;
  const bool vibrant = environment.renderingMode == views::WidgetRenderingMode::vibrant;
  environment.colorScheme = views::parseColorScheme(settings.colorScheme.value_or(vibrant ? "dark" : "light"));
  environment.platformVersion = views::parsePlatformVersion(settings.platformVersion);
  environment.layoutDirection = settings.layoutDirection ? views::parseLayoutDirection(*settings.layoutDirection)
                                : localeOf(settings).isRightToLeft() ? views::LayoutDirection::rightToLeft
                                                                     : views::LayoutDirection::leftToRight;
  environment.dynamicTypeSize = views::parseDynamicTypeSize(settings.dynamicType);
  return environment;
}

worker::ProcessSettings processSettings(const HostEnvironment& settings) {
  worker::ProcessSettings process;
  process.timeZone = settings.timeZone;
  process.locale = settings.locale;
  process.seed = settings.seed;
  return process;
}

}  // namespace quillan::host
