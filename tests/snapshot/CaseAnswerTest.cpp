#include <gtest/gtest.h>

#include <functional>

#include "hosting/UsageError.hpp"
#include "snapshot/CaseAnswer.hpp"

namespace quillan::snapshot {
namespace {

TEST(CaseAnswerTest, ResultsComeBackWholeAndErrorsAsTheKindTheyWere) {
  SnapshotPicture picture{R"({"type":"Text"})", {0x89, 'P', 0, 'N', 'G', 0}};
  const auto drawn = decodePicture(resultOf(answerOf([&] { return encodePicture(picture); })));
  EXPECT_EQ(drawn.viewJson, picture.viewJson);
  EXPECT_EQ(drawn.png, picture.png);

  render::PixelImage difference(3, 2, {1, 2, 3, 4});
  difference.at(2, 1) = {250, 0, 9, 255};
  for (const auto& verdict : {SnapshotVerdict{"Tea_light", "", std::nullopt, std::nullopt},
                              SnapshotVerdict{"Tea_dark", "view tree differs", difference, std::nullopt}}) {
    // Every field the answer carries, as a second encoding shows it.
    EXPECT_EQ(encodeVerdict(decodeVerdict(resultOf(answerOf([&] { return encodeVerdict(verdict); })))),
              encodeVerdict(verdict));
  }

  // Errors come back as the kind they were: a usage error stays one, another error is no usage error.
  const auto thrown = [](const std::function<std::string()>& work) {
    try {
      resultOf(answerOf(work));
    } catch (const hosting::UsageError& error) {
      return std::string("usage error: ") + error.what();
    } catch (const std::runtime_error& error) {
      return std::string("error: ") + error.what();
    }
    return std::string("no error");
  };
  EXPECT_EQ(thrown([]() -> std::string { throw hosting::UsageError("--config: bad"); }), "usage error: --config: bad");
  EXPECT_EQ(thrown([]() -> std::string { throw std::runtime_error("no module"); }), "error: no module");
}

}  // namespace
}  // namespace quillan::snapshot
