#pragma once

#include <string>
#include <vector>

namespace quillan::compose {

// One prompt of `texts`, uniformly at random from the process's random source.
// An empty list stops the process.
const std::string& pickPrompt(const std::vector<std::string>& texts);

}  // namespace quillan::compose
