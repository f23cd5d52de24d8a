#include "server/RouteHandlers.hpp"

#include <httplib.h>

#include <optional>

#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "render/HitTest.hpp"
#include "render/Renderer.hpp"
#include "server/ApiRequests.hpp"
#include "server/ClockRequest.hpp"
#include "server/JsonAnswers.hpp"
#include "server/Page.hpp"
#include "server/QueryText.hpp"
#include "server/WidgetsJson.hpp"

namespace quillan::server {
namespace {

// Event streams each hold one of the transport's workers while open.
constexpr int kMaxOpenStreams = 8;
// An idle stream still sends a comment this often, so proxies keep it open.
constexpr std::chrono::seconds kStreamHeartbeat{10};
// How soon a stream notices that its page has gone, freeing its worker.
constexpr std::chrono::milliseconds kStreamCheck{200};

platform::TimeZone zoneOf(const host::HostEnvironment& settings) {
  if (settings.timeZone) {
    if (auto zone = platform::TimeZone::named(*settings.timeZone)) return *zone;
  }
  return platform::TimeZone::current();
}

nlohmann::json clockJson(const host::LiveHost& host) {
  return {{"now", platform::ISO8601::format(host.now(), zoneOf(host.settings()))}};
}

// The target's query as the routes read it: a pair the library would split
// by guessing is refused instead.
QueryParameters queryOf(const httplib::Request& request) {
  const auto mark = request.target.find('?');
  return mark == std::string::npos ? QueryParameters()
                                   : parseQueryText(std::string_view(request.target).substr(mark + 1));
}

// The view tree and where its taps go, in points, as `tap` resolves them.
nlohmann::json pictureJson(const host::PlacedWidgetView& widget, const host::EntryView& view,
                           const render::RenderContext& context) {
  nlohmann::json regions = nlohmann::json::array();
  for (const auto& region : render::hitRegions(view.tree, context)) {
    regions.push_back({{"x", region.rect.x},
                       {"y", region.rect.y},
                       {"width", region.rect.width},
                       {"height", region.rect.height},
                       {"url", region.url}});
  }
  return {{"kind", widget.state.kind},
          {"family", std::string(views::toString(widget.family))},
          {"version", widget.state.version},
          {"view", nlohmann::json::parse(view.json)},
          {"regions", regions}};
}

struct ShownView {
  host::PlacedWidgetView widget;
  std::shared_ptr<const host::EntryView> view;
};

// The widget and the view it shows under `settings`; empty once `response`
// holds the 503 saying why there is none (no timeline yet, or the extension
// failed).
std::optional<ShownView> shownView(const host::LiveHost& host, host::WidgetPictures& pictures, const std::string& kind,
                                   const host::HostEnvironment& settings, httplib::Response& response) {
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
  return ShownView{*widget, std::get<std::shared_ptr<const host::EntryView>>(std::move(outcome))};
}

// Texts are shaped for the language of the page's locale (Han characters take
// Japanese or Chinese forms); the process's locale is the page's while one
// picture is drawn under the drawing lock.
class DrawingLocale {
 public:
  explicit DrawingLocale(const host::HostEnvironment& settings) : previous_(platform::Locale::current()) {
    platform::Locale::setCurrent(localeOf(settings));
  }
  ~DrawingLocale() { platform::Locale::setCurrent(previous_); }
  DrawingLocale(const DrawingLocale&) = delete;
  DrawingLocale& operator=(const DrawingLocale&) = delete;

 private:
  platform::Locale previous_;
};

void answerPicture(httplib::Response& response, const ShownView& shown, const render::RenderContext& context,
                   PictureFormat format) {
  const auto& view = *shown.view;
  if (format == PictureFormat::png) {
    const auto bytes = render::renderToPNGBytes(view.tree, context);
    response.set_content(reinterpret_cast<const char*>(bytes.data()), bytes.size(), "image/png");
  } else if (format == PictureFormat::svg) {
    response.set_content(render::renderToSVG(view.tree, context), "image/svg+xml");
  } else {
    answerJson(response, pictureJson(shown.widget, view, context));
  }
}

}  // namespace

RouteHandlers::RouteHandlers(host::LiveHost& host, host::WidgetPictures& pictures, EventHub& events)
    : host_(host), pictures_(pictures), events_(events) {}

void RouteHandlers::handlePage(const httplib::Request&, httplib::Response& response) {
  response.set_content(std::string(pageHtml()), "text/html; charset=utf-8");
}

void RouteHandlers::handlePageScript(const httplib::Request&, httplib::Response& response) {
  response.set_content(std::string(pageScript()), "text/javascript; charset=utf-8");
}

void RouteHandlers::handlePageStyle(const httplib::Request&, httplib::Response& response) {
  response.set_content(std::string(pageStyle()), "text/css; charset=utf-8");
}

void RouteHandlers::handleWidgets(const httplib::Request&, httplib::Response& response) {
  const auto settings = host_.settings();
  auto widgets = host_.widgets();
  for (auto& widget : widgets) {
    if (widget.state.ok()) widget.state.failure = pictures_.knownFailure(widget, settings);
  }
  answerJson(response, widgetsJson(host_.now(), widgets, zoneOf(settings)));
}

void RouteHandlers::handleClock(const httplib::Request&, httplib::Response& response) {
  answerJson(response, clockJson(host_));
}

void RouteHandlers::handleClockChange(const httplib::Request& request, httplib::Response& response) {
  host_.changeClock(parseClockChange(request.body));
  answerJson(response, clockJson(host_));
}

void RouteHandlers::handleEnvironment(const httplib::Request&, httplib::Response& response) {
  auto json = toJson(host_.settings());
  json["devices"] = render::DeviceProfile::profileNames();
  answerJson(response, json);
}

void RouteHandlers::handleEnvironmentChange(const httplib::Request& request, httplib::Response& response) {
  auto settings = host_.settings();
  applySettingsBody(settings, request.body);
  host_.changeSettings(settings);
  answerJson(response, toJson(settings));
}

void RouteHandlers::handleRender(const httplib::Request& request, httplib::Response& response) {
  const auto parsed = parseRenderRequest(queryOf(request), host_.settings());
  const auto shown = shownView(host_, pictures_, parsed.kind, parsed.settings, response);
  if (!shown) return;
  const auto context = renderContext(parsed.settings, shown->widget.family);
  std::lock_guard drawing(drawing_);
  const DrawingLocale locale(parsed.settings);
  answerPicture(response, *shown, context, parsed.format);
}

void RouteHandlers::handleTap(const httplib::Request& request, httplib::Response& response) {
  const auto parsed = parseTapRequest(queryOf(request), host_.settings());
  const auto shown = shownView(host_, pictures_, parsed.kind, parsed.settings, response);
  if (!shown) return;
  std::lock_guard drawing(drawing_);
  const DrawingLocale locale(parsed.settings);
  const auto url = render::hitTest(shown->view->tree, renderContext(parsed.settings, shown->widget.family),
                                   {parsed.x, parsed.y});
  answerJson(response, {{"url", url ? nlohmann::json(*url) : nlohmann::json()}});
}

void RouteHandlers::handleEvents(const httplib::Request&, httplib::Response& response) {
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
}

}  // namespace quillan::server
