#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "render/ViewAdapter.hpp"
#include "support/GoldenFile.hpp"
#include "support/GoldenQuestion.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::render {
namespace {

// A node and what it holds, as drawing reads them: its text's or symbol's
// point size, its foreground colour and its alignment on a row.
std::string described(const LayoutNode& node) {
  const auto& color = node.foreground.color;
  const auto byte = [](double component) { return static_cast<int>(component * 255 + 0.5); };
  const char* baselines[] = {"none", "first", "last"};
  const bool text = node.kind == LayoutKind::text, symbol = node.kind == LayoutKind::symbol;
  char size[32] = "", line[128];
  if (text || symbol) {
    std::snprintf(size, sizeof size, "%s %g, ", text ? "text" : "symbol",
                  text ? node.text.front().font.size : node.symbolFont.size);
  }
  std::snprintf(line, sizeof line, "%sforeground %02X%02X%02X/%g, baseline %s, vertical %g", size, byte(color.red),
                byte(color.green), byte(color.blue), color.alpha, baselines[static_cast<int>(node.alignment.baseline)],
                node.alignment.vertical);
  std::string answer = line;
  for (std::size_t i = 0; i < node.children.size(); ++i) answer += (i ? "; " : " [") + described(node.children[i]);
  return answer + (node.children.empty() ? "" : "]");
}

// Foreground colours and hierarchical levels combined, row alignments, and
// text styles (and the symbols sized by them) scaled with the text size while
// fixed sizes stay: SCHEME | TEXT SIZE | VIEW TREE => the adapted tree.
TEST(ViewAdapter, AdaptsAsTheGoldenFileSays) {
  quillan::testing::expectGoldenAnswers("view_adapter.txt", [](const std::string& question) {
    const auto cells = quillan::testing::cells(question);
    views::Environment environment;
    environment.colorScheme = views::parseColorScheme(cells[0]);
    environment.dynamicTypeSize = views::parseDynamicTypeSize(cells[1]);
    return described(adaptViewTree(views::decodeViewTree(cells[2]), environment).content);
  });
}

}  // namespace
}  // namespace quillan::render
