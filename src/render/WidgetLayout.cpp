#include "render/WidgetLayout.hpp"

#include <algorithm>
#include <memory>
#include <vector>

#include "render/Layout.hpp"
#include "render/Renderer.hpp"
#include "render/RenderingConstants.hpp"

namespace quillan::render {

bool isHomeScreenFamily(views::WidgetFamily family) {
  return family == views::WidgetFamily::systemSmall || family == views::WidgetFamily::systemMedium;
}

namespace {

LayoutNode systemBackground(views::ColorScheme scheme) {
  LayoutNode node;
  node.kind = LayoutKind::shape;
  node.name = "systemBackground";
  node.isContainerBackground = true;
  node.fill = Paint::solid(scheme == views::ColorScheme::dark ? Rgba::fromHex(0x000000) : Rgba::fromHex(0xFFFFFF));
  return node;
}

void collectTextFonts(const LayoutNode& node, std::vector<FontDescription>& fonts) {
  for (const auto& run : node.text) {
    if (std::find(fonts.begin(), fonts.end(), run.font) == fonts.end()) fonts.push_back(run.font);
  }
  for (const auto& child : node.children) collectTextFonts(child, fonts);
}

std::vector<FontDescription> textFontsOf(const AdaptedWidget& adapted) {
  std::vector<FontDescription> fonts;
  collectTextFonts(adapted.content, fonts);
  if (adapted.containerBackground) collectTextFonts(*adapted.containerBackground, fonts);
  return fonts;
}

void mirror(LayoutBox& box, double width) {
  box.frame.x = width - box.frame.maxX();
  for (auto& child : box.children) mirror(child, width);
}

}  // namespace

std::unique_ptr<WidgetLayout> layoutWidget(const views::Node& root, const RenderContext& context,
                                           const TextMeasurer& measurer) {
  auto widget = std::make_unique<WidgetLayout>();
  const views::WidgetFamily family = context.env.family;
  widget->size = context.device.sizeOf(family);
  if (widget->size.width <= 0 || widget->size.height <= 0) {
    throw RenderError(std::string(views::toString(family)) + " is not available on " + context.device.name);
  }
  widget->homeScreenFamily = isHomeScreenFamily(family);
  widget->circularMask = family == views::WidgetFamily::accessoryCircular;
  widget->cornerRadius = widget->circularMask ? widget->size.width / 2 : constants::kWidgetCornerRadius;
  widget->adapted = adaptViewTree(root, context.env);

  const bool modern = context.env.platformVersion.atLeast(17);
  if (!modern) widget->adapted.containerBackground.reset();  // only platform 17 knows container backgrounds
  measurer.expectFonts(textFontsOf(widget->adapted));
  if (!widget->adapted.containerBackground && widget->homeScreenFamily)
    widget->defaultBackground = systemBackground(context.env.colorScheme);

  const double margin = !modern                    ? 0
                        : widget->homeScreenFamily ? constants::kHomeScreenContentMargin
                                                   : constants::kAccessoryContentMargin;
  // Positions snap to the phone's pixel grid, whatever scale the output is drawn at,
  // so that every output and every tap sees the same geometry.
  LayoutEngine engine(measurer, context.device.scale);
  const Size full = widget->size;
  const LayoutNode* background = widget->adapted.containerBackground ? &*widget->adapted.containerBackground
                                 : widget->defaultBackground         ? &*widget->defaultBackground
                                                                     : nullptr;
  if (background) {
    const Size s = engine.sizeThatFits(*background, ProposedSize::of(full));
    widget->background = engine.layout(*background, ProposedSize::of(full),
                                       {(full.width - s.width) / 2, (full.height - s.height) / 2});
  }
  const Size area{std::max(0.0, full.width - 2 * margin), std::max(0.0, full.height - 2 * margin)};
  const Size contentSize = engine.sizeThatFits(widget->adapted.content, ProposedSize::of(area));
  // The content is centred in the area inside the margins.
  const Point origin{engine.roundToPixel(margin + (area.width - contentSize.width) / 2),
                     engine.roundToPixel(margin + (area.height - contentSize.height) / 2)};
  widget->content = engine.layout(widget->adapted.content, ProposedSize::of(area), origin);
  widget->rightToLeft = context.env.layoutDirection == views::LayoutDirection::rightToLeft;
  if (widget->rightToLeft) {
    mirror(widget->content, full.width);
    if (widget->background) mirror(*widget->background, full.width);
  }
  return widget;
}

}  // namespace quillan::render
