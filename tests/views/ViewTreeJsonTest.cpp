#include <gtest/gtest.h>

#include <set>

#include "support/GoldenFile.hpp"
#include "views/Builders.hpp"
#include "views/JsonNesting.hpp"
#include "views/ViewTreeJson.hpp"
#include "views/ViewTreeJsonValue.hpp"
#include "views/ViewTreeLimits.hpp"

namespace quillan::views {
namespace {

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
                        when(false, text("never")),
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

TEST(ViewTreeJson, EncodesAndRoundTripsEveryNodeAndModifierKind) {
  const Node tree = everything();
  std::set<std::size_t> kinds;
  std::set<std::size_t> modifierKinds;
  collectKinds(tree, kinds, modifierKinds);
  ASSERT_EQ(kinds.size(), std::variant_size_v<Node::Kind>) << "the tree must use every node kind";
  ASSERT_EQ(modifierKinds.size(), std::variant_size_v<Modifier::Kind>) << "and every modifier kind";

  // Key order and the constants written for each kind are part of the format.
  quillan::testing::expectGoldenText(toJson(tree).dump(2) + "\n", "view_tree_everything.json");
  const std::string encoded = encodeViewTree(tree);
  const Node decoded = decodeViewTree(encoded);
  EXPECT_EQ(decoded, tree);
  EXPECT_EQ(encodeViewTree(decoded), encoded);
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

std::string textWithModifiers(std::size_t count) {
  const std::string opacity = R"({"modifier": "opacity", "opacity": 1})";
  std::string modifiers = opacity;
  for (std::size_t i = 1; i < count; ++i) modifiers += ", " + opacity;
  return R"({"type": "Text", "text": "x", "modifiers": [)" + modifiers + "]}";
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

// Malformed trees, numbers that would poison layout and drawing, and the ends
// of every range (accepted): each refusal is one line saying where and what.
TEST(ViewTreeJson, RefusesMalformedTreesSayingWhereAndWhat) {
  quillan::testing::expectGoldenAnswers("view_tree_refused.txt", [](const std::string& json) {
    const std::string message = decodeError(json);
    EXPECT_TRUE(message == "accepted" || message.rfind("view tree: ", 0) == 0) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    return message;
  });
}

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
