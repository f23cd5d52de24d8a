#include "hosting/UsageError.hpp"

#include "hosting/QuotedValue.hpp"

namespace quillan::hosting {

std::string badValue(std::string_view problem, std::string_view value, std::string_view hint) {
  std::string text = std::string(problem) + ": " + quotedValue(value);
  if (!hint.empty()) text += " (" + std::string(hint) + ")";
  return text;
}

UsageError badOption(std::string_view option, std::string_view problem, std::string_view value, std::string_view hint) {
  return UsageError(std::string(option) + ": " + badValue(problem, value, hint));
}

}  // namespace quillan::hosting
