#pragma once

#include <string>

namespace quillan::server {

// An accepted client socket as it passes between the waiter (while its next
// request arrives) and a worker (while that request is answered).
struct Connection {
  int socket = -1;
  std::string client;    // the peer's address
  std::string buffered;  // bytes read from the socket but not yet parsed
  int answered = 0;      // requests answered on it so far
};

// Shuts down and closes the socket (nothing happens for -1).
void closeConnection(Connection& connection);
// Closes after an answer given before the request's body was read: the
// unread bytes are taken and dropped for a moment first, since closing on
// them would reset the connection and the client could lose the answer.
void closeAfterDraining(Connection& connection);

}  // namespace quillan::server
