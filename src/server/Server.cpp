#include "server/Server.hpp"

#include <httplib.h>
#include <malloc.h>
#include <sys/socket.h>

#include <cerrno>
#include <optional>
#include <stdexcept>
#include <string>

#include "server/HttpTransport.hpp"
#include "server/JsonAnswers.hpp"
#include "server/PortInUse.hpp"
#include "server/RequestError.hpp"
#include "server/RequestScreen.hpp"
#include "server/RouteHandlers.hpp"
#include "server/RouteTable.hpp"
#include "server/ServedHosts.hpp"

namespace quillan::server {
namespace {

constexpr int kMallocArenas = 2;

std::optional<std::string> headerOf(const httplib::Request& request, const char* name) {
  if (!request.has_header(name)) return std::nullopt;
  return request.get_header_value(name);
}

IncomingRequest incoming(const httplib::Request& request) {
  IncomingRequest judged{request.method,
                         request.path,
                         {},
                         headerOf(request, "Origin"),
                         headerOf(request, "Sec-Fetch-Site"),
                         headerOf(request, "Content-Type"),
                         headerOf(request, "Content-Length"),
                         request.has_header("Transfer-Encoding")};
  for (std::size_t index = 0; index < request.get_header_value_count("Host"); ++index) {
    judged.hosts.push_back(request.get_header_value("Host", index));
  }
  return judged;
}

// Only SO_REUSEADDR (a restarted server may bind while old connections linger):
// with SO_REUSEPORT a second server would share the port and its requests.
void reuseAddressOnly(socket_t socket) {
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

// The route's handler, answering a RequestError with 400 and its one line.
httplib::Server::Handler handlerOf(RouteHandlers& handlers, RouteHandler handle) {
  return [&handlers, handle](const httplib::Request& request, httplib::Response& response) {
    try {
      (handlers.*handle)(request, response);
    } catch (const RequestError& error) {
      answerError(response, 400, error.what());
    }
  };
}

}  // namespace

Server::Server(ServerOptions options) : options_(std::move(options)) {
  // Every HTTP thread that draws would get a malloc arena of its own, and each
  // arena keeps what the pictures it held left behind: measured, the server
  // grew from 34 to 59 MB over its first 2,000 requests with eight clients;
  // with two it is at 36 MB then and 38 MB after 10,000, whatever the number
  // of threads.
  mallopt(M_ARENA_MAX, kMallocArenas);
  if (options_.viewWorkers < 1) throw std::invalid_argument("at least one view worker is needed");
  timelines_ = std::make_unique<worker::WidgetWorker>(options_.worker);
  std::vector<std::unique_ptr<worker::WidgetWorker>> viewWorkers;
  for (int index = 0; index < options_.viewWorkers; ++index) {
    viewWorkers.push_back(std::make_unique<worker::WidgetWorker>(options_.worker));
  }
  pictures_ = std::make_unique<host::WidgetPictures>(std::move(viewWorkers), options_.scheduler);
  host::HostClock clock;
  if (options_.pinnedAt) clock.pin(*options_.pinnedAt);
  host_ = std::make_unique<host::LiveHost>(*timelines_, options_.settings, options_.scheduler, std::move(clock),
                                           [this](const std::string& kind, std::uint64_t version) {
                                             publishPicture(kind, version);
                                           });
  handlers_ = std::make_unique<RouteHandlers>(*host_, *pictures_, events_);
}

Server::~Server() { stop(); }

int Server::start() {
  if (started_) throw std::logic_error("the server is already started");
  route();
  const int port = options_.port == 0 ? http_->bind_to_any_port(options_.bind)
                                      : (http_->bind_to_port(options_.bind, options_.port) ? options_.port : -1);
  if (port <= 0) {
    if (errno == EADDRINUSE) throw PortInUse(options_.port);
    throw std::runtime_error("cannot listen on " + options_.bind + ":" + std::to_string(options_.port));
  }
  served_ = std::make_unique<ServedHosts>(options_.bind, port);
  started_ = true;
  host_->start();
  watcher_ = std::make_unique<host::JournalWatcher>(options_.journal, [this] { host_->appWrote(); });
  healer_ =
      std::make_unique<host::ViewHealer>(*host_, *pictures_, [this](const std::string& kind, std::uint64_t version) {
        events_.publish("widget", jsonText({{"kind", kind}, {"version", version}}));
      });
  listener_ = std::thread([this] { http_->listen_after_bind(); });
  return port;
}

void Server::stop() {
  if (!started_) return;
  started_ = false;
  events_.close();
  http_->stop();
  if (listener_.joinable()) listener_.join();
  healer_.reset();
  watcher_.reset();
  host_->stop();
}

// As the phone renders an entry's view when it is shown, the view is built
// before the page hears of the new picture: a failing view then shows as a
// failed widget, and the page's request for the picture finds it ready.
void Server::publishPicture(const std::string& kind, std::uint64_t version) {
  if (const auto widget = host_->widget(kind)) pictures_->view(*widget, host_->settings(), host_->publishedAt());
  events_.publish("widget", jsonText({{"kind", kind}, {"version", version}}));
}

void Server::route() {
  http_ = std::make_unique<HttpTransport>();
  http_->set_socket_options(reuseAddressOnly);
  http_->set_payload_max_length(kMaxBodyBytes);
  screenRequests();
  answerFailures();
  http_->set_default_headers({{"X-Content-Type-Options", "nosniff"},
                              {"Cache-Control", "no-store"},
                              {"Content-Security-Policy", "default-src 'self'; img-src 'self' blob:"}});
  for (const auto& route : routeTable()) {
    const std::string path(route.path);
    http_->Get(path, handlerOf(*handlers_, route.get));
    if (route.post) http_->Post(path, handlerOf(*handlers_, route.post));
  }
}

void Server::screenRequests() {
  http_->set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
    const auto refused = screenRequest(incoming(request), *served_);
    if (!refused) return httplib::Server::HandlerResponse::Unhandled;
    answerError(response, refused->status, refused->message);
    if (!refused->allow.empty()) response.set_header("Allow", refused->allow);
    // The body, if any, was never read.
    HttpTransport::closeAfterThisAnswer();
    return httplib::Server::HandlerResponse::Handled;
  });
}

void Server::answerFailures() {
  http_->set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (!response.body.empty()) return;
    if (response.status == 413) answerError(response, 413, "request body larger than 16 KiB");
    else answerError(response, response.status, "request refused");
  });
  http_->set_exception_handler([](const httplib::Request&, httplib::Response& response, std::exception_ptr error) {
    std::string message = "internal error";
    try {
      std::rethrow_exception(error);
    } catch (const std::exception& thrown) {
      message += ": " + std::string(thrown.what());
    } catch (...) {
    }
    answerError(response, 500, message);
  });
}

}  // namespace quillan::server
