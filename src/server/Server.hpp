#pragma once

#include <memory>
#include <thread>

#include "host/JournalWatcher.hpp"
#include "host/LiveHost.hpp"
#include "host/ViewHealer.hpp"
#include "host/WidgetPictures.hpp"
#include "server/EventHub.hpp"
#include "server/ServerOptions.hpp"

namespace quillan::server {

class HttpTransport;
class RouteHandlers;
class ServedHosts;

// `serve`: the live host and its page over HTTP (routes in the README).
//
// Construct it before the process starts any thread: the constructor starts
// the extension's worker processes, which must be forked from a
// single-threaded process. start() then binds and starts the host, the
// journal watcher and the HTTP threads.
class Server {
 public:
  explicit Server(ServerOptions options);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // Binds options.bind:options.port and serves in the background; returns
  // the port. Throws PortInUse when another process listens there, and
  // std::runtime_error when the address cannot be bound otherwise.
  int start();
  // Ends open event streams, stops answering and joins every thread.
  void stop();

  host::LiveHost& host() { return *host_; }

 private:
  // Sets up the transport: the request screen, the answers to failures and
  // every path of the route table.
  void route();
  void screenRequests();
  void answerFailures();
  void publishPicture(const std::string& kind, std::uint64_t version);

  ServerOptions options_;
  std::unique_ptr<worker::WidgetWorker> timelines_;
  std::unique_ptr<host::WidgetPictures> pictures_;
  EventHub events_;
  std::unique_ptr<host::LiveHost> host_;
  std::unique_ptr<host::JournalWatcher> watcher_;
  std::unique_ptr<host::ViewHealer> healer_;
  // Outlives the transport, whose open event streams call into it.
  std::unique_ptr<RouteHandlers> handlers_;
  std::unique_ptr<HttpTransport> http_;
  // Known once bound: the names and port requests must be addressed to.
  std::unique_ptr<ServedHosts> served_;
  std::thread listener_;
  bool started_ = false;
};

}  // namespace quillan::server
