#include "snapshot/SnapshotCase.hpp"

#include <set>

#include "hosting/UsageError.hpp"

namespace quillan::snapshot {
namespace {

// Locales may carry "@calendar=..." and devices an "x": only letters, digits,
// '.' and '-' reach the file name.
std::string fileNamePart(const std::string& text) {
  std::string part;
  for (char c : text) {
    const bool safe = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
                      c == '-';
    part += safe ? c : '-';
  }
  return part;
}

}  // namespace

std::vector<SnapshotCase> snapshotCases(const SnapshotConfig& config) {
  std::vector<SnapshotCase> cases;
  for (const auto& kind : config.kinds)
    for (const auto& scheme : config.colorSchemes)
      for (const auto& mode : config.renderingModes)
        for (const auto& platform : config.platformVersions)
          for (const auto& device : config.devices)
            for (const auto& locale : config.locales) {
              std::string name;
              for (const auto* part : {&kind, &scheme, &mode, &platform, &device, &locale}) {
                name += (name.empty() ? "" : "_") + fileNamePart(*part);
              }
              cases.push_back({name, kind, scheme, mode, platform, device, locale});
            }
  std::set<std::string> names;
  for (const auto& snapshotCase : cases) {
    if (!names.insert(snapshotCase.name).second) {
      throw hosting::badOption("--config", "two cases share the file name", snapshotCase.name,
                               "matrix entries that differ only in punctuation");
    }
  }
  return cases;
}

}  // namespace quillan::snapshot
