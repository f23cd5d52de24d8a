#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
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
  explicit LayoutTreeText(std::string text) : text_(std::move(text)) {}

  LayoutNode node() {
    static const std::map<std::string, LayoutKind> kinds = {
        {"color", LayoutKind::shape},           {"text", LayoutKind::text},          {"spacer", LayoutKind::spacer},
        {"hstack", LayoutKind::hstack},         {"vstack", LayoutKind::vstack},      {"zstack", LayoutKind::zstack},
        {"frame", LayoutKind::frame},           {"flex", LayoutKind::flexibleFrame}, {"padding", LayoutKind::padding},
        {"background", LayoutKind::background}, {"offset", LayoutKind::offset}};
    LayoutNode n;
    n.kind = kinds.at(token());
    for (auto next = peek(); next != "," && next != ")" && !next.empty(); next = peek()) {
      const auto word = token();
      if (word == "(") {
        do n.children.push_back(node());
        while (token() == ",");
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

  std::string peek() {
    const auto at = position_;
    auto next = token();
    position_ = at;
    return next;
  }

  // A quoted text, one of "(),", or a word.
  std::string token() {
    while (position_ < text_.size() && text_[position_] == ' ') ++position_;
    if (position_ == text_.size()) return "";
    const auto start = position_;
    if (text_[position_] == '"') {
      position_ = text_.find('"', start + 1) + 1;
    } else if (std::string_view("(),").find(text_[position_]) != std::string_view::npos) {
      ++position_;
    } else {
      position_ = std::min(text_.find_first_of(" (),", start), text_.size());
    }
    return text_.substr(start, position_ - start);
  }

  std::string text_;
  std::size_t position_ = 0;
};

}  // namespace quillan::render::testing
