#include "platform/Error.hpp"

namespace quillan::platform {

std::string Error::description() const {
  std::string text = "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" + localizedDescription + "\"";
  if (!userInfo.empty()) {
    text += " UserInfo={";
    bool first = true;
    for (const auto& [key, value] : userInfo) {
      if (!first) text += ", ";
      first = false;
      text += key + "=" + value;
    }
    text += "}";
  }
  return text;
}

std::string Error::userInfoDescription() const {
  if (userInfo.empty()) return "[:]";
  std::string text = "[";
  bool first = true;
  for (const auto& [key, value] : userInfo) {
    if (!first) text += ", ";
    first = false;
    text += "\"" + key + "\": " + value;
  }
  return text + "]";
}

}  // namespace quillan::platform
