#include "host/SchedulerEvent.hpp"

namespace quillan::host {
namespace {

struct TypeOfDetail {
  EventType operator()(const TimelineReceived&) const { return EventType::timeline; }
  EventType operator()(const EntryShown&) const { return EventType::entry; }
  EventType operator()(const ReloadStarted&) const { return EventType::reload; }
  EventType operator()(const AskFailed&) const { return EventType::failed; }
};

}  // namespace

EventType SchedulerEvent::type() const { return std::visit(TypeOfDetail{}, detail); }

std::string_view eventTypeName(EventType type) {
  switch (type) {
    case EventType::timeline: return "timeline";
    case EventType::entry: return "entry";
    case EventType::reload: return "reload";
    case EventType::failed: return "failed";
  }
  return "unknown";
}

}  // namespace quillan::host
