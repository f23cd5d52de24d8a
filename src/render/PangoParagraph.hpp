#pragma once

#include <pango/pango.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "render/TextLayout.hpp"

namespace quillan::render {

struct GObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

// One text laid out by Pango for one proposal: measuring reads its lines,
// drawing shows them, and nothing shapes the text a second time. `links` are
// the byte ranges drawn in the tint colour.
struct ShapedParagraph {
  GObjectPtr<PangoLayout> layout;
  std::vector<std::pair<guint, guint>> links;
};

// Where a laid-out line's ink starts and how wide it shows, in points from
// the line's own origin: trailing spaces (which a wrapped line keeps) left out.
struct LineExtent {
  double left = 0;
  double width = 0;
};
LineExtent visibleExtent(PangoLayoutLine* line);

// Where the text Pango left out for its ellipsis begins, if it put one.
std::optional<std::size_t> ellipsisStart(PangoLayout* layout);

// Where the text shown by the layout's lines ends; a layout cut at a
// paragraph's end by its height shows less than its text without an ellipsis.
std::size_t shownEnd(PangoLayout* layout);

// The text each line of `layout` shows, in the styles of `runs` (whose text
// the layout holds), an ellipsis where Pango put one.
std::vector<TextLine> linesOf(PangoLayout* layout, const StyledText& runs);

}  // namespace quillan::render
