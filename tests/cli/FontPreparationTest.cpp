#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>

#include "cli/FontPreparation.hpp"

namespace quillan::cli {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

TEST(FontPreparation, AViewReadyWithinPatienceLoadsNoFonts) {
  std::atomic<int> loads = 0;
  {
    FontPreparation fonts(hours(1), [&] { ++loads; });
    fonts.finish();
  }
  EXPECT_EQ(loads, 0);
}

// A slow view is drawn only once the fonts are in; a failure to load them is
// left to the drawing, and finishing twice is harmless.
TEST(FontPreparation, ASlowViewWaitsForTheFontsWhetherTheyLoadOrFail) {
  for (const bool fails : {false, true}) {
    std::promise<void> started;
    std::atomic<bool> loaded = false;
    FontPreparation fonts(milliseconds(0), [&] {
      started.set_value();
      std::this_thread::sleep_for(milliseconds(50));
      if (fails) throw std::runtime_error("drawing module missing");
      loaded = true;
    });
    started.get_future().wait();
    EXPECT_NO_THROW(fonts.finish());
    EXPECT_EQ(loaded, !fails);
    EXPECT_NO_THROW(fonts.finish());
  }
}

}  // namespace
}  // namespace quillan::cli
