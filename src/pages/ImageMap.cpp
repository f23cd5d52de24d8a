#include "pages/ImageMap.hpp"

#include "pages/HtmlText.hpp"

namespace quillan::pages {

std::string imageMap(const std::vector<render::HitRegion>& regions, const std::string& name) {
  std::string html = "<map name=\"" + htmlEscaped(name) + "\">\n";
  for (const auto& region : regions) {
    const auto& r = region.rect;
    const auto url = htmlEscaped(region.url);
    html += "  <area shape=\"rect\" coords=\"" + htmlNumber(r.x) + "," + htmlNumber(r.y) + "," +
            htmlNumber(r.x + r.width) + "," + htmlNumber(r.y + r.height) + "\" href=\"" + url + "\" title=\"" + url +
            "\" alt=\"" + url + "\">\n";
  }
  return html + "</map>\n";
}

}  // namespace quillan::pages
