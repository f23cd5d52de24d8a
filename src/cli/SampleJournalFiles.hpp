#pragma once

#include <filesystem>

#include "cli/HostOptions.hpp"

namespace quillan::cli {

// A group container in `folder`, named as the app's.
std::filesystem::path makeGroupContainerIn(const std::filesystem::path& folder);

// Writes the sample journal into `container` for the host's now, calendar and
// seed. Refuses (UsageError) to touch a container that already holds a journal.
std::filesystem::path writeSampleJournal(const std::filesystem::path& container, const HostOptions& host);

}  // namespace quillan::cli
