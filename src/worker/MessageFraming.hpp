#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <variant>

#include <nlohmann/json.hpp>

namespace quillan::worker {

// Messages between the host and its worker processes over a stream socket: a
// 4-byte big-endian length, then that many bytes of JSON text.
inline constexpr std::size_t kMaxMessageBytes = 16 * 1024 * 1024;

enum class ReadFailure { closed, timedOut, malformed };

using Deadline = std::chrono::steady_clock::time_point;

// False when the peer is gone or the message is larger than kMaxMessageBytes.
// Text that is not UTF-8 (a note's bytes in a log line) is sent with
// replacement characters rather than refused.
bool writeMessage(int fd, const nlohmann::json& message);

// One whole message, or why there is none. Without a deadline it waits as
// long as the peer keeps the socket open.
std::variant<nlohmann::json, ReadFailure> readMessage(int fd, std::optional<Deadline> deadline = std::nullopt);

}  // namespace quillan::worker
