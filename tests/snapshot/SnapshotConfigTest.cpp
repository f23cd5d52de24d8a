#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "hosting/UsageError.hpp"
#include "snapshot/SnapshotCase.hpp"
#include "snapshot/SnapshotConfig.hpp"
#include "support/CommandAnswers.hpp"
#include "support/TemporaryFolder.hpp"

namespace quillan::snapshot {
namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

// A suite's folder with a journal in it and a config to read.
class SnapshotConfigFile : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(journal());
    std::ofstream(journal() / "Quillan.sqlite") << "";
  }

  fs::path journal() const { return folder_.path() / "journal"; }
  fs::path path() const { return folder_.path() / "snapshots.json"; }

  void write(const std::string& text) const { std::ofstream(path(), std::ios::trunc) << text; }

  // A valid config with the value at `pointer` replaced.
  std::string with(const std::string& pointer, const Json& value) const {
    auto json = Json::parse(R"({"journal": "journal", "now": "2026-11-22T09:00:00+01:00",
        "timeZone": "Europe/Berlin", "seed": 1, "matrix": {"kinds": ["StreakWidget"], "colorSchemes": ["light"],
        "renderingModes": ["fullColor"], "platformVersions": ["17.0"], "devices": ["393x852"],
        "locales": ["en_US"]}})");
    json[Json::json_pointer(pointer)] = value;
    return json.dump();
  }

 private:
  testing::TemporaryFolder folder_;
};

// "POINTER = JSON" (that value in a valid config) or "TEXT" (the whole file) =>
// the one line refusing it, the suite's folder written SUITE.
TEST_F(SnapshotConfigFile, EveryBadValueOrCaseIsOneLineNamingWhereInTheFileItIs) {
  testing::expectGoldenAnswers("snapshot_config_refusals.txt", [this](const std::string& question) {
    const auto equals = question.find(" = ");
    write(equals == std::string::npos ? question
                                      : with(question.substr(0, equals), Json::parse(question.substr(equals + 3))));
    try {
      snapshotCases(readSnapshotConfig(path()));
      return std::string("accepted");
    } catch (const hosting::UsageError& error) {
      return testing::escaped(testing::replacedAll(error.what(), path().parent_path().string(), "SUITE"));
    }
  });
  fs::remove(path());
  EXPECT_THROW(readSnapshotConfig(path()), hosting::UsageError);
}

TEST_F(SnapshotConfigFile, WhatTheFirstRecordWritesReadsBackAsTheSameConfig) {
  for (const auto& seed : {std::optional<std::uint64_t>(), std::optional<std::uint64_t>(18446744073709551615u)}) {
    const auto written = defaultSnapshotConfig(journal(), seed);
    write(snapshotConfigText(written, path()));
    EXPECT_EQ(Json::parse(std::ifstream(path()))["journal"], "journal");  // inside the suite: kept relative
    const auto read = readSnapshotConfig(path());
    EXPECT_EQ(fs::weakly_canonical(read.journal), fs::weakly_canonical(written.journal));
    EXPECT_EQ(read.seed, seed.value_or(written.seed));
    // Every other field, as the file writes it.
    EXPECT_EQ(snapshotConfigText(read, path()), snapshotConfigText(written, path()));
    const auto cases = snapshotCases(read);
    ASSERT_EQ(cases.size(), read.kinds.size() * read.colorSchemes.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
      EXPECT_EQ(cases[i].kind, read.kinds[i / read.colorSchemes.size()]);  // kinds vary slowest
      EXPECT_EQ(cases[i].colorScheme, read.colorSchemes[i % read.colorSchemes.size()]);
      EXPECT_EQ(cases[i].name.rfind(cases[i].kind + "_" + cases[i].colorScheme + "_", 0), 0u) << cases[i].name;
    }
  }
}

}  // namespace
}  // namespace quillan::snapshot
