#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillan::snapshot {

// What a snapshot suite draws: one journal at one pinned moment, and the
// matrix of cases, every combination of its lists. As JSON:
//   {"journal": FOLDER holding Quillan.sqlite (relative to the config's folder; the file must exist),
//    "now": ISO-8601, "timeZone": IANA, "seed": 0...2^64-1, "scale": 1...3,
//    "matrix": {"kinds", "colorSchemes", "renderingModes", "platformVersions", "devices", "locales"}}
struct SnapshotConfig {
  std::filesystem::path journal;  // absolute once read
  std::string now;
  std::string timeZone;
  std::uint64_t seed = 0;
  double scale = 2;
  std::vector<std::string> kinds;
  std::vector<std::string> colorSchemes;
  std::vector<std::string> renderingModes;
  std::vector<std::string> platformVersions;
  std::vector<std::string> devices;
  std::vector<std::string> locales;
};

// A suite beyond this many cases is a mistake in the matrix, not a suite
// anyone reviews; it also bounds the work and the files one config can ask for.
inline constexpr std::size_t kMaxSnapshotCases = 2000;

// Reads and checks the config at `path`. A missing, unreadable or corrupt
// file, an unknown key or a bad value is a UsageError of one line naming the
// file and where in it, e.g. `--config: matrix.kinds[1]: unknown widget kind: "Nope" (in ".../snapshots.json")`.
SnapshotConfig readSnapshotConfig(const std::filesystem::path& path);

// The first record's config: the group container and seed given, else the
// default journal and seed 2026; the process's current time to the second,
// zone and locale; every widget in light and dark, full colour, platform
// 17.0, the 393x852 phone.
SnapshotConfig defaultSnapshotConfig(const std::optional<std::filesystem::path>& groupContainer,
                                     std::optional<std::uint64_t> seed);

// As readSnapshotConfig reads it, the journal relative to the config's folder when inside it.
std::string snapshotConfigText(const SnapshotConfig& config, const std::filesystem::path& path);

}  // namespace quillan::snapshot
