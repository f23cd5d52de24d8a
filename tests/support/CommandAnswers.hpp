#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/GoldenQuestion.hpp"
#include "support/RunCommand.hpp"

namespace quillan::testing {

// Placeholders a golden question may write, each with the path it stands for.
using Placeholders = std::vector<std::pair<std::string, std::string>>;

inline std::string replacedAll(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// The command's words as `question` writes them: split at spaces, each
// unescaped (see unescaped()), "''" an empty word, placeholders filled in.
inline std::vector<std::string> commandWords(const std::string& question, const Placeholders& placeholders) {
  std::vector<std::string> arguments;
  for (const auto& word : words(question)) {
    auto argument = word == "''" ? "" : unescaped(word);
    for (const auto& [name, path] : placeholders) argument = replacedAll(argument, name, path);
    arguments.push_back(argument);
  }
  return arguments;
}

// What the command says to the words of `question`: "exit N[ with output]:
// <standard error>", or with `printed` "exit N: <standard output>[ / stderr:
// <standard error>]", every path written back as its placeholder. Standard
// error is one line when it ends with the only line break. `environment` is
// runCommand()'s.
inline std::string commandAnswer(const std::string& question, const Placeholders& placeholders, bool printed = false,
                                 const std::vector<std::string>& environment = {}) {
  auto result = runCommand(commandWords(question, placeholders), environment);
  if (result.err.ends_with('\n')) result.err.pop_back();
  else if (!result.err.empty()) result.err += " [NO LINE END]";
  for (const auto& [name, path] : placeholders) {
    result.err = replacedAll(result.err, path, name);
    result.out = replacedAll(result.out, path, name);
  }
  const auto exit = "exit " + std::to_string(result.exitStatus);
  if (printed)
    return exit + ": " + escaped(result.out) + (result.err.empty() ? "" : " / stderr: " + escaped(result.err));
  return exit + (result.out.empty() ? ": " : " with output: ") + escaped(result.err);
}

}  // namespace quillan::testing
