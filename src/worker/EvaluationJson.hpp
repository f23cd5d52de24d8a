#pragma once

#include <stdexcept>

#include <nlohmann/json.hpp>

#include "worker/Evaluation.hpp"

namespace quillan::worker {

// The JSON the host and the worker exchange. Dates travel as seconds since the
// reference date, so they arrive bit for bit as they were sent.
//   timeline request: {"type":"timeline","kind","at","request","settings"}
//   view request:     {"type":"view","kind","entryDate","at","environment","settings"}
//   timeline answer:  {"entries":[seconds...],"policy":{"type":"after","date":seconds}}

// A message that does not have the expected form; one line saying what was wrong.
class EvaluationJsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

nlohmann::json toJson(const TimelineEvaluation& evaluation);
nlohmann::json toJson(const ViewEvaluation& evaluation);
nlohmann::json toJson(const ProcessSettings& settings);
nlohmann::json toJson(const widgets::TimelineAnswer& answer);

// Each throws EvaluationJsonError.
TimelineEvaluation timelineEvaluationFromJson(const nlohmann::json& json);
ViewEvaluation viewEvaluationFromJson(const nlohmann::json& json);
ProcessSettings processSettingsFromJson(const nlohmann::json& json);
widgets::TimelineAnswer timelineAnswerFromJson(const nlohmann::json& json);

}  // namespace quillan::worker
