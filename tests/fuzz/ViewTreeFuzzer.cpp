// A view tree file as `render --tree` reads it: decoded strictly, and every
// tree that decodes encodes back to a text that decodes to the same tree.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "FuzzCheck.hpp"
#include "views/ViewTreeJson.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillan::views;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const Node tree = decodeViewTree(text);
    FUZZ_CHECK(decodeViewTree(encodeViewTree(tree)) == tree);
  } catch (const ViewTreeJsonError&) {
    // Not a view tree: one line naming where, which `render` reports.
  }
  return 0;
}
