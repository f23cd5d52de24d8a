#pragma once

#include <map>
#include <string>

#include "server/PageSettings.hpp"

namespace quillan::server {

// A query string's parameters, as the HTTP library hands them over (a name may repeat).
using QueryParameters = std::multimap<std::string, std::string>;

enum class PictureFormat { png, svg, json };

// GET /api/render?kind=K&format=png|svg|json, with any of the page's setting
// keys overriding the page's environment for this picture. `v` is accepted
// and ignored: the page adds the picture's version so browsers never show a
// stale one from their cache.
struct RenderRequest {
  std::string kind;
  PictureFormat format = PictureFormat::png;
  host::HostEnvironment settings;
};

// GET /api/tap?kind=K&x=X&y=Y: points from the widget's top-left corner, with
// the same overrides as a picture (the device decides the widget's size).
struct TapRequest {
  std::string kind;
  double x = 0;
  double y = 0;
  host::HostEnvironment settings;
};

// Each throws RequestError naming the first missing, repeated, unknown or bad
// parameter. A kind must be one of the bundle's.
RenderRequest parseRenderRequest(const QueryParameters& query, const host::HostEnvironment& page);
TapRequest parseTapRequest(const QueryParameters& query, const host::HostEnvironment& page);

std::string formatName(PictureFormat format);

}  // namespace quillan::server
