#pragma once

#include <filesystem>
#include <functional>

namespace quillan::hosting {

// Folders that must not outlive the process, even one ended by SIGINT,
// SIGTERM or SIGHUP, or stopped by abort(). The first registration installs handlers that only wake
// a thread of their own and wait for it; that thread removes every registered
// folder, then the process ends by the same signal, as if nothing had been
// caught.
// Processes forked from this one are ended by such a signal as they would be
// without the handlers, and remove nothing of their parent's.
namespace RemovalOnSignal {

// Runs `create` and registers the folder it returns, with no signal's removal
// in between, so the folder is never created unregistered.
std::filesystem::path registerCreated(const std::function<std::filesystem::path()>& create);

// Removes `folder` with everything in it and forgets it.
void removeNow(const std::filesystem::path& folder);

}  // namespace RemovalOnSignal

}  // namespace quillan::hosting
