#pragma once

// Every object a context reads from a journal, one line each, as the golden
// files under tests/data/golden hold them: what each attribute decodes to and
// which objects the relationships reach.

#include <algorithm>
#include <cstdio>
#include <string>

#include "StoreTestSupport.hpp"
#include "store/MemoryTag.hpp"
#include "store/NoteImage.hpp"
#include "store/NoteRecording.hpp"
#include "store/TimelineTab.hpp"

namespace quillan::store::testing {

inline std::string shown(const std::optional<platform::Date>& date) {
  if (!date) return "none";
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", date->timeIntervalSinceReferenceDate());
  return text;
}
inline std::string shown(const std::optional<std::string>& text) { return text ? "\"" + *text + "\"" : "none"; }
inline std::string shown(const std::optional<UUID>& uuid) { return uuid ? uuid->uuidString() : "none"; }
inline std::string shown(const std::optional<fixtures::Bytes>& bytes) {
  if (!bytes) return "none";
  std::string text = "[";
  char digits[3];
  for (const auto byte : *bytes) text += (std::snprintf(digits, sizeof digits, "%02X", byte), digits);
  return text + "]";
}

template <typename Object>
std::string keysOf(const std::vector<std::shared_ptr<Object>>& objects) {
  std::string keys;
  for (const auto& object : objects) keys += " " + std::to_string(object->objectID().primaryKey);
  return "[" + (keys.empty() ? keys : keys.substr(1)) + "]";
}

// A relationship's note by key, flagged when it is not the one live object the context handed out.
inline std::string ownerOf(const std::shared_ptr<Note>& owner, const std::vector<std::shared_ptr<Note>>& notes) {
  if (!owner) return "none";
  const bool live = std::find(notes.begin(), notes.end(), owner) != notes.end();
  return std::to_string(owner->objectID().primaryKey) + (live ? "" : " (another object)");
}

inline std::string describeJournal(ManagedObjectContext& context) {
  std::string text;
  const auto notes = fetchNotes(context);
  for (const auto& note : notes) {
    text += "note " + std::to_string(note->objectID().primaryKey) + ": date " + shown(note->date()) + ", info " +
            shown(note->info()) + ", uuid " + shown(note->uuid()) + ", tab " +
            (note->timelineTab() ? std::to_string(note->timelineTab()->objectID().primaryKey) : "none") + ", images " +
            keysOf(note->images()) + ", recordings " + keysOf(note->recordings()) + "\n";
  }
  for (const auto& image : fetchAll<NoteImage>(context)) {
    text += "image " + std::to_string(image->objectID().primaryKey) + ": order " + std::to_string(image->order()) +
            ", owner " + ownerOf(image->owner(), notes) + ", id " + shown(image->id()) + ", data " +
            shown(image->imgData()) + "\n";
  }
  for (const auto& recording : fetchAll<NoteRecording>(context)) {
    text += "recording " + std::to_string(recording->objectID().primaryKey) + ": order " +
            std::to_string(recording->order()) + ", owner " + ownerOf(recording->owner(), notes) + ", id " +
            shown(recording->id()) + ", data " + shown(recording->recordingData()) + "\n";
  }
  for (const auto& tab : fetchAll<TimelineTab>(context)) {
    text += "tab " + std::to_string(tab->objectID().primaryKey) + ": name " + shown(tab->name()) + ", id " +
            shown(tab->id()) + ", notes " + keysOf(tab->notes()) + "\n";
  }
  for (const auto& tag : fetchAll<MemoryTag>(context)) {
    text += "tag " + std::to_string(tag->objectID().primaryKey) + ": date " + shown(tag->date()) + ", viewed " +
            (tag->isViewed() ? "yes" : "no") + "\n";
  }
  return text;
}

}  // namespace quillan::store::testing
