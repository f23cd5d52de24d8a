#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>

#include "cli/FontPreparation.hpp"

namespace quillan::cli {
namespace {

using namespace std::chrono_literals;

// A view ready within patience loads no fonts; a slow one is drawn only once
// the fonts are in, a failure to load them is left to the drawing, and
// finishing twice is harmless.
TEST(FontPreparation, OnlyASlowViewWaitsForTheFontsWhetherTheyLoadOrFail) {
  const struct {
    const char* name;
    std::chrono::milliseconds patience;
    bool fails;
    int loads;
  } cases[] = {{"ready in time", 1h, false, 0}, {"slow", 0ms, false, 1}, {"slow, the fonts fail", 0ms, true, 0}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    std::promise<void> started;
    std::atomic<int> loads = 0;
    {
      FontPreparation fonts(row.patience, [&] {
        started.set_value();
        std::this_thread::sleep_for(50ms);
        if (row.fails) throw std::runtime_error("drawing module missing");
        ++loads;
      });
      if (row.patience == 0ms) started.get_future().wait();
      EXPECT_NO_THROW(fonts.finish());
      EXPECT_EQ(loads, row.loads);
      EXPECT_NO_THROW(fonts.finish());
    }
    EXPECT_EQ(loads, row.loads) << "loaded after the view was drawn";
  }
}

}  // namespace
}  // namespace quillan::cli
