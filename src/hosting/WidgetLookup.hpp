#pragma once

#include <string>

#include "platform/Date.hpp"
#include "render/DeviceProfile.hpp"
#include "views/Environment.hpp"
#include "widgets/WidgetConfiguration.hpp"

namespace quillan::hosting {

// The widget of `kind`; an unknown kind is a UsageError listing the known ones.
const widgets::WidgetConfiguration& widgetOfKind(const std::string& kind);

// The entry the host would show now: the last timeline entry whose date has
// come, else the first.
platform::Date currentEntryDate(const widgets::WidgetConfiguration& widget);

std::string familyName(views::WidgetFamily family);

// The device profile of `name`; an unknown name is a UsageError listing the known ones.
render::DeviceProfile deviceNamed(const std::string& name);

}  // namespace quillan::hosting
