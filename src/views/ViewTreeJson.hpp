#pragma once

// The JSON form of the view tree: the contract with every host. The format is
// documented in docs/view-tree.md; in short, a node is
//
//   {"type": "Text", "text": "3 more", "key": "%lld more",
//    "modifiers": [{"modifier": "font", "font": {"size": 13}}]}
//
// with keys in a fixed order and only the arguments that differ from their
// defaults (required arguments always). Decoding is strict: an unknown type,
// modifier, key or enum name, a number out of its range or a tree nested too
// deep (views/ViewTreeLimits.hpp) is an error naming where it was found.

#include <stdexcept>
#include <string>
#include <string_view>

#include "views/Node.hpp"

namespace quillan::views {

// A JSON text that is not a view tree. The message is one line: what was wrong
// and where (a JSON pointer), e.g.
// `view tree: at /modifiers/0/font/weight: unknown weight "fat" (expected ...)`.
class ViewTreeJsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Pretty-printed (two-space indent), ending in a newline.
std::string encodeViewTree(const Node& node);
// Throws ViewTreeJsonError, also for text that is not JSON at all.
Node decodeViewTree(std::string_view text);

}  // namespace quillan::views
