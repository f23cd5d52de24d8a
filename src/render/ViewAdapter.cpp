#include "render/ViewAdapter.hpp"

#include <type_traits>

#include "platform/Utf8.hpp"
#include "render/RenderingConstants.hpp"
#include "views/DynamicType.hpp"
#include "views/Overload.hpp"

namespace quillan::render {

namespace {

namespace mods = views::modifiers;

// What the toolkit's environment carries down to the leaves.
struct Inherited {
  views::Font font = views::Font::body();
  std::optional<views::Weight> weight;
  std::optional<views::ShapeStyle> foreground;
  std::optional<views::ShapeStyle> secondaryForeground;
  // The last colour or gradient set from outside: a hierarchical level set
  // nearer the leaf lowers its opacity rather than replacing it.
  std::optional<views::ShapeStyle> customForeground;
  std::optional<int> lineLimit;
  views::ImageScale imageScale = views::ImageScale::medium;
  bool privacySensitive = false;
};

Rgba toRgba(views::RGBA c) { return {c.red, c.green, c.blue, c.alpha}; }

Alignment toAlignment(views::Alignment a) {
  Alignment out;
  switch (views::horizontal(a)) {
    case views::HorizontalAlignment::leading: out.horizontal = 0; break;
    case views::HorizontalAlignment::center: out.horizontal = 0.5; break;
    case views::HorizontalAlignment::trailing: out.horizontal = 1; break;
  }
  switch (views::vertical(a)) {
    case views::VerticalAlignment::top: out.vertical = 0; break;
    case views::VerticalAlignment::center:
    case views::VerticalAlignment::firstTextBaseline:
    case views::VerticalAlignment::lastTextBaseline: out.vertical = 0.5; break;
    case views::VerticalAlignment::bottom: out.vertical = 1; break;
  }
  return out;
}

FontWeight toWeight(views::Weight w) { return static_cast<FontWeight>(static_cast<int>(w)); }

class Adapter {
 public:
  explicit Adapter(const views::Environment& env) : env_(env) {}

  AdaptedWidget run(const views::Node& root) {
    AdaptedWidget out;
    out.content = convert(root, Inherited{});
    out.containerBackground = std::move(containerBackground_);
    out.widgetURL = std::move(widgetURL_);
    return out;
  }

 private:
  Paint resolveStyle(const views::ShapeStyle& style, double levelOpacityOnCustom = 1.0) const {
    return std::visit(views::Overload{
                          [&](const views::Color& c) {
                            return Paint::solid(
                                toRgba(views::resolve(c, env_.colorScheme)).multipliedAlpha(levelOpacityOnCustom));
                          },
                          [&](const views::LinearGradient& g) { return gradientPaint(g); },
                          [&](views::HierarchicalShapeStyle level) { return Paint::solid(hierarchical(level)); },
                      },
                      style);
  }

  Rgba hierarchical(views::HierarchicalShapeStyle level) const {
    using L = views::HierarchicalShapeStyle;
    const views::ColorName name = level == L::primary     ? views::ColorName::label
                                  : level == L::secondary ? views::ColorName::secondaryLabel
                                  : level == L::tertiary  ? views::ColorName::tertiaryLabel
                                                          : views::ColorName::quaternaryLabel;
    return toRgba(views::resolve(views::Color::named(name), env_.colorScheme));
  }

  Paint gradientPaint(const views::LinearGradient& g) const {
    std::vector<GradientStop> stops;
    for (const auto& stop : g.stops)
      stops.push_back({toRgba(views::resolve(stop.color, env_.colorScheme)), stop.location});
    return Paint::gradient(std::move(stops), {g.startPoint.x, g.startPoint.y}, {g.endPoint.x, g.endPoint.y});
  }

  // A hierarchical level applied to a custom foreground keeps its colour and
  // lowers its opacity.
  Paint foregroundPaint(const Inherited& in, const std::optional<views::ShapeStyle>& style) const {
    if (!style) return Paint::solid(hierarchical(views::HierarchicalShapeStyle::primary));
    if (auto level = std::get_if<views::HierarchicalShapeStyle>(&*style); level && in.customForeground)
      return resolveStyle(*in.customForeground, views::levelOpacity(*level));
    return resolveStyle(*style);
  }

  FontDescription fontDescription(const Inherited& in) const {
    FontDescription font;
    // Text styles follow the reader's text size; a fixed size stays as it is.
    font.size = in.font.size
                    ? *in.font.size
                    : views::pointSize(in.font.textStyle.value_or(views::TextStyle::body), env_.dynamicTypeSize);
    font.weight = toWeight(in.weight.value_or(in.font.resolvedWeight()));
    font.monospaced = in.font.design == views::FontDesign::monospaced;
    return font;
  }

  FontWeight emphasized(const Inherited& in, FontWeight base) const {
    if (in.font.textStyle && !in.font.size) {
      const auto metrics = textStyleNamed(views::toString(*in.font.textStyle));
      if (metrics && metrics->emphasizedWeight > base) return metrics->emphasizedWeight;
    }
    return base < FontWeight::bold ? FontWeight::bold : base;
  }

  // A note's text is whatever was synced: bytes that are not UTF-8 are laid
  // out, measured and drawn as U+FFFD, never handed on raw.
  StyledText styledText(const views::Text& text, const Inherited& in) const {
    const FontDescription base = fontDescription(in);
    if (!text.isAttributed()) {
      return {StyledRun{platform::withReplacementCharacters(text.text), base, false, std::nullopt}};
    }
    StyledText runs;
    for (const auto& run : text.runs) {
      FontDescription font = base;
      if (run.bold) font.weight = emphasized(in, base.weight);
      font.italic = run.italic;
      font.monospaced = font.monospaced || run.code;
      runs.push_back({platform::withReplacementCharacters(run.text), font, run.strikethrough, run.link});
    }
    return runs;
  }

  LayoutNode leaf(const views::Node& node, const Inherited& in) {
    LayoutNode out;
    out.privacySensitive = in.privacySensitive;
    std::visit(
        views::Overload{
            [&](const views::VStack& s) {
              out.kind = LayoutKind::vstack;
              out.spacing = s.spacing;
              out.alignment.horizontal = s.alignment == views::HorizontalAlignment::leading    ? 0
                                         : s.alignment == views::HorizontalAlignment::trailing ? 1
                                                                                               : 0.5;
              for (const auto& c : s.children) out.children.push_back(convert(c, in));
            },
            [&](const views::HStack& s) {
              out.kind = LayoutKind::hstack;
              out.spacing = s.spacing;
              out.alignment.vertical = s.alignment == views::VerticalAlignment::top      ? 0
                                       : s.alignment == views::VerticalAlignment::bottom ? 1
                                                                                         : 0.5;
              out.alignment.baseline = s.alignment == views::VerticalAlignment::firstTextBaseline  ? Baseline::first
                                       : s.alignment == views::VerticalAlignment::lastTextBaseline ? Baseline::last
                                                                                                   : Baseline::none;
              for (const auto& c : s.children) out.children.push_back(convert(c, in));
            },
            [&](const views::ZStack& s) {
              out.kind = LayoutKind::zstack;
              out.alignment = toAlignment(s.alignment);
              for (const auto& c : s.children) out.children.push_back(convert(c, in));
            },
            [&](const views::Text& t) {
              out.kind = LayoutKind::text;
              out.text = styledText(t, in);
              out.lineLimit = in.lineLimit;
              out.foreground = foregroundPaint(in, in.foreground);
            },
            [&](const views::Image& i) {
              out.kind = LayoutKind::symbol;
              out.symbolName = i.systemName;
              out.symbolFont = fontDescription(in);
              out.symbolScale = static_cast<SymbolScale>(static_cast<int>(in.imageScale));
              out.foreground = foregroundPaint(in, in.foreground);
              out.secondaryForeground = in.secondaryForeground
                                            ? foregroundPaint(in, in.secondaryForeground)
                                            : Paint::solid(hierarchical(views::HierarchicalShapeStyle::secondary));
            },
            [&](const views::Circle&) { shape(out, ShapeKind::circle, in); },
            [&](const views::Capsule&) { shape(out, ShapeKind::capsule, in); },
            [&](const views::ContainerRelativeShape&) { shape(out, ShapeKind::containerRelative, in); },
            [&](const views::LinearGradient& g) {
              out.kind = LayoutKind::shape;
              out.fill = gradientPaint(g);
            },
            [&](const views::Color& c) {
              out.kind = LayoutKind::shape;
              out.fill = resolveStyle(c);
            },
            [&](const views::Spacer& s) {
              out.kind = LayoutKind::spacer;
              out.spacerMinLength = s.minLength;
            },
            [&](const views::Link& l) {
              out.kind = LayoutKind::link;
              out.url = l.destination;
              for (const auto& c : l.children) out.children.push_back(convert(c, in));
            },
            [&](const views::AnyView& a) {
              out.kind = LayoutKind::group;
              for (const auto& c : a.children) out.children.push_back(convert(c, in));
            },
        },
        node.kind);
    out.name = std::visit([](const auto& k) { return std::string(typeName(k)); }, node.kind);
    return out;
  }

  template <typename K>
  static std::string_view typeName(const K& kind) {
    if constexpr (requires { K::type; }) return K::type;
    else {
      (void)kind;
      return std::is_same_v<K, views::Color> ? "Color" : "LinearGradient";
    }
  }

  void shape(LayoutNode& out, ShapeKind kind, const Inherited& in) const {
    out.kind = LayoutKind::shape;
    out.shape = kind;
    out.fill = foregroundPaint(in, in.foreground);  // a shape fills with the foreground unless told otherwise
  }

  // Settings modifier `m` passes down to what it modifies.
  static void inherit(Inherited& in, const views::Modifier& m) {
    std::visit(views::Overload{
                   [&](const mods::Font& f) { in.font = f.font; },
                   [&](const mods::FontWeight& f) { in.weight = f.weight; },
                   [&](const mods::ForegroundColor& f) {
                     in.foreground = f.color;
                     in.customForeground = f.color;
                     in.secondaryForeground.reset();
                   },
                   [&](const mods::ForegroundStyle& f) {
                     in.foreground = f.primary;
                     in.secondaryForeground = f.secondary;
                     if (!std::holds_alternative<views::HierarchicalShapeStyle>(f.primary))
                       in.customForeground = f.primary;
                   },
                   [&](const mods::LineLimit& l) { in.lineLimit = l.lines; },
                   [&](const mods::ImageScale& s) { in.imageScale = s.scale; },
                   [&](const mods::PrivacySensitive& p) { in.privacySensitive = p.sensitive; },
                   // Layout and drawing modifiers pass nothing down; apply() handles them.
                   [](const mods::Padding&) {},
                   [](const mods::Offset&) {},
                   [](const mods::Frame&) {},
                   [](const mods::FlexFrame&) {},
                   [](const mods::Background&) {},
                   [](const mods::Overlay&) {},
                   [](const mods::ContainerBackground&) {},
                   [](const mods::WidgetURL&) {},
                   [](const mods::ButtonStyle&) {},
                   [](const mods::Resizable&) {},
                   [](const mods::Fill&) {},
                   [](const mods::StrokeBorder&) {},
                   [](const mods::Opacity&) {},
               },
               m.kind);
  }

  LayoutNode wrap(LayoutKind kind, LayoutNode child, std::string name) const {
    LayoutNode out;
    out.kind = kind;
    out.name = std::move(name);
    out.privacySensitive = child.privacySensitive;
    out.children.push_back(std::move(child));
    return out;
  }

  LayoutNode convert(const views::Node& node, const Inherited& outer) {
    const auto& modifiers = node.modifiers;
    // scopes[i]: what the node sees from modifier i outward.
    std::vector<Inherited> scopes(modifiers.size() + 1, outer);
    for (std::size_t i = modifiers.size(); i-- > 0;) {
      scopes[i] = scopes[i + 1];
      inherit(scopes[i], modifiers[i]);
    }
    LayoutNode current = leaf(node, scopes[0]);
    for (std::size_t i = 0; i < modifiers.size(); ++i) current = apply(std::move(current), modifiers[i], scopes[i + 1]);
    return current;
  }

  LayoutNode apply(LayoutNode current, const views::Modifier& m, const Inherited& outside) {
    return std::visit(views::Overload{
                          [&](const mods::Padding& p) {
                            const double amount = p.length.value_or(constants::kDefaultPadding);
                            LayoutNode out = wrap(LayoutKind::padding, std::move(current), "padding");
                            out.insets = {p.edges.contains(views::Edge::top) ? amount : 0,
                                          p.edges.contains(views::Edge::leading) ? amount : 0,
                                          p.edges.contains(views::Edge::bottom) ? amount : 0,
                                          p.edges.contains(views::Edge::trailing) ? amount : 0};
                            return out;
                          },
                          [&](const mods::Offset& o) {
                            LayoutNode out = wrap(LayoutKind::offset, std::move(current), "offset");
                            out.offset = {o.x, o.y};
                            return out;
                          },
                          [&](const mods::Frame& f) {
                            LayoutNode out = wrap(LayoutKind::frame, std::move(current), "frame");
                            out.frame.width = f.width;
                            out.frame.height = f.height;
                            out.alignment = toAlignment(f.alignment);
                            return out;
                          },
                          [&](const mods::FlexFrame& f) {
                            LayoutNode out = wrap(LayoutKind::flexibleFrame, std::move(current), "frame");
                            const auto& s = f.frame;
                            out.frame = {.minWidth = s.minWidth,
                                         .idealWidth = s.idealWidth,
                                         .maxWidth = s.maxWidth,
                                         .minHeight = s.minHeight,
                                         .idealHeight = s.idealHeight,
                                         .maxHeight = s.maxHeight};
                            out.alignment = toAlignment(s.alignment);
                            return out;
                          },
                          [&](const mods::Background& b) {
                            LayoutNode out = wrap(LayoutKind::background, std::move(current), "background");
                            out.alignment = toAlignment(b.alignment);
                            out.children.push_back(convert(b.content, outside));
                            return out;
                          },
                          [&](const mods::Overlay& o) {
                            LayoutNode out = wrap(LayoutKind::overlay, std::move(current), "overlay");
                            out.alignment = toAlignment(o.alignment);
                            out.children.push_back(convert(o.content, outside));
                            return out;
                          },
                          [&](const mods::ContainerBackground& c) {
                            LayoutNode background = convert(c.content, outside);
                            background.isContainerBackground = true;
                            containerBackground_ = std::move(background);
                            return std::move(current);
                          },
                          [&](const mods::WidgetURL& w) {
                            widgetURL_ = w.url;
                            return std::move(current);
                          },
                          [&](const mods::Resizable&) {
                            current.resizable = true;
                            return std::move(current);
                          },
                          [&](const mods::Fill& f) {
                            current.fill = resolveStyle(f.style);
                            return std::move(current);
                          },
                          [&](const mods::StrokeBorder& s) {
                            if (current.stroke || current.fill != Paint::none()) current.fill = Paint::none();
                            current.strokePaint = resolveStyle(s.style);
                            current.stroke = Stroke{s.strokeStyle, /*inset=*/true};
                            return std::move(current);
                          },
                          [&](const mods::Opacity& o) {
                            LayoutNode out = wrap(LayoutKind::group, std::move(current), "opacity");
                            out.opacity = o.opacity;
                            return out;
                          },
                          // Settings reach the leaves through inherit(); a plain button style
                          // draws its label as it is.
                          [&](const mods::Font&) { return std::move(current); },
                          [&](const mods::FontWeight&) { return std::move(current); },
                          [&](const mods::ForegroundColor&) { return std::move(current); },
                          [&](const mods::ForegroundStyle&) { return std::move(current); },
                          [&](const mods::PrivacySensitive&) { return std::move(current); },
                          [&](const mods::LineLimit&) { return std::move(current); },
                          [&](const mods::ImageScale&) { return std::move(current); },
                          [&](const mods::ButtonStyle&) { return std::move(current); },
                      },
                      m.kind);
  }

  const views::Environment& env_;
  std::optional<LayoutNode> containerBackground_;
  std::optional<std::string> widgetURL_;
};

}  // namespace

AdaptedWidget adaptViewTree(const views::Node& root, const views::Environment& environment) {
  return Adapter(environment).run(root);
}

}  // namespace quillan::render
