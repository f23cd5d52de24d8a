#pragma once

#include <atomic>
#include <mutex>

#include "host/LiveHost.hpp"
#include "host/WidgetPictures.hpp"
#include "server/EventHub.hpp"

namespace httplib {
struct Request;
struct Response;
}  // namespace httplib

namespace quillan::server {

// What the server answers on each of its paths (RouteTable.cpp says which
// handler answers which path and method). A request reaches a handler only
// once the request screen has let it through; a handler that finds the
// request itself wrong throws RequestError.
class RouteHandlers {
 public:
  RouteHandlers(host::LiveHost& host, host::WidgetPictures& pictures, EventHub& events);

  // The page's files.
  void handlePage(const httplib::Request& request, httplib::Response& response);
  void handlePageScript(const httplib::Request& request, httplib::Response& response);
  void handlePageStyle(const httplib::Request& request, httplib::Response& response);

  // The host's state and the changes the page makes to it.
  void handleWidgets(const httplib::Request& request, httplib::Response& response);
  void handleClock(const httplib::Request& request, httplib::Response& response);
  void handleClockChange(const httplib::Request& request, httplib::Response& response);
  void handleEnvironment(const httplib::Request& request, httplib::Response& response);
  void handleEnvironmentChange(const httplib::Request& request, httplib::Response& response);

  // A widget's picture and what a tap on it opens.
  void handleRender(const httplib::Request& request, httplib::Response& response);
  void handleTap(const httplib::Request& request, httplib::Response& response);

  // The stream of new pictures, one event each.
  void handleEvents(const httplib::Request& request, httplib::Response& response);

 private:
  host::LiveHost& host_;
  host::WidgetPictures& pictures_;
  EventHub& events_;
  std::atomic<int> openStreams_{0};
  // Layout and drawing go through Pango and fontconfig, whose shared font data
  // crashes when several threads lay out text at once: one picture at a time.
  std::mutex drawing_;
};

}  // namespace quillan::server
