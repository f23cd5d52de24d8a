#include "cli/OptionChecks.hpp"

#include <unistd.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>

#include "views/Environment.hpp"

namespace quillan::cli {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t digitsFrom(std::string_view text, std::size_t position) {
  while (position < text.size() && isDigit(text[position])) ++position;
  return position;
}

// [+-]? (digits [. digits?] | . digits)
bool isDecimalNumber(std::string_view text) {
  std::size_t position = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
  const auto integerEnd = digitsFrom(text, position);
  const bool integerDigits = integerEnd > position;
  position = integerEnd;
  bool fractionDigits = false;
  if (position < text.size() && text[position] == '.') {
    const auto fractionEnd = digitsFrom(text, position + 1);
    fractionDigits = fractionEnd > position + 1;
    position = fractionEnd;
  }
  return position == text.size() && (integerDigits || fractionDigits);
}

// The value of a text isDecimalNumber accepted; infinite when it does not fit a double.
double decimalValue(std::string_view text) {
  const bool negative = text.front() == '-';
  if (text.front() == '+' || text.front() == '-') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
  if (error == std::errc::result_out_of_range) {
    // from_chars leaves `value` unset on overflow; only a huge magnitude gets here
    // (an underflow is a tiny one, which reads as zero).
    const bool huge = text.find_first_not_of("0.") < text.find('.');
    value = huge ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return negative ? -value : value;
}

std::string canonical(double value) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

std::string rangeHint(double min, double max) { return "expected " + canonical(min) + " to " + canonical(max); }

// Checks `value` and rewrites it canonically; an error message, or empty.
std::string checkDecimal(std::string& value, double min, double max, const std::string& hint) {
  if (!isDecimalNumber(value)) return hosting::badValue("not a decimal number", value, hint);
  const double number = decimalValue(value);
  if (!std::isfinite(number) || number < min || number > max) return hosting::badValue("out of range", value, hint);
  value = canonical(number);
  return {};
}

}  // namespace

CLI::Validator decimalNumber() {
  constexpr double kLargest = std::numeric_limits<double>::max();
  return CLI::Validator([](std::string& value) { return checkDecimal(value, -kLargest, kLargest, ""); }, "",
                        "decimal number");
}

CLI::Validator decimalNumberFrom(double min, double max) {
  return CLI::Validator([min, max](std::string& value) { return checkDecimal(value, min, max, rangeHint(min, max)); },
                        "", "decimal number in range");
}

CLI::Validator wholeNumber() {
  return CLI::Validator(
      [](std::string& value) -> std::string {
        const std::string hint = "expected 0 to " + std::to_string(std::numeric_limits<std::uint64_t>::max());
        std::uint64_t number = 0;
        const bool digitsOnly = !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
        if (!digitsOnly) return hosting::badValue("not a whole decimal number", value, hint);
        const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
        if (error != std::errc()) return hosting::badValue("out of range", value, hint);
        value = std::to_string(number);
        return {};
      },
      "", "whole number");
}

CLI::Validator platformVersion() {
  return CLI::Validator(
      [](std::string& value) -> std::string {
        const std::string hint = "expected MAJOR, MAJOR.MINOR or MAJOR.MINOR.PATCH, e.g. 17.0.1";
        // Phones report a patch level too; widgets only ever tell versions apart
        // by major and minor.
        std::string majorMinor = value;
        if (const auto first = value.find('.'); first != std::string::npos) {
          if (const auto second = value.find('.', first + 1); second != std::string::npos) {
            const auto patch = std::string_view(value).substr(second + 1);
            if (patch.empty() || patch.size() > 4 || patch.find_first_not_of("0123456789") != std::string_view::npos) {
              return hosting::badValue("not a version", value, hint);
            }
            majorMinor = value.substr(0, second);
          }
        }
        try {
          views::parsePlatformVersion(majorMinor);
        } catch (const views::EnvironmentParseError&) {
          return hosting::badValue("not a version", value, hint);
        }
        value = majorMinor;
        return {};
      },
      "", "platform version");
}

CLI::Validator outputFilePath() {
  return CLI::Validator(
      [](std::string& value) -> std::string {
        namespace fs = std::filesystem;
        if (value.empty()) return hosting::badValue("no file name", value);
        const fs::path path(value);
        std::error_code error;
        if (fs::is_directory(path, error)) return hosting::badValue("a folder, not a file", value);
        const auto folder = path.parent_path().empty() ? fs::path(".") : path.parent_path();
        if (!fs::is_directory(folder, error)) return hosting::badValue("no such folder", folder.string());
        if (::access(folder.c_str(), W_OK) != 0) return hosting::badValue("cannot write into folder", folder.string());
        return {};
      },
      "", "output file");
}

}  // namespace quillan::cli
