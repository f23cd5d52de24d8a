#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/WidgetHost.hpp"
#include "pages/Filmstrip.hpp"
#include "replay/EntryPainter.hpp"
#include "replay/NoteEvents.hpp"
#include "replay/PipelinedTimelines.hpp"
#include "replay/PrivateJournal.hpp"
#include "replay/SimulationLog.hpp"

namespace quillan::replay {

// What to replay: the span of virtual time, the widgets placed at its start
// (in this order), and the notes the user writes on the way.
struct SimulationPlan {
  platform::Date from;
  platform::Date to;
  std::vector<std::string> kinds;
  std::vector<NoteEvent> notes;
};

// Lives through a span of time as the phone's host would, on the same
// host::WidgetHost a live server drives and the extension's timelines from the
// workers: every event goes to the log, every entry shown is drawn. A note is
// saved into the private journal at its moment, and the app then reloads all
// timelines, as the app does after saving.
class Simulation {
 public:
  // `journal` receives the plan's notes; it may be null for a plan without any.
  Simulation(PipelinedTimelines& timelines, EntryPainter& painter, PrivateJournal* journal, platform::TimeZone zone);

  void run(const SimulationPlan& plan);

  const SimulationLog& log() const { return log_; }
  // One row per widget in placement order, one frame per entry shown.
  std::vector<pages::FilmstripRow> filmstrip() const;

 private:
  void handleHeardEvents();
  static std::vector<EntryPainter::ShownEntry> entriesShown(const std::vector<host::SchedulerEvent>& events);
  void draw(const host::SchedulerEvent& event, platform::Date entryDate, nlohmann::ordered_json& logged);
  void writeNotesAt(host::WidgetHost& widgetHost, const std::vector<NoteEvent>& notes, std::size_t& next);

  PipelinedTimelines& timelines_;
  EntryPainter& painter_;
  PrivateJournal* journal_;
  SimulationLog log_;
  std::vector<host::SchedulerEvent> heard_;
  std::vector<std::string> kinds_;
  std::map<std::string, std::vector<pages::FilmstripFrame>, std::less<>> frames_;
};

}  // namespace quillan::replay
