#include "store/ManagedObjectContext.hpp"

#include "store/ColumnValue.hpp"
#include "store/DateColumnRead.hpp"
#include "store/ExternalStorage.hpp"
#include "store/FetchQuery.hpp"
#include "store/JournalFileState.hpp"
#include "store/KnownDatesScan.hpp"
#include "store/SqliteBatchDeleteExecutor.hpp"
#include "store/SqliteRowTest.hpp"
#include "store/StoreErrors.hpp"
#include "store/StoreSnapshot.hpp"
#include "store/UpperHalfScan.hpp"

namespace quillan::store {
namespace {

constexpr const char* kTypeMismatchSource = "OnThisDayWidgetExtension/ManagedObjectContext";

// A lookup by primary key costs about as much as scanning this many rows.
constexpr std::size_t kLookupsPerScan = 16;
// Below this many rows a second connection and thread cost about what
// halving the scan saves.
constexpr std::int64_t kRowsWorthTwoCores = 200000;

const EntityTable* requireTable(const StoreModel& model, const EntityDescription& entity,
                                const std::filesystem::path& path) {
  const auto* table = model.entity(entity.name);
  if (!table) throw InvalidFetchRequest("entity " + entity.name + " is not in the store " + path.string());
  for (const auto& attribute : entity.attributes) {
    if (attribute.requiredInStore && !table->hasColumn(StoreModel::storeName(attribute.name))) {
      throw InvalidFetchRequest("column " + StoreModel::storeName(attribute.name) + " is missing from " +
                                table->tableName);
    }
  }
  return table;
}

std::size_t attributeIndex(const EntityDescription& entity, std::string_view attribute) {
  for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
    if (entity.attributes[i].name == attribute) return i;
  }
  throw InvalidFetchRequest("keypath " + std::string(attribute) + " not found in entity " + entity.name);
}

// Rows of `scan` whose judged column `test` keeps, and how many it was asked about.
JudgedKeys keptKeys(SqliteStatement& scan, const SqliteRowTest& test) {
  JudgedKeys keys;
  try {
    while (scan.step()) keys.kept.push_back(scan.integer(0));
  } catch (const SqliteException&) {
    test.rethrowFailure();
    throw;
  }
  keys.scanned = test.calls();
  return keys;
}

std::optional<std::int64_t> largestPrimaryKey(SqliteDatabase& database, const EntityTable& table) {
  auto statement = database.prepare("SELECT max(Z_PK) FROM " + table.tableName);
  if (!statement.step() || statement.isNull(0)) return std::nullopt;
  return statement.integer(0);
}

// A judged scan of every row by a date, in two halves on two cores: the lower
// judged here, the upper read by an UpperHalfScan, whose rows `keep` is then
// asked about in their order. `keep` sees what one scan would have shown it,
// in the same order, provided both connections read one state of the
// journal: the file state `before` the snapshot began, read again once the
// second read has begun, proves it. Nullopt when it cannot be proved or the
// table is too small to gain; the caller scans it whole.
std::optional<JudgedKeys> judgeInHalves(StoreSnapshot& snapshot, const std::filesystem::path& path,
                                        const EntityTable& table, const std::string& column,
                                        const ManagedObjectContext::ValueFilter& keep, const KeepRanges& ranges,
                                        const JournalFileState& before) {
  const auto largest = largestPrimaryKey(snapshot.database(), table);
  if (!largest || *largest < kRowsWorthTwoCores) return std::nullopt;
  const std::int64_t middle = *largest / 2;
  UpperHalfScan upper(path, table.tableName, column, middle, ranges);
  if (!upper.begun() || journalFileState(path) != before) return std::nullopt;
  SqliteRowTest test(
      snapshot.database(), "quillan_keeps_row",
      [&](const SqliteArgument& value) { return keep(storedValue(value, AttributeKind::date)); }, &ranges);
  auto scan = snapshot.database().prepare("SELECT Z_PK FROM " + table.tableName + " WHERE Z_PK <= ?1 AND " +
                                          test.name() + "(" + column + ") ORDER BY Z_PK");
  scan.bind(1, middle);
  auto keys = keptKeys(scan, test);
  for (const auto& row : upper.rows()) {
    if (keep(row.date)) keys.kept.push_back(row.primaryKey);
  }
  // As one scan would have: the rows before a failure were asked about.
  upper.rethrowFailure();
  keys.scanned += upper.scanned();
  return keys;
}

// The judged scan: the one column judged inside SQLite, which returns the
// kept keys alone. When the process was handed a read of that date column
// proved current for this journal, the dates are judged from it instead.
// `before`, the journal's file state before the snapshot began, lets a large
// journal's scan by a date with ranges run in halves.
JudgedKeys judgeKeys(StoreSnapshot& snapshot, const std::filesystem::path& path, const FetchSpecification& request,
                     const EntityDescription& entity, const EntityTable& table, std::size_t judged,
                     const ManagedObjectContext::ValueFilter& keep, const KeepRanges* ranges,
                     const std::optional<JournalFileState>& before) {
  const auto& attribute = entity.attributes[judged];
  const auto& known = knownDateColumn();
  if (attribute.kind == AttributeKind::date && known &&
      known->isCurrentFor(path, table.tableName, StoreModel::storeName(attribute.name))) {
    if (auto keys = judgeKnownDates(*known, request, attribute.name, keep, ranges)) return std::move(*keys);
  }
  const bool wholeTable = !request.predicate && request.sortDescriptors.empty() && !request.fetchLimit;
  const auto column = StoreModel::storeName(attribute.name);
  if (ranges && before && wholeTable && attribute.kind == AttributeKind::date && table.hasColumn(column)) {
    if (auto keys = judgeInHalves(snapshot, path, table, column, keep, *ranges, *before)) return std::move(*keys);
  }
  SqliteRowTest test(
      snapshot.database(), "quillan_keeps_row",
      [&](const SqliteArgument& value) { return keep(storedValue(value, attribute.kind)); }, ranges);
  const FetchQuery query(request, entity, table, judged, test.name());
  auto scan = snapshot.database().prepare(query.sql());
  query.bind(scan);
  return keptKeys(scan, test);
}

}  // namespace

ManagedObjectContext::ManagedObjectContext(std::shared_ptr<PersistentStoreCoordinator> coordinator)
    : coordinator_(std::move(coordinator)), executor_(std::make_shared<SqliteBatchDeleteExecutor>()) {}

std::optional<platform::Error> ManagedObjectContext::readObjects(const FetchSpecification& request,
                                                                 const EntityDescription& entity,
                                                                 const RowFilter* filter, const ObjectSink& sink) {
  if (coordinator_->persistentStores().empty()) {
    return StoreErrors::invalidRequest("This coordinator has no persistent stores.");
  }
  // Objects of the last fetch that nobody holds any more leave the map before
  // this one makes new objects, so two journals' worth never live at once.
  forgetExpired(entity.name);
  const auto& store = *coordinator_->persistentStores().front();
  const auto path = store.filePath();
  try {
    // A store file that is not there yet reads as an empty journal; the app
    // creates it on its first save. The extension never creates the app's file.
    // A scan that may run in halves proves by this that both read one state.
    const bool mayHalve = filter && filter->ranges && store.readsByName();
    const auto before = mayHalve ? journalFileState(path) : std::nullopt;
    auto snapshot = store.snapshot();
    if (!snapshot) return std::nullopt;
    const auto* table = requireTable(snapshot->model(), entity, path);
    auto& registry = registered_[entity.name];
    std::vector<StoredValue> values(entity.attributes.size());
    const auto readRow = [&](const SqliteStatement& row) {
      for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
        values[i] = storedValue(SqliteColumn{row, static_cast<int>(i) + 1}, entity.attributes[i].kind);
      }
      sink(materialize(entity, registry, row.integer(0), values));
    };
    if (!filter) {
      const FetchQuery query(request, entity, *table);
      auto statement = snapshot->database().prepare(query.sql());
      query.bind(statement);
      while (statement.step()) readRow(statement);
    } else {
      const auto judged = attributeIndex(entity, filter->attribute);
      const auto keys = judgeKeys(*snapshot, path, request, entity, *table, judged, filter->keep, filter->ranges,
                                  before);
      const auto& kept = keys.kept;
      if (kept.size() * kLookupsPerScan <= keys.scanned) {
        auto row = snapshot->database().prepare(FetchQuery::rowSql(entity, *table));
        for (const auto primaryKey : kept) {
          row.reset();
          row.bind(1, primaryKey);
          if (row.step()) readRow(row);
        }
      } else {
        // Most rows kept: one more scan of every column is cheaper than a lookup each.
        const FetchQuery whole(request, entity, *table);
        auto statement = snapshot->database().prepare(whole.sql());
        whole.bind(statement);
        auto next = kept.begin();
        while (next != kept.end() && statement.step()) {
          if (statement.integer(0) == *next) {
            readRow(statement);
            ++next;
          }
        }
      }
    }
    snapshot->finish();
    return std::nullopt;
  } catch (const SqliteException& failure) {
    return StoreErrors::fileError(path, failure);
  } catch (const InvalidFetchRequest& failure) {
    return StoreErrors::invalidRequest(failure.what());
  }
}

std::shared_ptr<ManagedObject> ManagedObjectContext::materialize(const EntityDescription& entity, Registry& registry,
                                                                 std::int64_t primaryKey,
                                                                 std::vector<StoredValue>& values) {
  auto& slot = registry[primaryKey];
  auto object = slot.lock();
  if (!object) {
    // Not make_shared: the identity map's weak reference must not pin the object's memory.
    object.reset(entity.instantiate(ObjectID{entity.name, primaryKey}, weak_from_this()));
    slot = object;
  }
  object->refresh(values);
  return object;
}

void ManagedObjectContext::forgetExpired(const std::string& entityName) {
  auto found = registered_.find(entityName);
  if (found == registered_.end()) return;
  std::erase_if(found->second, [](const auto& entry) { return entry.second.expired(); });
}

void ManagedObjectContext::forget(const ObjectID& id) {
  auto found = registered_.find(id.entityName);
  if (found == registered_.end()) return;
  auto object = found->second.find(id.primaryKey);
  if (object == found->second.end()) return;
  if (auto live = object->second.lock()) live->deleted_ = true;
  found->second.erase(object);
}

std::shared_ptr<ManagedObject> ManagedObjectContext::registeredObject(const ObjectID& id) const {
  const auto found = registered_.find(id.entityName);
  if (found == registered_.end()) return nullptr;
  const auto object = found->second.find(id.primaryKey);
  return object == found->second.end() ? nullptr : object->second.lock();
}

std::optional<std::vector<std::uint8_t>> ManagedObjectContext::binaryValue(const ObjectID& id,
                                                                           std::string_view attribute) const {
  if (coordinator_->persistentStores().empty()) return std::nullopt;
  const auto& store = *coordinator_->persistentStores().front();
  try {
    auto snapshot = store.snapshot();
    if (!snapshot) return std::nullopt;
    const auto* table = snapshot->model().entity(id.entityName);
    const auto column = StoreModel::storeName(attribute);
    if (!table || !table->hasColumn(column)) return std::nullopt;
    auto statement = snapshot->database().prepare("SELECT " + column + " FROM " + table->tableName + " WHERE Z_PK = ?");
    statement.bind(1, id.primaryKey);
    if (!statement.step() || statement.isNull(0)) return std::nullopt;
    const auto stored = statement.blob(0);
    snapshot->finish();
    return decodeExternalStorageValue(stored, store.filePath());
  } catch (const SqliteException&) {
    return std::nullopt;
  }
}

Result<PersistentStoreResult> ManagedObjectContext::execute(const BatchDeleteRequest& request) {
  if (coordinator_->persistentStores().empty()) {
    return StoreErrors::invalidRequest("This coordinator has no persistent stores.");
  }
  return executor_->execute(request, *coordinator_->persistentStores().front());
}

void ManagedObjectContext::setRequestExecutor(std::shared_ptr<PersistentStoreRequestExecutor> executor) {
  executor_ = std::move(executor);
}

void ManagedObjectContext::mergeChanges(const ChangeDictionary& changes,
                                        const std::vector<std::shared_ptr<ManagedObjectContext>>& contexts) {
  const auto deleted = changes.find(kDeletedObjectsKey);
  if (deleted == changes.end()) return;
  for (const auto& context : contexts) {
    for (const auto& id : deleted->second) context->forget(id);
  }
}

void ManagedObjectContext::typeMismatch(const std::string& fetched, const std::string& expected) {
  platform::fatalError(kTypeMismatchSource, "Could not cast value of type '" + fetched + "' to '" + expected + "'.");
}

}  // namespace quillan::store
