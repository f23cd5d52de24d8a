#include <gtest/gtest.h>

#include <set>

#include "views/Builders.hpp"
#include "views/JsonNesting.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "views/ViewTreeLimits.hpp"

namespace quillan::views {
namespace {

using Json = nlohmann::ordered_json;

Node morePill() {
  return localizedText("%lld more", "3 more")
      .font(Font::system(13))
      .foregroundColor(Color::systemGray())
      .padding(EdgeSet::horizontal(), 5)
      .background(capsule(RoundedCornerStyle::continuous).fill(Color::gray().withOpacity(0.1)));
}

TEST(ViewTreeJson, EncodesTypePropertiesChildrenAndModifiersInThatOrder) {
  const Node tree = vstack(HorizontalAlignment::leading,
                           {
                               morePill(),
                               spacer(2.5),
                               when(false, text("never")),
                           })
                        .containerBackground(ContainerBackgroundPlacement::widget, Alignment::center,
                                             Color::systemGray6())
                        .privacySensitive();
  // Written out by hand: key order is part of the format.
  const char* expected = R"({
    "type": "VStack", "alignment": "leading",
    "children": [
      {"type": "Text", "text": "3 more", "key": "%lld more", "modifiers": [
        {"modifier": "font", "font": {"size": 13.0}},
        {"modifier": "foregroundColor", "color": "systemGray"},
        {"modifier": "padding", "edges": "horizontal", "length": 5.0},
        {"modifier": "background", "content": {"type": "Capsule", "style": "continuous", "modifiers": [
          {"modifier": "fill", "style": {"color": "gray", "opacity": 0.1}}]}}]},
      {"type": "Spacer", "minLength": 2.5}],
    "modifiers": [
      {"modifier": "containerBackground", "placement": "widget", "content": {"type": "Color", "color": "systemGray6"}},
      {"modifier": "privacySensitive"}]
  })";
  EXPECT_EQ(toJson(tree).dump(), Json::parse(expected).dump());
}

TEST(ViewTreeJson, WritesGradientsStrokesAndSymbolsWithTheirConstants) {
  const auto gradient = LinearGradient::evenlySpaced({Color::orange(), Color::orange().withOpacity(0.75)},
                                                     UnitPoint::bottomLeading(), UnitPoint::topTrailing());
  const Node tree = zstack({
      containerRelativeShape().fill(gradient),
      circle().strokeBorder(Color::red(), StrokeStyle{3, LineCap::round, LineJoin::miter, 10, {5}, 2}),
      image("square.and.pencil.circle.fill")
          .resizable()
          .foregroundStyle(HierarchicalShapeStyle::primary, HierarchicalShapeStyle::secondary)
          .frame(FlexibleFrame{.maxWidth = FlexibleFrame::infinity}),
  });
  const char* expected = R"({"type": "ZStack", "children": [
    {"type": "ContainerRelativeShape", "modifiers": [{"modifier": "fill", "style": {"linearGradient": {
      "stops": [{"color": "orange", "location": 0.0}, {"color": "orange", "opacity": 0.75, "location": 1.0}],
      "startPoint": "bottomLeading", "endPoint": "topTrailing"}}}]},
    {"type": "Circle", "modifiers": [{"modifier": "strokeBorder", "style": {"color": "red"},
      "strokeStyle": {"lineWidth": 3.0, "lineCap": "round", "dash": [5.0], "dashPhase": 2.0}}]},
    {"type": "Image", "systemName": "square.and.pencil.circle.fill", "modifiers": [
      {"modifier": "resizable"},
      {"modifier": "foregroundStyle", "styles": [{"hierarchical": "primary"}, {"hierarchical": "secondary"}]},
      {"modifier": "flexFrame", "maxWidth": "infinity"}]}]})";
  EXPECT_EQ(toJson(tree).dump(), Json::parse(expected).dump());
}

// Every node kind and every modifier kind, with non-default arguments.
Node everything() {
  const auto gradient = LinearGradient::evenlySpaced({Color::gray(), Color::gray().withOpacity(0.75)},
                                                     UnitPoint{0.25, 0.75}, UnitPoint::topTrailing());
  const platform::TextRun linked{"here", false, false, false, false, "https://example.org"};
  Node runs = Node{Text{
      "bold and here",
      std::nullopt,
      {{"bold", true, false, false, false, std::nullopt}, {" and ", false, true, true, true, std::nullopt}, linked}}};
  return anyView(
             vstack(HorizontalAlignment::trailing, 4,
                    {
                        hstack(VerticalAlignment::firstTextBaseline, 0,
                               {
                                   text("Mon").font(Font::system(12, Weight::medium, FontDesign::rounded)),
                                   localizedText("On This Day").fontWeight(Weight::heavy).fontWeight(std::nullopt),
                                   std::move(runs).lineLimit(2).lineLimit(std::nullopt),
                               }),
                        zstack(Alignment::bottomTrailing,
                               {
                                   circle()
                                       .fill(Color::green())
                                       .frame(47.5, 47.5)
                                       .frame(std::nullopt, 3, Alignment::topLeading),
                                   capsule().strokeBorder(gradient, StrokeStyle{}),
                                   containerRelativeShape().fill(HierarchicalShapeStyle::tertiary),
                                   linearGradient(gradient),
                                   color(Color::clear().withOpacity(0.5)),
                               }),
                        spacer(),
                        link("widget-deeplink://AddRecord", image("square.and.pencil")
                                                                .imageScale(ImageScale::small)
                                                                .font(Font::title().weight(Weight::semibold))
                                                                .offset(0.75, -0.75)
                                                                .buttonStyle(ButtonStyle::plain)
                                                                .resizable(EdgeInsets{1, 2, 3, 4}, ResizingMode::tile)
                                                                .foregroundStyle(Color::white())
                                                                .foregroundColor(Color::primary())),
                    })
                 .padding()
                 .padding(12.5)
                 .padding(EdgeSet::leading() | EdgeSet::bottom(), 15)
                 .frame(FlexibleFrame{.minWidth = 0,
                                      .idealWidth = 10,
                                      .maxWidth = FlexibleFrame::infinity,
                                      .minHeight = 1,
                                      .idealHeight = 2,
                                      .maxHeight = 3,
                                      .alignment = Alignment::top})
                 .background(Color::white(), Alignment::leading, EdgeSet::all())
                 .overlay(text("!"), Alignment::bottom)
                 .opacity(0.5))
      .containerBackground(ContainerBackgroundPlacement::widget, Alignment::trailing, linearGradient(gradient))
      .widgetURL("widget-deeplink://OnThisDay")
      .privacySensitive(false);
}

void collectKinds(const Node& node, std::set<std::size_t>& kinds, std::set<std::size_t>& modifierKinds) {
  kinds.insert(node.kind.index());
  for (const auto& child : node.children()) collectKinds(child, kinds, modifierKinds);
  for (const auto& modifier : node.modifiers) {
    modifierKinds.insert(modifier.kind.index());
    std::visit(
        [&](const auto& m) {
          if constexpr (requires { m.content; }) collectKinds(m.content, kinds, modifierKinds);
        },
        modifier.kind);
  }
}

TEST(ViewTreeJson, RoundTripsEveryNodeAndModifierKind) {
  const Node tree = everything();
  std::set<std::size_t> kinds;
  std::set<std::size_t> modifierKinds;
  collectKinds(tree, kinds, modifierKinds);
  ASSERT_EQ(kinds.size(), std::variant_size_v<Node::Kind>) << "the tree must use every node kind";
  ASSERT_EQ(modifierKinds.size(), std::variant_size_v<Modifier::Kind>) << "and every modifier kind";

  const std::string encoded = encodeViewTree(tree);
  const Node decoded = decodeViewTree(encoded);
  EXPECT_EQ(decoded, tree);
  EXPECT_EQ(encodeViewTree(decoded), encoded);
}

struct Malformed {
  const char* json;
  const char* message;
};

TEST(ViewTreeJson, RejectsMalformedTreesSayingWhereAndWhat) {
  const Malformed cases[] = {
      {R"({"type": "Text")", nullptr},
      {R"([])", "view tree: at /: expected an object"},
      {R"({"text": "x"})", "view tree: at /: missing \"type\""},
      {R"({"type": "Button"})", "view tree: at /type: unknown view type \"Button\""},
      {R"({"type": "Text"})", "view tree: at /: missing \"text\""},
      {R"({"type": "Text", "text": 3})", "view tree: at /text: expected a string"},
      {R"({"type": "Circle", "radius": 3})", "view tree: at /: unexpected key \"radius\""},
      {R"({"type": "VStack", "alignment": "top"})",
       "view tree: at /alignment: unknown alignment \"top\" (expected leading, center or trailing)"},
      {R"({"type": "VStack", "children": [{"type": "Spacer", "minLength": "2"}]})",
       "view tree: at /children/0/minLength: expected a number"},
      {R"({"type": "Link", "destination": "x", "children": []})", "view tree: at /: a Link has exactly one child"},
      {R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "fnt"}]})",
       "view tree: at /modifiers/0/modifier: unknown modifier \"fnt\""},
      {R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "font", "font": {"size": 3, "weight": "fat"}}]})",
       "view tree: at /modifiers/0/font/weight: unknown weight \"fat\" (expected ultraLight, thin, light, regular, "
       "medium, semibold, bold, heavy or black)"},
      {R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "font", "font": {}}]})",
       "view tree: at /modifiers/0/font: a font has either \"size\" or \"textStyle\""},
      {R"({"type": "Color", "color": "grey"})", nullptr},
      {R"({"type": "Circle", "modifiers": [{"modifier": "fill", "style": {}}]})",
       "view tree: at /modifiers/0/style: expected a style: \"color\", \"linearGradient\" or \"hierarchical\""},
      {R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "lineLimit", "lines": 1.5}]})",
       "view tree: at /modifiers/0/lines: expected an integer"},
      {R"({"type": "Text", "text": "x", "modifiers": [{"modifier": "padding", "edges": "sides"}]})", nullptr},
      {R"({"type": "Text", "text": "ab", "runs": [{"text": "a"}]})",
       "view tree: at /text: the text is not the concatenation of its runs"},
  };
  for (const auto& c : cases) {
    try {
      decodeViewTree(c.json);
      ADD_FAILURE() << "accepted " << c.json;
    } catch (const ViewTreeJsonError& error) {
      const std::string message = error.what();
      if (c.message) {
        EXPECT_EQ(message, c.message) << c.json;
      } else {
        EXPECT_EQ(message.find('\n'), std::string::npos) << message;
        EXPECT_EQ(message.rfind("view tree: ", 0), 0u) << message;
      }
    }
  }
}

std::string repeated(std::string_view unit, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += unit;
  return text;
}

// `depth` stacks nested in one another around a spacer.
std::string nestedStacks(std::size_t depth) {
  const std::string stack = R"({"type": "VStack", "children": [)";
  return repeated(stack, depth - 1) + R"({"type": "Spacer"})" + repeated("]}", depth - 1);
}

std::string textWith(const std::string& modifiers) {
  return R"({"type": "Text", "text": "x", "modifiers": [)" + modifiers + "]}";
}

std::string textWithModifiers(std::size_t count) {
  const std::string opacity = R"({"modifier": "opacity", "opacity": 1})";
  std::string modifiers = opacity;
  for (std::size_t i = 1; i < count; ++i) modifiers += ", " + opacity;
  return textWith(modifiers);
}

std::string decodeError(const std::string& json) {
  try {
    decodeViewTree(json);
  } catch (const ViewTreeJsonError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(ViewTreeJson, NestingIsLimitedCountingEveryModifierAsALevel) {
  const std::string tooDeep = "views nest more than 64 levels deep (each modifier counts as a level)";
  EXPECT_NO_THROW(decodeViewTree(nestedStacks(limits::kMaxDepth)));
  EXPECT_NO_THROW(decodeViewTree(textWithModifiers(limits::kMaxDepth - 1)));
  EXPECT_EQ(decodeError(textWithModifiers(limits::kMaxDepth)), "view tree: at /: " + tooDeep);
  // A modifier's content sits below all of its view's modifiers.
  const std::string background = R"({"type": "Color", "color": "red", "modifiers": [{"modifier": "background",
      "content": )" + textWithModifiers(limits::kMaxDepth - 2) +
                                 "}]}";
  EXPECT_EQ(decodeError(background), "view tree: at /modifiers/0/content: " + tooDeep);
  for (const std::size_t depth : {limits::kMaxDepth + 1, std::size_t{100'000}}) {
    const std::string message = decodeError(nestedStacks(depth));
    EXPECT_EQ(message, "view tree: at " + repeated("/children/0", limits::kMaxDepth) + ": " + tooDeep) << depth;
  }
}

TEST(ViewTreeJson, DeepJsonOutsideTheViewsIsRefusedWithoutRecursing) {
  const std::size_t depth = 1'000'000;
  EXPECT_EQ(decodeError(repeated("[", depth) + repeated("]", depth)), "view tree: at /: expected an object");
  EXPECT_EQ(decodeError(R"({"type": "Text", "text": )" + repeated("[", depth) + repeated("]", depth) + "}"),
            "view tree: at /text: expected a string");
}

TEST(ViewTreeJson, RejectsNumbersThatWouldPoisonLayoutAndDrawing) {
  const auto font = [](const std::string& size) {
    return textWith(R"({"modifier": "font", "font": {"size": )" + size + "}}");
  };
  const auto stroke = [](const std::string& style) {
    return R"({"type": "Circle", "modifiers": [{"modifier": "strokeBorder", "style": {"color": "red"},
               "strokeStyle": )" +
           style + "}]}";
  };
  const auto gradient = [](const std::string& stops, const std::string& start) {
    return R"({"type": "LinearGradient", "stops": )" + stops + R"(, "startPoint": )" + start +
           R"(, "endPoint": "bottom"})";
  };
  // Each refusal is one line starting "view tree: at " and this.
  const std::pair<std::string, std::string> refused[] = {
      {font("1e9"), "/modifiers/0/font/size: font size 1000000000.0 out of range (expected 1 to 400)"},
      {font("-50"), "/modifiers/0/font/size: font size -50 out of range (expected 1 to 400)"},
      {font("0.5"), "/modifiers/0/font/size: font size 0.5 out of range"},
      {textWith(R"({"modifier": "frame", "width": -1})"),
       "/modifiers/0/width: size -1 out of range (expected 0 to 10000)"},
      {textWith(R"({"modifier": "frame", "height": 1e6})"), "/modifiers/0/height: size 1000000.0 out of range"},
      {textWith(R"({"modifier": "flexFrame", "minWidth": -5})"), "/modifiers/0/minWidth: size -5"},
      {textWith(R"({"modifier": "flexFrame", "maxWidth": "-infinity"})"),
       "/modifiers/0/maxWidth: expected a number or \"infinity\""},
      {textWith(R"({"modifier": "padding", "length": 20000})"),
       "/modifiers/0/length: length 20000 out of range (expected -10000 to 10000)"},
      {textWith(R"({"modifier": "offset", "x": 0, "y": -1e300})"), "/modifiers/0/y: length"},
      {textWith(R"({"modifier": "lineLimit", "lines": 0})"),
       "/modifiers/0/lines: line limit 0 out of range (expected 1 to 1000)"},
      {textWith(R"({"modifier": "lineLimit", "lines": -2})"), "/modifiers/0/lines: line limit -2"},
      {textWith(R"({"modifier": "lineLimit", "lines": 10000000000000})"),
       "/modifiers/0/lines: line limit 10000000000000"},
      {textWith(R"({"modifier": "opacity", "opacity": 1.5})"),
       "/modifiers/0/opacity: opacity 1.5 out of range (expected 0 to 1)"},
      {textWith(R"({"modifier": "foregroundColor", "color": "red", "opacity": -0.1})"),
       "/modifiers/0/opacity: opacity -0.1"},
      {R"({"type": "Spacer", "minLength": -8})", "/minLength: size -8"},
      {R"({"type": "HStack", "spacing": 1e5})", "/spacing: length 100000.0"},
      {gradient(R"([{"color": "red", "location": 2}])", R"("top")"),
       "/stops/0/location: location 2 out of range (expected 0 to 1)"},
      {gradient("[]", R"({"x": 0, "y": 1e20})"), "/startPoint/y: length"},
      {stroke(R"({"lineWidth": -3})"), "/modifiers/0/strokeStyle/lineWidth: size -3"},
      {stroke(R"({"dash": [0, 0]})"), "/modifiers/0/strokeStyle/dash: a dash pattern needs a length above 0"},
      {stroke(R"({"dash": [4, -1]})"), "/modifiers/0/strokeStyle/dash/1: size -1"},
      {R"({"type": "Image", "systemName": "x", "modifiers": [{"modifier": "resizable",
          "capInsets": {"top": -1, "leading": 0, "bottom": 0, "trailing": 0}}]})",
       "/modifiers/0/capInsets/top: size -1"},
  };
  for (const auto& [json, start] : refused) {
    const std::string message = decodeError(json);
    EXPECT_EQ(message.rfind("view tree: at " + start, 0), 0u) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
  }
  EXPECT_EQ(decodeError(font("1e999")).rfind("view tree: malformed JSON: ", 0), 0u);

  // The ends of every range, negative lengths and an unbounded flexible frame are fine.
  for (const std::string& accepted :
       {font("1"), font("400"), textWith(R"({"modifier": "lineLimit", "lines": 1})"),
        textWith(R"({"modifier": "lineLimit", "lines": 1000})"),
        textWith(R"({"modifier": "padding", "length": -10000})"),
        textWith(R"({"modifier": "offset", "x": -4.5, "y": 10000})"),
        textWith(R"({"modifier": "flexFrame", "minWidth": 0, "maxWidth": "infinity"})"),
        textWith(R"({"modifier": "opacity", "opacity": 0})"), std::string(R"({"type": "HStack", "spacing": -20})")}) {
    EXPECT_EQ(decodeError(accepted), "accepted") << accepted;
  }
}

}  // namespace
}  // namespace quillan::views

namespace quillan::views {
namespace {

// Only real nesting counts: brackets in strings, escaped quotes and closing
// brackets of malformed text must neither hide depth nor invent it.
TEST(JsonNesting, CountsArraysAndObjectsOutsideStrings) {
  const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
  struct Case {
    std::string text;
    std::size_t limit;
    bool within;
  };
  const Case cases[] = {
      {"[[1]]", 2, true},
      {"[[1]]", 1, false},
      {R"({"a": {"b": [1]}})", 3, true},
      {R"({"a": {"b": [1]}})", 2, false},
      {R"(["[[[[", "\"[[[["])", 1, true},
      {R"(["\\", [[1]]])", 2, false},
      {"]]]][[", 2, true},
      {deep, kMaxJsonNesting, false},
      {std::string(kMaxJsonNesting, '{'), kMaxJsonNesting, true},
  };
  for (const auto& c : cases) EXPECT_EQ(jsonNestsWithin(c.text, c.limit), c.within) << c.text.substr(0, 40);
}

}  // namespace
}  // namespace quillan::views
