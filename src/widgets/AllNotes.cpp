#include "widgets/AllNotes.hpp"

#include "store/CoreDataStack.hpp"

namespace quillan::widgets {

std::vector<std::shared_ptr<store::Note>> fetchAllNotes() {
  auto& container = store::CoreDataStack::shared().persistentContainer();
  auto result = container.viewContext()->fetch(store::Note::fetchRequest());
  if (!result) return {};
  return std::move(result.value());
}

}  // namespace quillan::widgets
