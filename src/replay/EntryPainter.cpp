#include "replay/EntryPainter.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "hosting/QuotedValue.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/ISO8601.hpp"
#include "platform/TimeZone.hpp"
#include "views/ViewTreeJson.hpp"

namespace quillan::replay {
namespace {

std::string sequenceName(int sequence) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%04d", sequence);
  return buffer;
}

void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

// As the renderer writes a PNG file, failure message included.
void writePicture(const std::filesystem::path& path, const std::vector<std::uint8_t>& png) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
  file.close();
  if (!file) throw render::RenderError("cannot write " + path.string() + ": " + std::strerror(errno));
}

// As `render --format json` prints it, so `render --tree` draws it again.
std::string wrappedTree(const std::string& kind, views::WidgetFamily family, platform::Date entryDate,
                        const std::string& treeJson) {
  nlohmann::ordered_json json;
  json["kind"] = kind;
  json["family"] = hosting::familyName(family);
  json["date"] = platform::ISO8601::format(entryDate, platform::TimeZone::current());
  json["view"] = nlohmann::ordered_json::parse(treeJson);
  return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

EntryPainter::EntryPainter(EvaluationPipeline& views, worker::ProcessSettings settings, EnvironmentOf environment,
                           render::DeviceProfile device, std::filesystem::path output,
                           const render::DrawingFunctions& drawing)
    : views_(views),
      settings_(std::move(settings)),
      environment_(std::move(environment)),
      device_(std::move(device)),
      output_(std::move(output)),
      drawing_(drawing) {}

// An entry's light and dark views differ only in their scheme: they are
// evaluated together, reading the journal once.
void EntryPainter::expect(const std::vector<ShownEntry>& entries) {
  std::vector<std::vector<worker::ViewEvaluation>> upcoming;
  for (const auto& entry : entries) {
    upcoming.push_back({evaluationOf(entry.kind, entry.entryDate, entry.at, views::ColorScheme::light),
                        evaluationOf(entry.kind, entry.entryDate, entry.at, views::ColorScheme::dark)});
  }
  views_.expectTogether(std::move(upcoming));
}

worker::ViewEvaluation EntryPainter::evaluationOf(const std::string& kind, platform::Date entryDate, platform::Date at,
                                                  views::ColorScheme scheme) const {
  const auto family = hosting::widgetOfKind(kind).supportedFamilies.front();
  auto environment = environment_(family);
  environment.colorScheme = scheme;
  const auto context = render::makeRenderContext(environment, family, device_, kScale);
  return {kind, entryDate, at, context.env, settings_};
}

std::variant<pages::EntryPictures, EntryFailure> EntryPainter::paint(const std::string& kind, platform::Date entryDate,
                                                                     platform::Date at, int sequence) {
  std::filesystem::create_directories(output_ / kind);
  const auto stem = kind + "/" + sequenceName(sequence);
  pages::EntryPictures pictures{stem + "-light.png", stem + "-dark.png", stem + ".json", 0, 0, {}};
  auto light = draw(kind, entryDate, at, views::ColorScheme::light, output_ / pictures.light);
  if (auto* failure = std::get_if<EntryFailure>(&light)) return *failure;
  auto dark = draw(kind, entryDate, at, views::ColorScheme::dark, output_ / pictures.dark);
  if (auto* failure = std::get_if<EntryFailure>(&dark)) return *failure;

  const auto& drawn = std::get<Drawn>(light);
  const auto family = drawn.context.env.family;
  writeText(output_ / pictures.view, wrappedTree(kind, family, entryDate, drawn.treeJson));
  const auto size = device_.sizeOf(family);
  pictures.width = size.width;
  pictures.height = size.height;
  pictures.regions = regionsOf(drawn);
  return pictures;
}

std::variant<EntryPainter::Drawn, EntryFailure> EntryPainter::draw(const std::string& kind, platform::Date entryDate,
                                                                   platform::Date at, views::ColorScheme scheme,
                                                                   const std::filesystem::path& file) {
  const auto request = evaluationOf(kind, entryDate, at, scheme);
  const auto context = render::makeRenderContext(request.environment, request.environment.family, device_, kScale);
  auto evaluation = views_.view(request);
  for (const auto& line : evaluation.log) std::cerr << kind << ": " << hosting::singleLine(line) << "\n";
  if (const auto* failure = evaluation.failure()) return EntryFailure{"view: " + failure->reason};
  Drawn drawn{std::move(*evaluation.value()), context, {}};
  drawn.pictureKey = PictureCache::keyOf(drawn.treeJson, context);
  if (auto failure = drawPicture(drawn, file)) return *failure;
  return drawn;
}

std::optional<EntryFailure> EntryPainter::drawPicture(const Drawn& drawn, const std::filesystem::path& file) {
  if (const auto* kept = pictures_.find(drawn.pictureKey)) {
    writePicture(file, kept->png);
    return std::nullopt;
  }
  std::vector<std::uint8_t> png;
  try {
    png = drawing_.renderToPNGBytes(views::decodeViewTree(drawn.treeJson), drawn.context);
  } catch (const views::ViewTreeJsonError& error) {
    return EntryFailure{std::string("view: ") + error.what()};
  }
  writePicture(file, png);
  pictures_.insert(drawn.pictureKey, {std::move(png), std::nullopt});
  return std::nullopt;
}

// The tap targets of a tree drawn before are those found then.
std::vector<render::HitRegion> EntryPainter::regionsOf(const Drawn& drawn) {
  auto* kept = pictures_.find(drawn.pictureKey);
  if (kept && kept->regions) return *kept->regions;
  auto regions = drawing_.hitRegions(views::decodeViewTree(drawn.treeJson), drawn.context);
  if (kept) kept->regions = regions;
  return regions;
}

}  // namespace quillan::replay
