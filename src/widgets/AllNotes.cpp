#include "widgets/AllNotes.hpp"

#include "store/CoreDataStack.hpp"

namespace quillan::widgets {
namespace {

store::ManagedObjectContext& viewContext() {
  return *store::CoreDataStack::shared().persistentContainer().viewContext();
}

Notes valueOrEmpty(store::Result<Notes> result) {
  if (!result) return {};
  return std::move(result.value());
}

}  // namespace

Notes fetchAllNotes() { return valueOrEmpty(viewContext().fetch(store::Note::fetchRequest())); }

Notes fetchNotesWhere(const store::NoteDateTest& keep) {
  return valueOrEmpty(store::fetchNotesWhereDate(viewContext(), keep));
}

Notes fetchNotesWhere(store::NoteDateWindow window, const store::NoteDateTest& keep) {
  return valueOrEmpty(store::fetchNotesWhereDate(viewContext(), window, keep));
}

Notes fetchNotesWhere(const store::KeepRanges& ranges, const store::NoteDateTest& keep) {
  return valueOrEmpty(store::fetchNotesWhereDate(viewContext(), ranges, keep));
}

}  // namespace quillan::widgets
