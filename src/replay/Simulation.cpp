#include "replay/Simulation.hpp"

#include <algorithm>

#include "hosting/WidgetLookup.hpp"

namespace quillan::replay {

Simulation::Simulation(PipelinedTimelines& timelines, EntryPainter& painter, PrivateJournal* journal,
                       platform::TimeZone zone)
    : timelines_(timelines), painter_(painter), journal_(journal), log_(std::move(zone)) {}

void Simulation::run(const SimulationPlan& plan) {
  if (!plan.notes.empty() && !journal_) throw std::logic_error("notes to write need a private journal");
  kinds_ = plan.kinds;
  // The listener only takes note: drawing asks the worker, which the scheduler's
  // own calls must not wait on.
  host::WidgetHost widgetHost(plan.from, timelines_.source(),
                              [this](const host::SchedulerEvent& event) { heard_.push_back(event); });
  for (const auto& kind : plan.kinds) {
    widgetHost.place(kind);
    handleHeardEvents();
  }
  for (std::size_t next = 0; next < plan.notes.size();) writeNotesAt(widgetHost, plan.notes, next);
  widgetHost.advanceTo(plan.to);
  handleHeardEvents();
}

// Everything due before the notes' moment is shown and drawn on the journal as
// it was; then the notes of that moment are saved together and the app reloads.
void Simulation::writeNotesAt(host::WidgetHost& widgetHost, const std::vector<NoteEvent>& notes, std::size_t& next) {
  const auto at = notes[next].at;
  widgetHost.advanceTo(at);
  handleHeardEvents();
  // Only this replay writes the copy: what it wrote is all that changes.
  worker::JournalWriteNotice notice{worker::JournalWriteNotice::Stage::begins, journal_->file(), {}};
  painter_.hear(notice);
  for (; next < notes.size() && notes[next].at == at; ++next) {
    const auto key = journal_->addNote(notes[next].noteDate, notes[next].text, at);
    notice.rowsAdded.push_back({key, notes[next].noteDate.timeIntervalSinceReferenceDate(),
                                store::DateColumnRead::Storage::number});
  }
  notice.stage = worker::JournalWriteNotice::Stage::ended;
  painter_.hear(notice);
  // The app's write reloads every widget, in the order they were placed.
  timelines_.expect(kinds_, at);
  widgetHost.appWroteJournal();
  handleHeardEvents();
}

// On the private journal nothing but this replay writes, and it writes only
// between two batches of events: the views of a batch's entries all read the
// journal as it is now, and are evaluated ahead.
void Simulation::handleHeardEvents() {
  auto events = std::move(heard_);
  heard_.clear();
  if (journal_) painter_.expect(entriesShown(events));
  for (const auto& event : events) {
    auto& logged = log_.add(event);
    if (const auto* entry = std::get_if<host::EntryShown>(&event.detail)) draw(event, entry->entryDate, logged);
  }
  painter_.forgetExpected();
}

std::vector<EntryPainter::ShownEntry> Simulation::entriesShown(const std::vector<host::SchedulerEvent>& events) {
  std::vector<EntryPainter::ShownEntry> entries;
  for (const auto& event : events) {
    if (const auto* entry = std::get_if<host::EntryShown>(&event.detail)) {
      entries.push_back({event.kind, entry->entryDate, event.at});
    }
  }
  return entries;
}

void Simulation::draw(const host::SchedulerEvent& event, platform::Date entryDate, nlohmann::ordered_json& logged) {
  auto& frames = frames_[event.kind];
  auto label = log_.iso(event.at);
  std::replace(label.begin(), label.end(), 'T', ' ');
  auto outcome = painter_.paint(event.kind, entryDate, event.at, static_cast<int>(frames.size()) + 1);
  if (auto* pictures = std::get_if<pages::EntryPictures>(&outcome)) {
    SimulationLog::attach(logged, *pictures);
    frames.push_back({label, std::move(*pictures), {}});
    return;
  }
  const auto& reason = std::get<EntryFailure>(outcome).reason;
  log_.addFailure(event.at, event.kind, reason);
  frames.push_back({label, std::nullopt, reason});
}

std::vector<pages::FilmstripRow> Simulation::filmstrip() const {
  std::vector<pages::FilmstripRow> rows;
  for (const auto& kind : kinds_) {
    const auto found = frames_.find(kind);
    rows.push_back({kind, hosting::widgetOfKind(kind).displayName,
                    found == frames_.end() ? std::vector<pages::FilmstripFrame>{} : found->second});
  }
  return rows;
}

}  // namespace quillan::replay
