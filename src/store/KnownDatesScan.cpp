#include "store/KnownDatesScan.hpp"

namespace quillan::store {
namespace {

struct Window {
  double lower;
  double upper;
};

// Nothing to pass over (nullopt inside), a window, or nullopt outside for a
// predicate the read cannot apply.
std::optional<std::optional<Window>> windowOf(const FetchSpecification& request, std::string_view attribute) {
  if (!request.predicate) return std::optional<Window>{};
  const auto& predicate = *request.predicate;
  if (predicate.kind() != Predicate::Kind::dateRangeOrUndated || predicate.attribute() != attribute) {
    return std::nullopt;
  }
  const auto* lower = std::get_if<platform::Date>(&predicate.value());
  const auto* upper = std::get_if<platform::Date>(&predicate.upperValue());
  if (!lower || !upper) return std::nullopt;
  return std::optional<Window>{
      Window{lower->timeIntervalSinceReferenceDate(), upper->timeIntervalSinceReferenceDate()}};
}

// As the scan's SQL passes rows over: NULL and stored text or blobs always
// reach the test, numbers only inside the window.
bool reachesTest(const DateColumnRead::Row& row, const std::optional<Window>& window) {
  if (!window || row.storage != DateColumnRead::Storage::number) return true;
  return !(row.value < window->lower || row.value >= window->upper);
}

}  // namespace

std::optional<JudgedKeys> judgeKnownDates(const DateColumnRead& dates, const FetchSpecification& request,
                                          std::string_view attribute,
                                          const std::function<bool(const StoredValue&)>& keep,
                                          const KeepRanges* ranges) {
  if (!request.sortDescriptors.empty() || (request.fetchLimit && *request.fetchLimit > 0)) return std::nullopt;
  const auto window = windowOf(request, attribute);
  if (!window) return std::nullopt;
  // A window narrows the test, not the table: reading the kept rows again
  // by a scan would go through every row.
  JudgedKeys keys{{}, dates.rows().size()};
  std::size_t rangeHint = 0;
  for (const auto& row : dates.rows()) {
    if (!reachesTest(row, *window)) continue;
    if (ranges && row.storage == DateColumnRead::Storage::number && !ranges->mayKeep(row.value, rangeHint)) continue;
    const auto value = row.storage == DateColumnRead::Storage::null ? StoredValue{} : StoredValue{row.value};
    if (keep(value)) keys.kept.push_back(row.primaryKey);
  }
  return keys;
}

}  // namespace quillan::store
