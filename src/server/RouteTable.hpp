#pragma once

#include <span>
#include <string_view>

namespace httplib {
struct Request;
struct Response;
}  // namespace httplib

namespace quillan::server {

class RouteHandlers;

using RouteHandler = void (RouteHandlers::*)(const httplib::Request&, httplib::Response&);

// A path the server answers, with its handler for GET (which answers HEAD
// too) and, on the paths that change the host, for POST.
struct Route {
  std::string_view path;
  RouteHandler get;
  RouteHandler post = nullptr;
};

// Every path served: the server routes these and the request screen lets
// through only these, so a path and its methods are stated once, here.
std::span<const Route> routeTable();

// The route for `path`, exactly as requested; null for a path not served.
const Route* routeOf(std::string_view path);

}  // namespace quillan::server
