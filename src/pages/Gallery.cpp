#include "pages/Gallery.hpp"

#include "pages/HtmlText.hpp"
#include "pages/ImageMap.hpp"
#include "pages/PageSkeleton.hpp"

namespace quillan::pages {
namespace {

constexpr const char* kGalleryStyleRules =
    R"(body { font-family: Inter, system-ui, sans-serif; background: #e5e5ea; color: #1c1c1e; margin: 2em; }
section { margin-bottom: 2.5em; }
h2 { margin-bottom: 0.1em; } .kind { color: #8e8e93; font-family: monospace; }
figure { display: inline-block; margin: 0.5em 1.5em 0.5em 0; vertical-align: top; }
figcaption { font-size: 0.85em; color: #636366; margin-top: 0.3em; }
pre { font-size: 0.8em; background: #f2f2f7; padding: 0.5em; overflow-x: auto; }
)";

}  // namespace

std::string galleryPage(const std::vector<GallerySection>& sections, const std::string& subtitle) {
  std::string html = "<p>" + htmlEscaped(subtitle) +
                     " Tap a widget: each area opens the deep link the phone would open.</p>\n";
  int mapIndex = 0;
  for (const auto& section : sections) {
    html += "<section>\n<h2>" + htmlEscaped(section.displayName) + " <span class=\"kind\">" +
            htmlEscaped(section.kind) + "</span></h2>\n<p>" + htmlEscaped(section.description) + "</p>\n";
    for (const auto& image : section.images) {
      const auto name = "map" + std::to_string(mapIndex++);
      html += "<figure>\n<img src=\"" + htmlEscaped(image.file) + "\" width=\"" + htmlNumber(image.width) +
              "\" height=\"" + htmlNumber(image.height) + "\" usemap=\"#" + name + "\" alt=\"" +
              htmlEscaped(section.displayName + ", " + image.caption) + "\">\n" + imageMap(image.regions, name) +
              "<figcaption>" + htmlEscaped(image.caption) + "</figcaption>\n</figure>\n";
    }
    html += "<pre>" + htmlEscaped(section.timeline) + "</pre>\n</section>\n";
  }
  return htmlPage("Quillan widgets", kGalleryStyleRules, html);
}

}  // namespace quillan::pages
