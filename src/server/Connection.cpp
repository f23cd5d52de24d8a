#include "server/Connection.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quillan::server {

void closeConnection(Connection& connection) {
  if (connection.socket < 0) return;
  shutdown(connection.socket, SHUT_RDWR);
  close(connection.socket);
  connection.socket = -1;
}

void closeAfterDraining(Connection& connection) {
  constexpr int kDrainMilliseconds = 500;
  constexpr int kDrainChunks = 64;  // 256 KiB at most
  if (connection.socket < 0) return;
  shutdown(connection.socket, SHUT_WR);
  char chunk[4096];
  for (int chunks = 0; chunks < kDrainChunks; ++chunks) {
    pollfd watched{connection.socket, POLLIN, 0};
    if (poll(&watched, 1, kDrainMilliseconds) <= 0) break;
    if (recv(connection.socket, chunk, sizeof chunk, MSG_DONTWAIT) <= 0) break;
  }
  closeConnection(connection);
}

}  // namespace quillan::server
