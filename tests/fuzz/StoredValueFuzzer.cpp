// Column values as SQLite hands them out of a journal synced from anywhere:
// every storage class with any content, through the attribute decoders, the
// external-storage tag of binary values, and the calendar arithmetic the
// widgets then do with a note's date.
//
// Input: one byte choosing the storage class, then its content (8 bytes for an
// INTEGER or REAL, the rest for TEXT or BLOB).

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "FuzzCheck.hpp"
#include "platform/Calendar.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "store/ExternalStorage.hpp"
#include "store/StoredValue.hpp"
#include "support/TemporaryFolder.hpp"

namespace {

using namespace quillan;
namespace fs = std::filesystem;

// A store beside its external-data folder, holding one external file; removed at exit.
const fs::path& storePath() {
  static const quillan::testing::TemporaryFolder folder("quillan-fuzz-store");
  static const fs::path store = [] {
    const auto path = folder / "Quillan.sqlite";
    const auto external = store::externalDataDirectory(path);
    fs::create_directories(external);
    std::ofstream(external / "0C2F1B9A-3D7E-4F10-9A55-6B1E2D3C4F50") << "image bytes";
    return path;
  }();
  return store;
}

template <typename T>
T scalarFrom(const std::uint8_t* data, std::size_t size) {
  T value{};
  std::memcpy(&value, data, std::min(size, sizeof value));
  return value;
}

store::StoredValue storedValue(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return std::monostate{};
  const auto* content = data + 1;
  const auto length = size - 1;
  switch (data[0] % 5) {
    case 0: return std::monostate{};
    case 1: return scalarFrom<std::int64_t>(content, length);
    case 2: return scalarFrom<double>(content, length);
    case 3: return std::string(reinterpret_cast<const char*>(content), length);
    default: return std::vector<std::uint8_t>(content, content + length);
  }
}

void useDate(platform::Date date) {
  static const platform::Calendar calendar(*platform::Locale::named("en_US"),
                                           *platform::TimeZone::named("Europe/Berlin"));
  (void)calendar.component(platform::CalendarComponent::year, date);
  (void)calendar.component(platform::CalendarComponent::day, date);
  (void)calendar.isDate(date, date.addingTimeInterval(3600), platform::CalendarComponent::day);
  (void)calendar.startOfDay(date);
  (void)calendar.dateByAdding(platform::CalendarComponent::year, -1, date);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto value = storedValue(data, size);
  if (const auto date = store::decodeDate(value)) useDate(*date);
  (void)store::decodeString(value);
  (void)store::decodeUUID(value);
  (void)store::decodeForeignKey(value);
  (void)store::decodeInteger(value);
  (void)store::decodeBool(value);
  if (const auto* blob = std::get_if<std::vector<std::uint8_t>>(&value)) {
    const auto bytes = store::decodeExternalStorageValue(*blob, storePath());
    // Inline data is the bytes after the tag; untagged data is the bytes themselves.
    if (!blob->empty() && blob->front() == 0x01) FUZZ_CHECK(bytes && bytes->size() + 1 == blob->size());
    if (blob->empty() || blob->front() > 0x02) FUZZ_CHECK(bytes == *blob);
  }
  (void)store::takeString(value);
  return 0;
}
