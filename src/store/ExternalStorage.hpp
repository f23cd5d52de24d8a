#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace quillan::store {

// Binary attributes that allow external storage carry a tag byte: 0x01 and the
// bytes inline, or 0x02 and the UUID of a file in the store's external-data
// folder. Values without a tag are the raw bytes. A missing external file is
// "no data", as after a partial copy or restore.
std::optional<std::vector<std::uint8_t>> decodeExternalStorageValue(const std::vector<std::uint8_t>& stored,
                                                                    const std::filesystem::path& storePath);

// <store dir>/.<store name without extension>_SUPPORT/_EXTERNAL_DATA
std::filesystem::path externalDataDirectory(const std::filesystem::path& storePath);

}  // namespace quillan::store
