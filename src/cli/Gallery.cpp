#include "cli/Gallery.hpp"

#include <cstdio>

namespace quillan::cli {
namespace {

std::string escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

std::string number(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.2f", value);
  std::string text = buffer;
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string imageMap(const GalleryImage& image, const std::string& name) {
  std::string html = "<map name=\"" + name + "\">\n";
  for (const auto& region : image.regions) {
    const auto& r = region.rect;
    html += "  <area shape=\"rect\" coords=\"" + number(r.x) + "," + number(r.y) + "," + number(r.x + r.width) +
            "," + number(r.y + r.height) + "\" href=\"" + escape(region.url) + "\" title=\"" +
            escape(region.url) + "\" alt=\"" + escape(region.url) + "\">\n";
  }
  return html + "</map>\n";
}

constexpr const char* kStyle = R"(<style>
body { font-family: Inter, system-ui, sans-serif; background: #e5e5ea; color: #1c1c1e; margin: 2em; }
section { margin-bottom: 2.5em; }
h2 { margin-bottom: 0.1em; } .kind { color: #8e8e93; font-family: monospace; }
figure { display: inline-block; margin: 0.5em 1.5em 0.5em 0; vertical-align: top; }
figcaption { font-size: 0.85em; color: #636366; margin-top: 0.3em; }
pre { font-size: 0.8em; background: #f2f2f7; padding: 0.5em; overflow-x: auto; }
</style>
)";

}  // namespace

std::string galleryPage(const std::vector<GallerySection>& sections, const std::string& subtitle) {
  std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                     "<title>Quillan widgets</title>\n";
  html += kStyle;
  html += "</head>\n<body>\n<h1>Quillan widgets</h1>\n<p>" + escape(subtitle) +
          " Tap a widget: each area opens the deep link the phone would open.</p>\n";
  int mapIndex = 0;
  for (const auto& section : sections) {
    html += "<section>\n<h2>" + escape(section.displayName) + " <span class=\"kind\">" + escape(section.kind) +
            "</span></h2>\n<p>" + escape(section.description) + "</p>\n";
    for (const auto& image : section.images) {
      const auto name = "map" + std::to_string(mapIndex++);
      html += "<figure>\n<img src=\"" + escape(image.file) + "\" width=\"" + number(image.width) + "\" height=\"" +
              number(image.height) + "\" usemap=\"#" + name + "\" alt=\"" + escape(section.displayName + ", " +
              image.caption) + "\">\n" + imageMap(image, name) + "<figcaption>" + escape(image.caption) +
              "</figcaption>\n</figure>\n";
    }
    html += "<pre>" + escape(section.timeline) + "</pre>\n</section>\n";
  }
  return html + "</body>\n</html>\n";
}

}  // namespace quillan::cli
