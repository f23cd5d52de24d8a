#pragma once

#include <httplib.h>

#include <chrono>

#include "server/Connection.hpp"

namespace quillan::server {

// One request's reading and answering over a connection: the bytes the waiter
// already read come first, and any read from the socket must end by a
// deadline fixed for the whole request, however slowly its bytes trickle in.
class SocketStream : public httplib::Stream {
 public:
  SocketStream(Connection& connection, std::chrono::steady_clock::time_point readDeadline);

  bool is_readable() const override;
  // False once the peer has closed or reset the connection, so a long
  // response (an event stream) ends as soon as its client goes.
  bool is_writable() const override;
  ssize_t read(char* data, size_t size) override;
  ssize_t write(const char* data, size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return connection_.socket; }

 private:
  bool waitReadable() const;

  Connection& connection_;
  std::chrono::steady_clock::time_point readDeadline_;
};

}  // namespace quillan::server
