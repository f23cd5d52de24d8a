#include "store/NoteDateFilter.hpp"

namespace quillan::store {
namespace {

constexpr double kDayReachSeconds = 51 * 3600.0;

ManagedObjectContext::ValueFilter byDate(const NoteDateTest& keep) {
  return [&keep](const StoredValue& value) { return keep(decodeDate(value)); };
}

}  // namespace

NoteDateWindow NoteDateWindow::aroundDayOf(platform::Date moment) {
  const auto seconds = moment.timeIntervalSinceReferenceDate();
  return {platform::Date::fromReferenceSeconds(seconds - kDayReachSeconds),
          platform::Date::fromReferenceSeconds(seconds + kDayReachSeconds)};
}

Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context,
                                                               const NoteDateTest& keep) {
  return context.fetch(Note::fetchRequest(), "date", byDate(keep));
}

Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context, NoteDateWindow window,
                                                               const NoteDateTest& keep) {
  auto request = Note::fetchRequest();
  request.predicate = Predicate::dateRangeOrUndated("date", window.lower, window.upper);
  return context.fetch(request, "date", byDate(keep));
}

Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context, const KeepRanges& ranges,
                                                               const NoteDateTest& keep) {
  return context.fetch(Note::fetchRequest(), "date", byDate(keep), &ranges);
}

}  // namespace quillan::store
