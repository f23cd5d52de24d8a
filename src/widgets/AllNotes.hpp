#pragma once

#include <memory>
#include <vector>

#include "store/Note.hpp"

namespace quillan::widgets {

// Every note of the journal, as the widgets query it: a fetch of "Note" with no
// predicate, sort or limit on the shared stack's view context, in the store's
// order. A fetch that fails is an empty list; nothing is reported.
std::vector<std::shared_ptr<store::Note>> fetchAllNotes();

}  // namespace quillan::widgets
