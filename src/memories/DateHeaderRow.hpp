#pragma once

#include "views/Node.hpp"

namespace quillan::memories {

// The red "Nov 16" above the title of both memory panels: the header date
// (the newest memory's day, else today).
views::Node dateHeaderRow();

}  // namespace quillan::memories
