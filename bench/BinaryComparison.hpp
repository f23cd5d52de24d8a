// What the benches that time whole commands share: the binaries to compare,
// given as LABEL=PATH on the command line, the number of rounds, and medians.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace quillan::bench {

struct Binary {
  std::string label;
  std::string path;
};

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0.0 : values[values.size() / 2];
}

// QUILLAN_BENCH_RUNS, else five.
inline int roundsToRun() {
  const char* text = std::getenv("QUILLAN_BENCH_RUNS");
  const int runs = text ? std::atoi(text) : 5;
  return runs > 0 ? runs : 5;
}

// Each argument is LABEL=PATH or a bare PATH; none: this build's own command,
// as bench/bench_<name> sits beside src/quillan-widgets in one build tree.
inline std::vector<Binary> binariesFrom(int argc, char** argv) {
  std::vector<Binary> binaries;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const auto equals = argument.find('=');
    if (equals == std::string::npos) binaries.push_back({argument, argument});
    else binaries.push_back({argument.substr(0, equals), argument.substr(equals + 1)});
  }
  if (binaries.empty()) {
    const auto build = std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path();
    binaries.push_back({"this build", (build / "src" / "quillan-widgets").string()});
  }
  return binaries;
}

}  // namespace quillan::bench
