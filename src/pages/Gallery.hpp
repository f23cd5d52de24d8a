#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "render/HitTest.hpp"

namespace quillan::pages {

// One drawn widget on the gallery page: its picture and where taps go.
struct GalleryImage {
  std::string file;  // relative to the page
  std::string caption;
  double width = 0;  // in points: the image map's coordinates are points too
  double height = 0;
  std::vector<render::HitRegion> regions;
};

struct GallerySection {
  std::string kind;
  std::string displayName;
  std::string description;
  std::string timeline;  // the provider's answer, as the timeline command prints it
  std::vector<GalleryImage> images;
};

// An HTML page of the widgets; every image carries an image map whose areas are
// its hit regions (first match wins, as in a tap), linking to the deep links.
std::string galleryPage(const std::vector<GallerySection>& sections, const std::string& subtitle);

}  // namespace quillan::pages
