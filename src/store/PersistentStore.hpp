#pragma once

#include <filesystem>
#include <string>

#include "platform/URL.hpp"

namespace quillan::store {

inline constexpr const char* kSQLiteStoreType = "SQLite";

// A store loaded into a coordinator: where its file is and of what type.
class PersistentStore {
 public:
  PersistentStore(platform::URL url, std::string type) : url_(std::move(url)), type_(std::move(type)) {}

  const platform::URL& url() const { return url_; }
  const std::string& type() const { return type_; }
  std::filesystem::path filePath() const { return url_.filePath(); }

 private:
  platform::URL url_;
  std::string type_;
};

}  // namespace quillan::store
