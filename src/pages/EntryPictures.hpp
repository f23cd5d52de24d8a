#pragma once

#include <string>
#include <vector>

#include "render/HitTest.hpp"

namespace quillan::pages {

// The files drawn for one shown entry, relative to the output folder, and
// what the filmstrip needs to lay the light picture out with its tap targets.
struct EntryPictures {
  std::string light;
  std::string dark;
  std::string view;  // the light view tree, as `render --format json` writes it
  double width = 0;  // points
  double height = 0;
  std::vector<render::HitRegion> regions;
};

}  // namespace quillan::pages
