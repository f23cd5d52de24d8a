#pragma once

#include <memory>
#include <vector>

#include "store/Note.hpp"
#include "store/NoteDateFilter.hpp"

namespace quillan::widgets {

using Notes = std::vector<std::shared_ptr<store::Note>>;

// Every note of the journal, as the widgets query it: a fetch of "Note" with no
// predicate, sort or limit on the shared stack's view context, in the store's
// order. A fetch that fails is an empty list; nothing is reported.
Notes fetchAllNotes();

// That query filtered in memory by a test on each note's date, which is how the
// widgets choose their notes: exactly fetchAllNotes() with the notes `keep`
// rejects left out. Only the kept notes become objects, so a journal of
// 100,000 notes costs a widget a few objects. `keep` sees every date, absent
// ones included, in the store's order, so a test that stops the process on an
// absent date stops it here too.
Notes fetchNotesWhere(const store::NoteDateTest& keep);

// The same, read near `window` only: the caller vouches that `keep` answers
// false for every date outside it (absent dates are still handed to `keep`).
Notes fetchNotesWhere(store::NoteDateWindow window, const store::NoteDateTest& keep);

// The same, with the dates `ranges` rule out passed over without asking
// `keep`: the caller vouches that it answers false to them, with no other effect.
Notes fetchNotesWhere(const store::KeepRanges& ranges, const store::NoteDateTest& keep);

}  // namespace quillan::widgets
