#include "replay/NoteEvents.hpp"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "hosting/BoundedFile.hpp"
#include "hosting/JsonFile.hpp"
#include "hosting/UsageError.hpp"
#include "platform/ISO8601.hpp"

namespace quillan::replay {
namespace {

using Json = nlohmann::json;

hosting::UsageError badEvent(std::size_t index, const std::string& problem, const std::string& value = {}) {
  return hosting::badOption("--events", "event " + std::to_string(index) + ": " + problem, value);
}

void requireOnlyKeys(const Json& object, std::initializer_list<const char*> keys, std::size_t index,
                     const std::string& where) {
  if (!object.is_object()) throw badEvent(index, where + " is not an object", object.dump());
  for (const auto& item : object.items()) {
    const std::string& key = item.key();
    if (std::find_if(keys.begin(), keys.end(), [&](const char* known) { return key == known; }) == keys.end()) {
      throw badEvent(index, "unknown key in " + where, key);
    }
  }
  for (const char* key : keys) {
    if (!object.contains(key)) throw badEvent(index, where + " has no \"" + key + "\"", object.dump());
  }
}

platform::Date dateOf(const Json& value, std::size_t index, const std::string& key) {
  if (!value.is_string()) throw badEvent(index, key + " is not a string", value.dump());
  const auto text = value.get<std::string>();
  const auto date = platform::ISO8601::parse(text);
  if (!date) throw badEvent(index, key + " is not an ISO-8601 date with offset", text);
  return *date;
}

NoteEvent eventFrom(const Json& json, std::size_t index, platform::Date from, platform::Date to) {
  requireOnlyKeys(json, {"at", "note"}, index, "the event");
  const auto& note = json["note"];
  requireOnlyKeys(note, {"date", "text"}, index, "the note");
  NoteEvent event{dateOf(json["at"], index, "at"), dateOf(note["date"], index, "note.date"), {}};
  if (event.at < from || event.at > to) {
    throw badEvent(index, "at lies outside --from to --to", json["at"].get<std::string>());
  }
  if (!note["text"].is_string()) throw badEvent(index, "note.text is not a string", note["text"].dump());
  event.text = note["text"].get<std::string>();
  if (event.text.size() > kMaxNoteTextBytes) {
    throw badEvent(index, "note.text is longer than " + hosting::byteCountName(kMaxNoteTextBytes),
                   event.text.substr(0, 40));
  }
  return event;
}

}  // namespace

std::vector<NoteEvent> readNoteEvents(const std::filesystem::path& path, platform::Date from, platform::Date to) {
  const auto json = hosting::readJsonFile<Json>(path, kNoteEventsFileLimit, "--events");
  if (!json.is_array()) throw hosting::badOption("--events", "not a JSON array of events", path.string());
  if (json.size() > kMaxNoteEvents) {
    throw hosting::badOption("--events", "more than " + std::to_string(kMaxNoteEvents) + " events", path.string());
  }
  std::vector<NoteEvent> events;
  for (std::size_t index = 0; index < json.size(); ++index) events.push_back(eventFrom(json[index], index, from, to));
  std::stable_sort(events.begin(), events.end(), [](const auto& a, const auto& b) { return a.at < b.at; });
  return events;
}

}  // namespace quillan::replay
