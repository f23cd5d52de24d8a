#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#include "LiveHostFixture.hpp"
#include "bundle/TimelineWidgetBundle.hpp"
#include "fixtures/JournalWriter.hpp"
#include "host/WidgetPictures.hpp"
#include "support/FileContents.hpp"

namespace quillan::host {
namespace {

using namespace std::chrono_literals;
using namespace quillan::testing;

PlacedWidgetView shownWidget(const std::string& kind, platform::Date entry) {
  WidgetState state;
  state.kind = kind;
  state.entry = entry;
  state.entryDates = {entry};
  state.version = 1;
  return {state, bundle::TimelineWidgetBundle::widget(kind)->supportedFamilies.front()};
}

// The journal cannot be read while a picture is built, then can again: the
// failed view is built again once its retry is due, never before, and heals.
TEST(WidgetPicturesTest, AFailedViewIsRetriedAndHealsOnceTheJournalReadsAgain) {
  const struct {
    const char* name;
    std::function<void(const std::filesystem::path&)> breakJournal;
  } cases[] = {
      {"overwritten", [](const auto& journal) { std::ofstream(journal, std::ios::trunc) << "not a journal"; }},
      {"replaced by a folder",
       [](const auto& journal) {
         std::filesystem::remove(journal);
         std::filesystem::create_directory(journal);
       }},
  };
  HostFolder folder;
  const auto environment = hostEnvironment();
  std::vector<std::unique_ptr<worker::WidgetWorker>> workers;
  workers.push_back(std::make_unique<worker::WidgetWorker>(hostWorkerOptions()));
  WidgetPictures pictures(std::move(workers), {.minimumReloadInterval = 1, .maxRetryDelay = 2});
  {
    fixtures::JournalWriter writer(folder.journal());
    writer.addNote({.date = platform::ISO8601::parse("2025-11-22T10:00:00+01:00"), .info = std::string("a year ago")});
  }
  const auto journal = readText(folder.journal());
  const auto now = *platform::ISO8601::parse(kHostNow);
  auto widget = shownWidget("OnThisDayWidget", now);

  for (const auto& broken : cases) {
    SCOPED_TRACE(broken.name);
    ++widget.state.version;
    broken.breakJournal(folder.journal());
    const auto failed = pictures.view(widget, environment, now);
    ASSERT_TRUE(std::holds_alternative<std::string>(failed));
    EXPECT_EQ(pictures.knownFailure(widget, environment), std::get<std::string>(failed));
    EXPECT_FALSE(pictures.retryIfDue(widget, environment, now));

    std::filesystem::remove_all(folder.journal());
    std::ofstream(folder.journal(), std::ios::binary) << journal;
    EXPECT_TRUE(eventually([&] { return pictures.retryIfDue(widget, environment, now); }, 20s));
    EXPECT_EQ(pictures.knownFailure(widget, environment), std::nullopt);
    EXPECT_TRUE(std::holds_alternative<std::shared_ptr<const EntryView>>(pictures.view(widget, environment, now)));
    EXPECT_FALSE(pictures.retryIfDue(widget, environment, now));
  }
}

}  // namespace
}  // namespace quillan::host
