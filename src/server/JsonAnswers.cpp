#include "server/JsonAnswers.hpp"

#include <httplib.h>

namespace quillan::server {

std::string jsonText(const nlohmann::json& json) {
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void answerJson(httplib::Response& response, const nlohmann::json& json, int status) {
  response.status = status;
  response.set_content(jsonText(json), "application/json");
}

void answerError(httplib::Response& response, int status, const std::string& message) {
  answerJson(response, {{"error", message}}, status);
}

}  // namespace quillan::server
