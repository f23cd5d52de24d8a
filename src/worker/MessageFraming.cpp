#include "worker/MessageFraming.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <string>

namespace quillan::worker {
namespace {

bool writeAll(int fd, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = send(fd, data, size, MSG_NOSIGNAL);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

int millisecondsLeft(std::optional<Deadline> deadline) {
  if (!deadline) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
  return left.count() < 0 ? 0 : static_cast<int>(left.count());
}

std::optional<ReadFailure> readAll(int fd, char* data, std::size_t size, std::optional<Deadline> deadline) {
  while (size > 0) {
    pollfd waiting{fd, POLLIN, 0};
    const int ready = poll(&waiting, 1, millisecondsLeft(deadline));
    if (ready < 0 && errno == EINTR) continue;
    if (ready == 0) return ReadFailure::timedOut;
    if (ready < 0) return ReadFailure::closed;
    const ssize_t got = read(fd, data, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return ReadFailure::closed;
    data += got;
    size -= static_cast<std::size_t>(got);
  }
  return std::nullopt;
}

}  // namespace

bool writeMessage(int fd, const nlohmann::json& message) {
  const std::string text = message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  if (text.size() > kMaxMessageBytes) return false;
  const auto size = static_cast<std::uint32_t>(text.size());
  const std::array<char, 4> header{static_cast<char>(size >> 24), static_cast<char>(size >> 16),
                                   static_cast<char>(size >> 8), static_cast<char>(size)};
  return writeAll(fd, header.data(), header.size()) && writeAll(fd, text.data(), text.size());
}

std::variant<nlohmann::json, ReadFailure> readMessage(int fd, std::optional<Deadline> deadline) {
  std::array<unsigned char, 4> header{};
  if (auto failure = readAll(fd, reinterpret_cast<char*>(header.data()), header.size(), deadline)) return *failure;
  const std::size_t size = (std::size_t{header[0]} << 24) | (std::size_t{header[1]} << 16) |
                           (std::size_t{header[2]} << 8) | std::size_t{header[3]};
  if (size > kMaxMessageBytes) return ReadFailure::malformed;
  std::string text(size, '\0');
  if (auto failure = readAll(fd, text.data(), size, deadline)) return *failure;
  auto message = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (message.is_discarded()) return ReadFailure::malformed;
  return message;
}

}  // namespace quillan::worker
