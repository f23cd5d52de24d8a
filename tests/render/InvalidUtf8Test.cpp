#include <glib.h>
#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "render/LayoutJson.hpp"
#include "render/PangoTextMeasurer.hpp"
#include "render/Renderer.hpp"
#include "views/Builders.hpp"

namespace quillan::render {
namespace {

// Collects what Pango logs while alive: a text it is handed that is not UTF-8
// is a warning there. Pango logs structured messages, which only the
// process's one log writer sees; it is installed once, the first time.
class PangoMessages {
 public:
  PangoMessages() : first_(recorded().size()) {
    static std::once_flag installed;
    std::call_once(installed, [] { g_log_set_writer_func(&PangoMessages::write, nullptr, nullptr); });
  }

  std::vector<std::string> messages() const {
    return {recorded().begin() + static_cast<std::ptrdiff_t>(first_), recorded().end()};
  }

 private:
  static std::vector<std::string>& recorded() {
    static std::vector<std::string> messages;
    return messages;
  }

  static std::string_view field(const GLogField* fields, gsize count, std::string_view key) {
    for (gsize i = 0; i < count; ++i) {
      if (key == fields[i].key && fields[i].length < 0) return static_cast<const char*>(fields[i].value);
    }
    return {};
  }

  static GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer data) {
    if (field(fields, count, "GLIB_DOMAIN") == "Pango") recorded().emplace_back(field(fields, count, "MESSAGE"));
    return g_log_writer_default(level, fields, count, data);
  }

  std::size_t first_;
};

const std::string kMalformed = "caf\xE9 \xF0\x9F au lait \xFF";
const std::string kReplaced = "caf\uFFFD \uFFFD au lait \uFFFD";

// The measurer and the drawing both hand Pango the text with replacement
// characters, so Pango never sees (nor warns about) malformed bytes.
TEST(InvalidUtf8, ATextThatIsNotUtf8IsMeasuredAndDrawnWithReplacementCharacters) {
  PangoMessages pango;
  const RenderContext context{.env = {.platformVersion = {}, .family = views::WidgetFamily::systemMedium}};
  const views::Node tree = views::text(kMalformed).font(views::Font::system(15));
  const std::string layout = layoutJSON(tree, context);
  EXPECT_NE(layout.find(kReplaced), std::string::npos) << layout;
  const views::Node replaced = views::text(kReplaced).font(views::Font::system(15));
  EXPECT_EQ(renderToPNGBytes(tree, context), renderToPNGBytes(replaced, context));
  const auto& measurer = PangoTextMeasurer::shared();
  const FontDescription font{15};
  const StyledText malformedRuns{{kMalformed, font, false, std::nullopt}, {"\xC3", font, true, std::nullopt}};
  const StyledText replacedRuns{{kReplaced, font, false, std::nullopt}, {"\uFFFD", font, true, std::nullopt}};
  EXPECT_DOUBLE_EQ(measurer.width(malformedRuns), measurer.width(replacedRuns));
  EXPECT_GT(measurer.width(malformedRuns), 0);
  EXPECT_EQ(pango.messages(), std::vector<std::string>{});
}

}  // namespace
}  // namespace quillan::render
