#include "store/DateColumnRead.hpp"

#include <cmath>
#include <cstring>

#include "store/StoreModel.hpp"
#include "store/StoreSnapshot.hpp"

namespace quillan::store {
namespace {

// Whole numbers beyond this lose digits as doubles, and SQLite compares them
// with a double bound exactly: the in-memory test could then disagree.
constexpr double kExactWholeNumbers = 9007199254740992.0;  // 2^53

std::shared_ptr<const DateColumnRead>& installed() {
  static std::shared_ptr<const DateColumnRead> read;
  return read;
}

template <typename Value>
void put(std::string& bytes, const Value& value) {
  bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void putText(std::string& bytes, std::string_view text) {
  put(bytes, static_cast<std::uint64_t>(text.size()));
  bytes += text;
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  template <typename Value>
  bool get(Value& value) {
    if (bytes_.size() < sizeof value) return false;
    std::memcpy(&value, bytes_.data(), sizeof value);
    bytes_.remove_prefix(sizeof value);
    return true;
  }

  bool getText(std::string& text) {
    std::uint64_t size = 0;
    if (!get(size) || bytes_.size() < size) return false;
    text.assign(bytes_.substr(0, size));
    bytes_.remove_prefix(size);
    return true;
  }

  bool done() const { return bytes_.empty(); }

 private:
  std::string_view bytes_;
};

}  // namespace

std::optional<DateColumnRead> DateColumnRead::read(const std::filesystem::path& journal, std::string_view entity,
                                                   std::string_view attribute) {
  const auto before = journalFileState(journal);
  if (!before) return std::nullopt;
  DateColumnRead read;
  read.journal_ = journal;
  read.state_ = *before;
  read.column_ = StoreModel::storeName(attribute);
  {
    auto snapshot = StoreSnapshot::open(journal);
    const auto* table = snapshot->model().entity(entity);
    if (!table || !table->hasColumn(read.column_)) return std::nullopt;
    read.table_ = table->tableName;
    auto scan = snapshot->database().prepare("SELECT Z_PK, " + read.column_ + " FROM " + read.table_ +
                                             " ORDER BY Z_PK");
    while (scan.step()) {
      // The storage class is read before the value: reading converts it.
      const auto storage = scan.isNull(1) ? Storage::null : scan.isNumber(1) ? Storage::number : Storage::other;
      const bool whole = scan.isInteger(1);
      const double value = scan.real(1);
      if (whole && std::fabs(value) > kExactWholeNumbers) return std::nullopt;
      read.rows_.push_back({scan.integer(0), value, storage});
    }
    snapshot->finish();
  }
  // A commit between the two readings could have landed before the snapshot
  // began, and the rows would belong to neither state.
  if (journalFileState(journal) != before) return std::nullopt;
  return read;
}

std::optional<DateColumnRead> DateColumnRead::withRowsAdded(const std::vector<Row>& added,
                                                            JournalFileState state) const {
  DateColumnRead grown = *this;
  grown.state_ = std::move(state);
  for (const auto& row : added) {
    if (!grown.rows_.empty() && row.primaryKey <= grown.rows_.back().primaryKey) return std::nullopt;
    const bool whole = row.storage == Storage::number && std::trunc(row.value) == row.value;
    if (!std::isfinite(row.value) || (whole && std::fabs(row.value) > kExactWholeNumbers)) return std::nullopt;
    grown.rows_.push_back(row);
  }
  return grown;
}

bool DateColumnRead::isCurrentFor(const std::filesystem::path& journal, std::string_view table,
                                  std::string_view column) const {
  if (journal.lexically_normal() != journal_.lexically_normal() || table != table_ || column != column_) return false;
  const auto now = journalFileState(journal);
  return now && *now == state_;
}

std::string DateColumnRead::encode() const {
  std::string bytes;
  putText(bytes, journal_.string());
  putText(bytes, table_);
  putText(bytes, column_);
  putText(bytes, state_.bytes);
  put(bytes, static_cast<std::uint64_t>(rows_.size()));
  for (const auto& row : rows_) {
    put(bytes, row.primaryKey);
    put(bytes, row.value);
    put(bytes, row.storage);
  }
  return bytes;
}

std::optional<DateColumnRead> DateColumnRead::decode(std::string_view bytes) {
  Reader reader(bytes);
  DateColumnRead read;
  std::string journal;
  std::uint64_t count = 0;
  if (!reader.getText(journal) || !reader.getText(read.table_) || !reader.getText(read.column_) ||
      !reader.getText(read.state_.bytes) || !reader.get(count)) {
    return std::nullopt;
  }
  read.journal_ = journal;
  for (std::uint64_t i = 0; i < count; ++i) {
    Row row{};
    if (!reader.get(row.primaryKey) || !reader.get(row.value) || !reader.get(row.storage)) return std::nullopt;
    if (row.storage > Storage::other) return std::nullopt;
    read.rows_.push_back(row);
  }
  if (!reader.done()) return std::nullopt;
  return read;
}

void useKnownDateColumn(std::shared_ptr<const DateColumnRead> read) { installed() = std::move(read); }

const std::shared_ptr<const DateColumnRead>& knownDateColumn() { return installed(); }

}  // namespace quillan::store
