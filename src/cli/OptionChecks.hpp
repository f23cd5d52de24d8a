#pragma once

#include <string>

#include <CLI/CLI.hpp>

#include "hosting/UsageError.hpp"
#include "views/EnumNames.hpp"

namespace quillan::cli {

// Checks on the form of a value, run as the command line is parsed. CLI11
// reports a failed one as `<option>: <message>` (exit status 2); every message
// is a badValue().
//
// Numbers are decimal only: an optional sign, digits and an optional fraction.
// Hexadecimal, exponents, "inf", "nan" and the empty string are refused. The
// number checks are meant for ->transform(), not ->check(): a passing value is
// written back in canonical form, so CLI11's own conversion (which reads "010"
// as octal and wraps "-1" round to 2^64 - 1) only ever sees plain decimals.

// A finite decimal number.
CLI::Validator decimalNumber();
// A decimal number from `min` to `max`, both included.
CLI::Validator decimalNumberFrom(double min, double max);
// A whole decimal number from 0 to 2^64 - 1.
CLI::Validator wholeNumber();
// The phone's OS version, MAJOR[.MINOR[.PATCH]], rewritten as MAJOR[.MINOR]
// (meant for ->transform()).
CLI::Validator platformVersion();
// One of the names of the view model's enum E; `what` names its kind ("color scheme").
template <views::NamedEnum E>
CLI::Validator enumName(std::string what);
// A file to create or replace: its folder exists and is writable, and it is not a folder itself.
CLI::Validator outputFilePath();

template <views::NamedEnum E>
CLI::Validator enumName(std::string what) {
  return CLI::Validator(
      [what](std::string& value) -> std::string {
        if (views::fromString<E>(value)) return {};
        return hosting::badValue("unknown " + what, value, "expected " + views::acceptedNames<E>());
      },
      "", what);
}

}  // namespace quillan::cli
