#include "pages/Filmstrip.hpp"

#include "pages/HtmlText.hpp"
#include "pages/ImageMap.hpp"
#include "pages/PageSkeleton.hpp"

namespace quillan::pages {
namespace {

constexpr const char* kFilmstripStyleRules =
    R"(body { font-family: Inter, system-ui, sans-serif; background: #e5e5ea; color: #1c1c1e; margin: 2em; }
h2 { margin-bottom: 0.2em; } .kind { color: #8e8e93; font-family: monospace; }
.strip { display: flex; gap: 1em; overflow-x: auto; padding-bottom: 1em; margin-bottom: 2em; }
figure { margin: 0; flex: none; } figure img { display: block; margin-bottom: 0.4em; }
figcaption { font-size: 0.8em; color: #636366; font-family: monospace; }
.failed { color: #c0392b; max-width: 12em; font-size: 0.85em; }
)";

std::string picture(const std::string& file, const EntryPictures& pictures, const std::string& alt,
                    const std::string& mapName) {
  return "<img src=\"" + htmlEscaped(file) + "\" width=\"" + htmlNumber(pictures.width) + "\" height=\"" +
         htmlNumber(pictures.height) + "\" usemap=\"#" + htmlEscaped(mapName) + "\" alt=\"" + htmlEscaped(alt) +
         "\">\n";
}

std::string frameHtml(const FilmstripFrame& frame, const std::string& kind, int& mapIndex) {
  std::string html = "<figure>\n";
  if (frame.pictures) {
    const auto name = "map" + std::to_string(mapIndex++);
    html += picture(frame.pictures->light, *frame.pictures, kind + " light, " + frame.label, name);
    html += picture(frame.pictures->dark, *frame.pictures, kind + " dark, " + frame.label, name);
    html += imageMap(frame.pictures->regions, name);
    html += "<a href=\"" + htmlEscaped(frame.pictures->view) + "\">view tree</a>\n";
  } else {
    html += "<p class=\"failed\">" + htmlEscaped(frame.failure) + "</p>\n";
  }
  return html + "<figcaption>" + htmlEscaped(frame.label) + "</figcaption>\n</figure>\n";
}

}  // namespace

std::string filmstripPage(const std::vector<FilmstripRow>& rows, const std::string& subtitle) {
  std::string html =
      "<p>" + htmlEscaped(subtitle) +
      " One column per entry the host showed, at its local time; each area opens the deep link the phone "
      "would open.</p>\n";
  int mapIndex = 0;
  for (const auto& row : rows) {
    html += "<h2>" + htmlEscaped(row.displayName) + " <span class=\"kind\">" + htmlEscaped(row.kind) +
            "</span></h2>\n<div class=\"strip\">\n";
    for (const auto& frame : row.frames) html += frameHtml(frame, row.kind, mapIndex);
    html += "</div>\n";
  }
  return htmlPage("Quillan widgets: simulation", kFilmstripStyleRules, html);
}

}  // namespace quillan::pages
