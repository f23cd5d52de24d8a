#include <gtest/gtest.h>

#include "compose/DeepLinks.hpp"
#include "support/GoldenFile.hpp"
#include "support/ProcessEnvironment.hpp"

namespace quillan::compose {
namespace {

using testing::ProcessEnvironment;

TEST(DeepLinks, RecordDateIsTheLocalDayZeroPaddedInTheCurrentCalendar) {
  quillan::testing::expectGoldenAnswers("record_date_links.txt", [](const std::string& question) {
    const auto args = quillan::testing::words(question);
    ProcessEnvironment environment(args[2], args[0], args[1]);
    return recordDateURL(platform::Clock::now()).absoluteString();
  });
}

}  // namespace
}  // namespace quillan::compose
