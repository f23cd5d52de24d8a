#pragma once

#include <functional>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "render/FakeTextMeasurer.hpp"
#include "render/Layout.hpp"
#include "render/LayoutNode.hpp"
#include "render/TextLayout.hpp"

namespace quillan::render::testing {

inline StyledText plain(std::string s) { return {StyledRun{std::move(s), FontDescription{}, false, std::nullopt}}; }

inline std::vector<std::string> lineTexts(const TextLayout& layout) {
  std::vector<std::string> out;
  for (const auto& line : layout.lines) out.push_back(plainText(line.runs));
  return out;
}

// A layout tree written as text, `kind key=value ... "text" (child, child)`:
// `hstack spacing=0 (flex maxWidth=inf h=0 (color), text "Hello world" lines=2)`.
// Kinds: color, text, spacer, hstack, vstack, zstack, frame (width, height),
// flex (minWidth, maxWidth), padding (top, leading, bottom, trailing),
// background (the primary child, then the one behind) and offset; any node
// takes priority, h and v (alignment fractions) and baseline (first, last).
class LayoutTreeText {
 public:
  explicit LayoutTreeText(const std::string& text) {
    // A quoted text, one of "(),", or a word; an empty token ends the text.
    static const std::regex token(R"("[^"]*"|[(),]|[^ (),]+)");
    for (std::sregex_iterator at(text.begin(), text.end(), token), end; at != end; ++at) tokens_.push_back(at->str());
    tokens_.emplace_back();
  }

  LayoutNode node() {
    static const std::map<std::string, LayoutKind> kinds = {
        {"color", LayoutKind::shape},           {"text", LayoutKind::text},          {"spacer", LayoutKind::spacer},
        {"hstack", LayoutKind::hstack},         {"vstack", LayoutKind::vstack},      {"zstack", LayoutKind::zstack},
        {"frame", LayoutKind::frame},           {"flex", LayoutKind::flexibleFrame}, {"padding", LayoutKind::padding},
        {"background", LayoutKind::background}, {"offset", LayoutKind::offset}};
    LayoutNode n;
    n.kind = kinds.at(tokens_[next_++]);
    while (tokens_[next_] != "," && tokens_[next_] != ")" && !tokens_[next_].empty()) {
      const auto word = tokens_[next_++];
      if (word == "(") {
        do n.children.push_back(node());
        while (tokens_[next_++] == ",");
      } else if (word.front() == '"') {
        n.text = plain(word.substr(1, word.size() - 2));
      } else {
        set(n, word.substr(0, word.find('=')), word.substr(word.find('=') + 1));
      }
    }
    return n;
  }

 private:
  static void set(LayoutNode& n, const std::string& key, const std::string& value) {
    if (key == "baseline") {
      n.alignment.baseline = value == "first" ? Baseline::first : Baseline::last;
      return;
    }
    const double number = std::stod(value);  // "inf" included
    const std::map<std::string, std::function<void()>> setters = {
        {"lines", [&] { n.lineLimit = static_cast<int>(number); }},
        {"min", [&] { n.spacerMinLength = number; }},
        {"spacing", [&] { n.spacing = number; }},
        {"priority", [&] { n.layoutPriority = number; }},
        {"h", [&] { n.alignment.horizontal = number; }},
        {"v", [&] { n.alignment.vertical = number; }},
        {"width", [&] { n.frame.width = number; }},
        {"height", [&] { n.frame.height = number; }},
        {"minWidth", [&] { n.frame.minWidth = number; }},
        {"maxWidth", [&] { n.frame.maxWidth = number; }},
        {"top", [&] { n.insets.top = number; }},
        {"leading", [&] { n.insets.leading = number; }},
        {"bottom", [&] { n.insets.bottom = number; }},
        {"trailing", [&] { n.insets.trailing = number; }}};
    setters.at(key)();
  }

  std::vector<std::string> tokens_;
  std::size_t next_ = 0;
};

}  // namespace quillan::render::testing
