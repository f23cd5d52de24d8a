#include "worker/JournalWriteNotice.hpp"

#include <cstdint>
#include <string>

namespace quillan::worker {
namespace {

using Json = nlohmann::json;

std::optional<store::DateColumnRead::Row> rowOf(const Json& json) {
  if (!json.is_array() || json.size() != 2 || !json[0].is_number_integer() || !json[1].is_number()) {
    return std::nullopt;
  }
  return store::DateColumnRead::Row{json[0].get<std::int64_t>(), json[1].get<double>(),
                                    store::DateColumnRead::Storage::number};
}

}  // namespace

Json toJson(const JournalWriteNotice& notice) {
  Json rows = Json::array();
  for (const auto& row : notice.rowsAdded) rows.push_back({row.primaryKey, row.value});
  return {{"type", "journalWrite"},
          {"stage", notice.stage == JournalWriteNotice::Stage::begins ? "begins" : "ended"},
          {"journal", notice.journal.string()},
          {"rows", rows}};
}

std::optional<JournalWriteNotice> journalWriteNoticeFromJson(const Json& json) {
  if (!json.is_object() || json.value("type", "") != "journalWrite" || !json.contains("journal") ||
      !json["journal"].is_string() || !json.contains("rows") || !json["rows"].is_array()) {
    return std::nullopt;
  }
  const auto stage = json.value("stage", "");
  if (stage != "begins" && stage != "ended") return std::nullopt;
  JournalWriteNotice notice{stage == "begins" ? JournalWriteNotice::Stage::begins : JournalWriteNotice::Stage::ended,
                            json["journal"].get<std::string>(),
                            {}};
  for (const auto& entry : json["rows"]) {
    const auto row = rowOf(entry);
    if (!row) return std::nullopt;
    notice.rowsAdded.push_back(*row);
  }
  return notice;
}

}  // namespace quillan::worker
