#pragma once

#include <filesystem>

#include "cli/HostOptions.hpp"

namespace quillan::cli {

// A new, empty group container under the system's temporary folder.
std::filesystem::path makeTemporaryGroupContainer();

// Writes the sample journal into `container` for the host's now, calendar and
// seed. Refuses (UsageError) to touch a container that already holds a journal.
std::filesystem::path writeSampleJournal(const std::filesystem::path& container, const HostOptions& host);

}  // namespace quillan::cli
