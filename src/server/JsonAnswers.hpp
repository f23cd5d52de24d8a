#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace httplib {
struct Response;
}

namespace quillan::server {

// `json` as one line. The extension's texts may hold bytes that are not
// UTF-8; the answer must stay valid JSON.
std::string jsonText(const nlohmann::json& json);

void answerJson(httplib::Response& response, const nlohmann::json& json, int status = 200);

// Every refusal and failure is answered as {"error": message}.
void answerError(httplib::Response& response, int status, const std::string& message);

}  // namespace quillan::server
