#pragma once

// Text compared with a file under tests/data/golden. QUILLAN_UPDATE_GOLDEN=1
// rewrites the file instead (review the diff!).

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace quillan::testing {

inline std::string goldenPath(const std::string& name) {
  return std::string(QUILLAN_TEST_DATA_DIR) + "/golden/" + name;
}

inline std::string readGolden(const std::string& name) {
  std::ifstream in(goldenPath(name), std::ios::binary);
  std::stringstream content;
  content << in.rdbuf();
  return content.str();
}

inline void expectGoldenText(const std::string& actual, const std::string& name) {
  if (std::getenv("QUILLAN_UPDATE_GOLDEN") != nullptr) std::ofstream(goldenPath(name), std::ios::binary) << actual;
  EXPECT_EQ(actual, readGolden(name)) << "differs from " << goldenPath(name);
}

// `actual` compared with the JSON file `name`, as parsed JSON (key order and
// layout do not count).
inline void expectGoldenJson(const nlohmann::json& actual, const std::string& name) {
  if (std::getenv("QUILLAN_UPDATE_GOLDEN") != nullptr) std::ofstream(goldenPath(name)) << actual.dump(2) << "\n";
  const auto golden = nlohmann::json::parse(readGolden(name), nullptr, false);
  ASSERT_FALSE(golden.is_discarded()) << "cannot read " << goldenPath(name);
  EXPECT_EQ(actual, golden) << actual.dump(2).substr(0, 4000);
}

// A table kept as a golden file of lines "question => answer": each question
// is put to `answer`, and the file must hold what it says. Blank lines and
// lines starting "// " are kept as they are.
inline void expectGoldenAnswers(const std::string& name, const std::function<std::string(const std::string&)>& answer) {
  std::istringstream in(readGolden(name));
  std::string actual;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line.rfind("// ", 0) == 0) {
      actual += line + "\n";
      continue;
    }
    const auto question = line.substr(0, line.find(" => "));
    actual += question + " => " + answer(question) + "\n";
  }
  EXPECT_FALSE(actual.empty()) << "no questions in " << goldenPath(name);
  expectGoldenText(actual, name);
}

// The words of a question, split at spaces.
inline std::vector<std::string> words(const std::string& question) {
  std::istringstream in(question);
  std::vector<std::string> split;
  for (std::string word; in >> word;) split.push_back(word);
  return split;
}

// Each step of "STEP | STEP ...", as its words, in turn.
inline void forEachStep(const std::string& steps, const std::function<void(const std::vector<std::string>&)>& take) {
  for (std::size_t start = 0; start < steps.size();) {
    const auto end = std::min(steps.find(" | ", start), steps.size());
    take(words(steps.substr(start, end - start)));
    start = end + 3;
  }
}

}  // namespace quillan::testing
