#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace quillan::hosting {

// A group container in `folder`, named as the app's.
std::filesystem::path makeGroupContainerIn(const std::filesystem::path& folder);

// Writes the sample journal into `container` for the process's now and
// calendar and `seed` (unset: the sample's own). Refuses (UsageError) to touch
// a container that already holds a journal.
std::filesystem::path writeSampleJournal(const std::filesystem::path& container, std::optional<std::uint64_t> seed);

}  // namespace quillan::hosting
