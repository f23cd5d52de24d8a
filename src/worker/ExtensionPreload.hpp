#pragma once

namespace quillan::worker {

// Loads, once, what every evaluation would otherwise load again in each
// child: ICU's calendar, zone, locale and formatting data for the process's
// defaults, and the widget bundle. Reads nothing of the journal.
void preloadExtension();

}  // namespace quillan::worker
