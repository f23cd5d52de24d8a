#pragma once

#include <map>
#include <string>

namespace quillan::platform {

// A platform error as the extension sees one: a domain, a code, a localised
// description and a user-info dictionary (values already rendered as text).
struct Error {
  std::string domain;
  long code = 0;
  std::string localizedDescription;
  std::map<std::string, std::string> userInfo;

  // `Error Domain=<domain> Code=<code> "<localized description>" UserInfo={k=v, ...}`
  std::string description() const;
  // `["k": v, ...]`, or `[:]` when empty.
  std::string userInfoDescription() const;
};

}  // namespace quillan::platform
