#pragma once

#include "platform/Date.hpp"
#include "views/Node.hpp"

namespace quillan::memories {

// The red "Nov 16" above the title of both memory panels; `headerDate` is the
// newest memory's date, else now.
views::Node dateHeaderRow(platform::Date headerDate);

}  // namespace quillan::memories
