#pragma once

#include <functional>

#include "platform/Date.hpp"
#include "views/Environment.hpp"
#include "views/Node.hpp"

namespace quillan::widgets {

// How a widget draws a timeline entry: from the entry's date and the display
// environment the host gives it, a view tree. Views read the journal and the
// clock when evaluated, not when the entry was made.
//
// Every view of the widgets follows one convention: a struct with the fields
// the view declares (environment values such as colorScheme are copied from the
// environment when it is made) and `views::Node body(const views::Environment&)`,
// which evaluates it; the environment there answers the platform-version checks.
using EntryViewFunction = std::function<views::Node(platform::Date entryDate, const views::Environment&)>;

}  // namespace quillan::widgets
