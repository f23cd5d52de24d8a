#pragma once

#include <string>
#include <vector>

#include "render/HitTest.hpp"

namespace quillan::pages {

// An HTML <map> named `name` whose areas are the widget's hit regions, in
// points, in hit-test order (the browser, like a tap, takes the first area
// holding the point), each linking to its deep link.
std::string imageMap(const std::vector<render::HitRegion>& regions, const std::string& name);

}  // namespace quillan::pages
