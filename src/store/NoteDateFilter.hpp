#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/Date.hpp"
#include "store/KeepRanges.hpp"
#include "store/ManagedObjectContext.hpp"
#include "store/Note.hpp"
#include "store/Result.hpp"

namespace quillan::store {

// A test on a note's date alone, as the widgets filter their one query. It may
// stop the process on an absent date.
using NoteDateTest = std::function<bool(const std::optional<platform::Date>&)>;

// The span of dates outside which a test is known to answer false.
struct NoteDateWindow {
  platform::Date lower;  // inclusive
  platform::Date upper;  // exclusive

  // Every instant on the calendar day of `moment`, in any calendar and zone.
  // Two instants of one local day are less than 24 hours of wall time apart,
  // and a zone's offset moves by at most 26 hours (-12:00 to +14:00), so they
  // lie within 50 hours of each other; 51 either side leaves room.
  static NoteDateWindow aroundDayOf(platform::Date moment);
};

// Exactly what fetching every note (no predicate, sort or limit) and keeping
// those for which keep(note->date()) holds gives: the same live objects in the
// store's order. Only kept notes become objects, text and all, so a test that
// keeps a few notes costs a few objects however large the journal.
// `keep` sees every note's date in store order, absent ones included, so a
// test that stops the process on an absent date stops here as it would there.
Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context, const NoteDateTest& keep);

// The same, read only near `window`: notes dated outside it are passed over in
// the store without asking `keep`, which the caller vouches answers false
// there. Notes whose date is NULL, or stored as anything but a number, are
// still handed to `keep` wherever they are (decoded as a full fetch decodes
// them), so the process stops at an absent date as the literal filter would.
Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context, NoteDateWindow window,
                                                               const NoteDateTest& keep);

// The same, with dates `ranges` rule out (in seconds since the reference
// date, as stored) passed over in the store without asking `keep`, which the
// caller vouches answers false to them, with no other effect. Every other
// note's date is handed to `keep` as the first form hands it.
Result<std::vector<std::shared_ptr<Note>>> fetchNotesWhereDate(ManagedObjectContext& context, const KeepRanges& ranges,
                                                               const NoteDateTest& keep);

}  // namespace quillan::store
