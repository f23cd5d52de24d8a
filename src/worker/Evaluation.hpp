#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/Date.hpp"
#include "views/Environment.hpp"
#include "widgets/TimelineAnswer.hpp"

namespace quillan::worker {

// The extension process's settings for one evaluation. An unset value keeps
// what the host process had when the worker started.
struct ProcessSettings {
  std::optional<std::string> timeZone;  // IANA identifier
  std::optional<std::string> locale;    // ICU identifier
  // Unset: the system's random source, never a seed left from an earlier evaluation.
  std::optional<std::uint64_t> seed;
  std::optional<std::filesystem::path> groupContainer;
  std::optional<std::filesystem::path> appSupport;
};

// Asks the provider of `kind` for a timeline, snapshot or placeholder with
// the extension's clock pinned to `at`.
struct TimelineEvaluation {
  std::string kind;
  platform::Date at;
  widgets::TimelineRequest request = widgets::TimelineRequest::timeline;
  ProcessSettings settings;
};

// Builds the view of the entry dated `entryDate` with the clock pinned to `at`.
struct ViewEvaluation {
  std::string kind;
  platform::Date entryDate;
  platform::Date at;
  views::Environment environment;
  ProcessSettings settings;
};

// An evaluation that gave no answer, in one line: the fatal report, the
// signal, the deadline or the memory ceiling.
struct EvaluationFailure {
  std::string reason;
};

// What one evaluation cost its process: wall time from fork to reaping, and
// the peak resident memory (which starts at the warm worker's).
struct EvaluationCost {
  double seconds = 0;
  std::int64_t peakKilobytes = 0;
};

template <typename Value>
struct Evaluation {
  std::variant<Value, EvaluationFailure> outcome;
  // The extension's log lines (e.g. "Couldn't parse: ..."), then the worker's
  // own notes such as a restart; never the reason of a failure.
  std::vector<std::string> log;
  EvaluationCost cost;

  const Value* value() const { return std::get_if<Value>(&outcome); }
  const EvaluationFailure* failure() const { return std::get_if<EvaluationFailure>(&outcome); }
};

}  // namespace quillan::worker
