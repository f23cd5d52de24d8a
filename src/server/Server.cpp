#include "server/Server.hpp"

#include <httplib.h>
#include <malloc.h>
#include <sys/socket.h>

#include <cerrno>
#include <optional>
#include <stdexcept>

#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "render/HitTest.hpp"
#include "render/Renderer.hpp"
#include "server/ApiRequests.hpp"
#include "server/HttpTransport.hpp"
#include "server/Page.hpp"
#include "server/PortInUse.hpp"
#include "server/QueryText.hpp"
#include "server/RequestError.hpp"
#include "server/RequestScreen.hpp"
#include "server/ServedHosts.hpp"

namespace quillan::server {
namespace {

// Event streams each hold one of the transport's workers while open.
constexpr int kMaxOpenStreams = 8;
constexpr int kMallocArenas = 2;
// An idle stream still sends a comment this often, so proxies keep it open.
constexpr std::chrono::seconds kStreamHeartbeat{10};
// How soon a stream notices that its page has gone, freeing its worker.
constexpr std::chrono::milliseconds kStreamCheck{200};

// The extension's texts may hold bytes that are not UTF-8; JSON must stay valid.
std::string dump(const nlohmann::json& json) {
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void answerJson(httplib::Response& response, const nlohmann::json& json, int status = 200) {
  response.status = status;
  response.set_content(dump(json), "application/json");
}

void answerError(httplib::Response& response, int status, const std::string& message) {
  answerJson(response, {{"error", message}}, status);
}

platform::TimeZone zoneOf(const PageSettings& settings) {
  if (settings.timeZone) {
    if (auto zone = platform::TimeZone::named(*settings.timeZone)) return *zone;
  }
  return platform::TimeZone::current();
}

nlohmann::json clockJson(const LiveHost& host) {
  return {{"now", platform::ISO8601::format(host.now(), zoneOf(host.settings()))}};
}

// The target's query as the routes read it: a pair the library would split
// by guessing is refused instead.
QueryParameters queryOf(const httplib::Request& request) {
  const auto mark = request.target.find('?');
  return mark == std::string::npos ? QueryParameters() : parseQueryText(std::string_view(request.target).substr(mark + 1));
}

std::optional<std::string> headerOf(const httplib::Request& request, const char* name) {
  if (!request.has_header(name)) return std::nullopt;
  return request.get_header_value(name);
}

IncomingRequest incoming(const httplib::Request& request) {
  IncomingRequest judged{request.method, request.path, {}, headerOf(request, "Origin"),
                         headerOf(request, "Sec-Fetch-Site"), headerOf(request, "Content-Type"),
                         headerOf(request, "Content-Length"), request.has_header("Transfer-Encoding")};
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

// Runs `handle`, answering a RequestError with 400 and its one line.
template <typename Handle>
httplib::Server::Handler guarded(Handle handle) {
  return [handle](const httplib::Request& request, httplib::Response& response) {
    try {
      handle(request, response);
    } catch (const RequestError& error) {
      answerError(response, 400, error.what());
    }
  };
}

// The view tree and where its taps go, in points, as `tap` resolves them.
nlohmann::json pictureJson(const PlacedWidgetView& widget, const EntryView& view,
                           const render::RenderContext& context) {
  nlohmann::json regions = nlohmann::json::array();
  for (const auto& region : render::hitRegions(view.tree, context)) {
    regions.push_back({{"x", region.rect.x}, {"y", region.rect.y}, {"width", region.rect.width},
                       {"height", region.rect.height}, {"url", region.url}});
  }
  return {{"kind", widget.state.kind},
          {"family", std::string(views::toString(widget.family))},
          {"version", widget.state.version},
          {"view", nlohmann::json::parse(view.json)},
          {"regions", regions}};
}

struct ShownView {
  PlacedWidgetView widget;
  std::shared_ptr<const EntryView> view;
};

// The widget and the view it shows under `settings`; empty once `response`
// holds the 503 saying why there is none (no timeline yet, or the extension
// failed).
std::optional<ShownView> shownView(const LiveHost& host, WidgetPictures& pictures, const std::string& kind,
                                   const PageSettings& settings, httplib::Response& response) {
  const auto widget = host.widget(kind);
  if (!widget) {
    answerError(response, 503, kind + ": no timeline yet");
    return std::nullopt;
  }
  auto outcome = pictures.view(*widget, settings, host.publishedAt());
  if (const auto* reason = std::get_if<std::string>(&outcome)) {
    answerError(response, 503, kind + " failed: " + *reason);
    return std::nullopt;
  }
  return ShownView{*widget, std::get<std::shared_ptr<const EntryView>>(std::move(outcome))};
}

// Texts are shaped for the language of the page's locale (Han characters take
// Japanese or Chinese forms); the process's locale is the page's while one
// picture is drawn under the drawing lock.
class DrawingLocale {
 public:
  explicit DrawingLocale(const PageSettings& settings) : previous_(platform::Locale::current()) {
    platform::Locale::setCurrent(localeOf(settings));
  }
  ~DrawingLocale() { platform::Locale::setCurrent(previous_); }
  DrawingLocale(const DrawingLocale&) = delete;
  DrawingLocale& operator=(const DrawingLocale&) = delete;

 private:
  platform::Locale previous_;
};

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
  pictures_ = std::make_unique<WidgetPictures>(std::move(viewWorkers), options_.scheduler);
  host::HostClock clock;
  if (options_.pinnedAt) clock.pin(*options_.pinnedAt);
  host_ = std::make_unique<LiveHost>(*timelines_, options_.settings, options_.scheduler, std::move(clock),
                                     [this](const std::string& kind, std::uint64_t version) {
                                       publishPicture(kind, version);
                                     });
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
  watcher_ = std::make_unique<JournalWatcher>(options_.journal, [this] { host_->appWrote(); });
  healer_ = std::make_unique<ViewHealer>(*host_, *pictures_, [this](const std::string& kind, std::uint64_t version) {
    events_.publish("widget", dump({{"kind", kind}, {"version", version}}));
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
  events_.publish("widget", dump({{"kind", kind}, {"version", version}}));
}

void Server::route() {
  http_ = std::make_unique<HttpTransport>();
  auto& http = *http_;
  http.set_socket_options(reuseAddressOnly);
  http.set_payload_max_length(kMaxBodyBytes);
  http.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
    const auto refused = screenRequest(incoming(request), *served_);
    if (!refused) return httplib::Server::HandlerResponse::Unhandled;
    answerError(response, refused->status, refused->message);
    if (!refused->allow.empty()) response.set_header("Allow", refused->allow);
    // The body, if any, was never read.
    HttpTransport::closeAfterThisAnswer();
    return httplib::Server::HandlerResponse::Handled;
  });
  http.set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (!response.body.empty()) return;
    if (response.status == 413) answerError(response, 413, "request body larger than 16 KiB");
    else answerError(response, response.status, "request refused");
  });
  http.set_exception_handler([](const httplib::Request&, httplib::Response& response, std::exception_ptr error) {
    std::string message = "internal error";
    try {
      std::rethrow_exception(error);
    } catch (const std::exception& thrown) {
      message += ": " + std::string(thrown.what());
    } catch (...) {
    }
    answerError(response, 500, message);
  });
  http.set_default_headers({{"X-Content-Type-Options", "nosniff"},
                            {"Cache-Control", "no-store"},
                            {"Content-Security-Policy", "default-src 'self'; img-src 'self' blob:"}});

  http.Get("/", [](const httplib::Request&, httplib::Response& response) {
    response.set_content(std::string(pageHtml()), "text/html; charset=utf-8");
  });
  http.Get("/page.js", [](const httplib::Request&, httplib::Response& response) {
    response.set_content(std::string(pageScript()), "text/javascript; charset=utf-8");
  });
  http.Get("/page.css", [](const httplib::Request&, httplib::Response& response) {
    response.set_content(std::string(pageStyle()), "text/css; charset=utf-8");
  });

  http.Get("/api/widgets", [this](const httplib::Request&, httplib::Response& response) {
    const auto settings = host_->settings();
    auto widgets = host_->widgets();
    for (auto& widget : widgets) {
      if (widget.state.ok()) widget.state.failure = pictures_->knownFailure(widget, settings);
    }
    answerJson(response, widgetsJson(host_->now(), widgets, zoneOf(settings)));
  });
  http.Get("/api/clock", [this](const httplib::Request&, httplib::Response& response) {
    answerJson(response, clockJson(*host_));
  });
  http.Post("/api/clock", guarded([this](const httplib::Request& request, httplib::Response& response) {
              host_->changeClock(parseClockChange(request.body));
              answerJson(response, clockJson(*host_));
            }));
  http.Get("/api/environment", [this](const httplib::Request&, httplib::Response& response) {
    auto json = toJson(host_->settings());
    json["devices"] = render::DeviceProfile::profileNames();
    answerJson(response, json);
  });
  http.Post("/api/environment", guarded([this](const httplib::Request& request, httplib::Response& response) {
              auto settings = host_->settings();
              applySettingsBody(settings, request.body);
              host_->changeSettings(settings);
              answerJson(response, toJson(settings));
            }));

  http.Get("/api/render", guarded([this](const httplib::Request& request, httplib::Response& response) {
             const auto parsed = parseRenderRequest(queryOf(request), host_->settings());
             const auto shown = shownView(*host_, *pictures_, parsed.kind, parsed.settings, response);
             if (!shown) return;
             const auto& view = *shown->view;
             const auto context = renderContext(parsed.settings, shown->widget.family);
             std::lock_guard drawing(drawing_);
             const DrawingLocale locale(parsed.settings);
             if (parsed.format == PictureFormat::png) {
               const auto bytes = render::renderToPNGBytes(view.tree, context);
               response.set_content(reinterpret_cast<const char*>(bytes.data()), bytes.size(), "image/png");
             } else if (parsed.format == PictureFormat::svg) {
               response.set_content(render::renderToSVG(view.tree, context), "image/svg+xml");
             } else {
               answerJson(response, pictureJson(shown->widget, view, context));
             }
           }));

  http.Get("/api/tap", guarded([this](const httplib::Request& request, httplib::Response& response) {
             const auto parsed = parseTapRequest(queryOf(request), host_->settings());
             const auto shown = shownView(*host_, *pictures_, parsed.kind, parsed.settings, response);
             if (!shown) return;
             std::lock_guard drawing(drawing_);
             const DrawingLocale locale(parsed.settings);
             const auto url = render::hitTest(shown->view->tree, renderContext(parsed.settings, shown->widget.family),
                                              {parsed.x, parsed.y});
             answerJson(response, {{"url", url ? nlohmann::json(*url) : nlohmann::json()}});
           }));

  http.Get("/api/events", [this](const httplib::Request&, httplib::Response& response) {
    if (++openStreams_ > kMaxOpenStreams) {
      --openStreams_;
      return answerError(response, 503, "too many open event streams");
    }
    auto sequence = std::make_shared<std::uint64_t>(events_.nextSequence());
    response.set_chunked_content_provider(
        "text/event-stream",
        [this, sequence](std::size_t, httplib::DataSink& sink) {
          std::optional<EventHub::Event> event;
          for (auto waited = std::chrono::milliseconds(0); !event && waited < kStreamHeartbeat; waited += kStreamCheck) {
            if (!sink.is_writable() || events_.closed()) return false;
            event = events_.next(*sequence, kStreamCheck);
          }
          if (events_.closed()) return false;
          const std::string text = event ? event->text : std::string(": heartbeat\n\n");
          if (event) *sequence = event->sequence + 1;
          return sink.write(text.data(), text.size());
        },
        [this](bool) { --openStreams_; });
  });
}

}  // namespace quillan::server
