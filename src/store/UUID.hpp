#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillan::store {

// A 128-bit UUID as the store keeps it: 16 raw bytes in RFC 4122 order.
class UUID {
 public:
  using Bytes = std::array<std::uint8_t, 16>;

  explicit UUID(const Bytes& bytes) : bytes_(bytes) {}
  // Empty unless exactly 16 bytes are given.
  static std::optional<UUID> fromBytes(std::span<const std::uint8_t> bytes);
  // Parses the 8-4-4-4-12 hex form, either case.
  static std::optional<UUID> parse(std::string_view text);

  const Bytes& bytes() const { return bytes_; }
  // Uppercase 8-4-4-4-12.
  std::string uuidString() const;

  auto operator<=>(const UUID&) const = default;

 private:
  Bytes bytes_;
};

}  // namespace quillan::store
