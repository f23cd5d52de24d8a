#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/URL.hpp"

namespace quillan::store {

inline constexpr const char* kSQLiteStoreType = "SQLite";

class SqliteDatabase;
class StoreSnapshot;

// A store loaded into a coordinator: where its file is and of what type.
// Reads open the file afresh each time, unless the store was told to keep its
// connection open.
class PersistentStore {
 public:
  PersistentStore(platform::URL url, std::string type);

  const platform::URL& url() const { return url_; }
  const std::string& type() const { return type_; }
  std::filesystem::path filePath() const { return url_.filePath(); }

  // One consistent read of the store; nullptr while it has no file (the app
  // creates its journal on its first save).
  std::unique_ptr<StoreSnapshot> snapshot() const;

  // From now on reads go through one connection held open, so the store stays
  // readable for this process after its file is removed (an open file outlives
  // its name), as a store loaded on the phone does.
  void keepOpen();
  // Whether reads open the file by its name: a second connection opened by
  // name then reads the same file.
  bool readsByName() const { return !openConnection_; }

 private:
  platform::URL url_;
  std::string type_;
  std::shared_ptr<SqliteDatabase> openConnection_;
};

}  // namespace quillan::store
