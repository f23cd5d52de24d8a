#pragma once

// The host's drawing entry points. A view tree is laid out in its widget
// container (family size from the device profile, content margins on
// platform 17 and later, the mask) and drawn with Cairo and Pango:
//
//   render::RenderContext context;            // 393x852, light, full colour, @3x
//   context.env.family = views::WidgetFamily::systemMedium;
//   render::renderToFile(tree, context, render::Format::png, "medium.png");

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "render/RenderContext.hpp"
#include "views/Node.hpp"

namespace quillan::render {

enum class Format { png, svg, pdf };

// A file that could not be written, or a scale outside 1...3. One line naming
// what was wrong.
class RenderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// PNG at context.scale pixels per point; SVG and PDF in points.
void renderToFile(const views::Node& tree, const RenderContext& context, Format format,
                  const std::filesystem::path& path);
std::vector<std::uint8_t> renderToPNGBytes(const views::Node& tree, const RenderContext& context);
std::string renderToSVG(const views::Node& tree, const RenderContext& context);

// Starts the text engine and loads the font most text is drawn in, for the
// current locale. Opening fontconfig's configuration and caches and the first
// font files is a large part of a first drawing, and none of it needs the
// tree: a command may call this on another thread while it reads the journal,
// as long as it waits for the call to end before drawing.
void prepareFonts();

}  // namespace quillan::render
