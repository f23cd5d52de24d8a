#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "store/DateColumnRead.hpp"
#include "store/FetchRequest.hpp"
#include "store/KeepRanges.hpp"
#include "store/StoredValue.hpp"

namespace quillan::store {

// The outcome of a judged scan: the kept primary keys in the scan's order,
// and how many rows a second scan for the kept rows would go through, as far
// as it is known (the rows the test was asked about when SQLite judged them).
struct JudgedKeys {
  std::vector<std::int64_t> kept;
  std::size_t scanned = 0;
};

// What the judged scan of `request` by `keep` on the date `attribute` keeps,
// worked out from `dates` instead of the table: rows in primary-key order,
// those outside an undated-or-in-range window passed over as SQLite's
// comparisons pass them over, and numbers `ranges` vouch `keep` turns down
// passed over as the SQL row test passes them. Nullopt for a request it cannot answer alike
// (a sort, a limit, any other predicate); the caller scans the table then.
// The caller vouches that `dates` is current for the snapshot it reads.
std::optional<JudgedKeys> judgeKnownDates(const DateColumnRead& dates, const FetchSpecification& request,
                                          std::string_view attribute,
                                          const std::function<bool(const StoredValue&)>& keep,
                                          const KeepRanges* ranges = nullptr);

}  // namespace quillan::store
