#include "store/UUID.hpp"

namespace quillan::store {
namespace {

constexpr std::size_t kDashPositions[] = {8, 13, 18, 23};

bool isDashPosition(std::size_t index) {
  for (auto position : kDashPositions) {
    if (position == index) return true;
  }
  return false;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

std::optional<UUID> UUID::fromBytes(std::span<const std::uint8_t> bytes) {
  if (bytes.size() != 16) return std::nullopt;
  Bytes copy{};
  std::copy(bytes.begin(), bytes.end(), copy.begin());
  return UUID(copy);
}

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  Bytes bytes{};
  std::size_t nibble = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isDashPosition(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    const int value = hexDigit(text[i]);
    if (value < 0) return std::nullopt;
    bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] << 4 | value);
    ++nibble;
  }
  return UUID(bytes);
}

std::string UUID::uuidString() const {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back('-');
    text.push_back(kHex[bytes_[i] >> 4]);
    text.push_back(kHex[bytes_[i] & 0xF]);
  }
  return text;
}

}  // namespace quillan::store
