#include <gtest/gtest.h>

#include "LiveHostFixture.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "host/LiveHost.hpp"

namespace quillan::host {
namespace {

using namespace std::chrono_literals;
using namespace quillan::testing;

// A page asking as soon as the host runs sees every widget, loading until its
// first timeline is in, then each with its timeline.
TEST(LiveHostTest, EveryWidgetIsListedFromTheStartAndLoadsItsTimeline) {
  HostFolder folder;
  worker::WidgetWorker timelines(hostWorkerOptions());
  HostClock clock;
  clock.pin(*platform::ISO8601::parse(kHostNow));
  LiveHost host(timelines, hostEnvironment(), {}, clock, {});
  host.start();

  const auto placed = host.widgets();
  const auto bundle = bundle::TimelineWidgetBundle::body();
  ASSERT_EQ(placed.size(), bundle.size());
  for (std::size_t index = 0; index < bundle.size(); ++index) {
    SCOPED_TRACE(bundle[index].kind);
    EXPECT_EQ(placed[index].state.kind, bundle[index].kind);
    EXPECT_EQ(placed[index].family, bundle[index].supportedFamilies.front());
    EXPECT_TRUE(placed[index].state.ok());
  }
  EXPECT_TRUE(eventually(
      [&] {
        const auto widgets = host.widgets();
        return std::none_of(widgets.begin(), widgets.end(), [](const auto& widget) { return widget.state.loading(); });
      },
      60s));
  host.stop();
}

}  // namespace
}  // namespace quillan::host
