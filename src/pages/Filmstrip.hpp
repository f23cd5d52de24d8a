#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pages/EntryPictures.hpp"

namespace quillan::pages {

// One shown entry: its local time, and its pictures or why there are none.
struct FilmstripFrame {
  std::string label;
  std::optional<EntryPictures> pictures;
  std::string failure;
};

struct FilmstripRow {
  std::string kind;
  std::string displayName;
  std::vector<FilmstripFrame> frames;
};

// An HTML page with one strip per widget, one column per shown entry: the
// light picture above the dark one, both with image maps of the entry's tap
// targets, captioned with the local time. All text is escaped.
std::string filmstripPage(const std::vector<FilmstripRow>& rows, const std::string& subtitle);

}  // namespace quillan::pages
