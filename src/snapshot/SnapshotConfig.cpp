#include "snapshot/SnapshotConfig.hpp"

#include <algorithm>
#include <cmath>

#include <nlohmann/json.hpp>

#include "bundle/TimelineWidgetBundle.hpp"
#include "hosting/JsonFile.hpp"
#include "hosting/QuotedValue.hpp"
#include "hosting/UsageError.hpp"
#include "hosting/WidgetLookup.hpp"
#include "platform/Clock.hpp"
#include "platform/FileManager.hpp"
#include "platform/ISO8601.hpp"
#include "platform/Locale.hpp"
#include "platform/TimeZone.hpp"
#include "render/DeviceProfile.hpp"
#include "store/CoreDataStack.hpp"
#include "views/EnumNames.hpp"
#include "views/Environment.hpp"

namespace quillan::snapshot {
namespace {

using Json = nlohmann::ordered_json;

// A config is a few hundred bytes; anything near this is not one.
constexpr std::uintmax_t kConfigFileLimit = 256 * 1024;
constexpr std::uint64_t kDefaultSeed = 2026;

class ConfigReader {
 public:
  explicit ConfigReader(std::filesystem::path path) : path_(std::move(path)) {}

  hosting::UsageError error(const std::string& where, const std::string& problem, const std::string& value) const {
    return hosting::UsageError("--config: " + where + ": " + hosting::badValue(problem, value) + " (in " +
                               hosting::quotedValue(path_.string()) + ")");
  }

  void requireKeys(const Json& object, const std::string& where, std::initializer_list<const char*> required,
                   std::initializer_list<const char*> optional) const {
    if (!object.is_object()) throw error(where.empty() ? "the config" : where, "not a JSON object", object.dump());
    const auto prefix = where.empty() ? std::string() : where + ".";
    for (const auto& [key, value] : object.items()) {
      const auto known = [&key](const char* name) { return key == name; };
      if (std::none_of(required.begin(), required.end(), known) &&
          std::none_of(optional.begin(), optional.end(), known)) {
        throw error(prefix + key, "unknown key", key);
      }
    }
    for (const char* key : required) {
      if (!object.contains(key)) throw error(prefix + key, "missing", "");
    }
  }

  std::string text(const Json& value, const std::string& where) const {
    if (!value.is_string()) throw error(where, "not a string", value.dump());
    return value.get<std::string>();
  }

  template <typename Check>
  std::vector<std::string> list(const Json& value, const std::string& where, Check check) const {
    if (!value.is_array() || value.empty()) throw error(where, "not a non-empty array of strings", value.dump());
    std::vector<std::string> items;
    for (std::size_t i = 0; i < value.size(); ++i) {
      const auto itemWhere = where + "[" + std::to_string(i) + "]";
      auto item = text(value[i], itemWhere);
      if (auto problem = check(item); !problem.empty()) throw error(itemWhere, problem, item);
      if (std::find(items.begin(), items.end(), item) != items.end()) throw error(itemWhere, "listed twice", item);
      items.push_back(std::move(item));
    }
    return items;
  }

 private:
  std::filesystem::path path_;
};

std::string kindProblem(const std::string& kind) {
  return bundle::TimelineWidgetBundle::widget(kind) ? "" : "unknown widget kind";
}

template <views::NamedEnum E>
std::string enumProblem(const std::string& name, const char* what) {
  return views::fromString<E>(name) ? "" : std::string("unknown ") + what;
}

std::string platformProblem(std::string& version) {
  try {
    version = views::parsePlatformVersion(version).toString();
    return "";
  } catch (const views::EnvironmentParseError&) {
    return "not a platform version MAJOR.MINOR";
  }
}

std::string deviceProblem(const std::string& device) {
  return render::DeviceProfile::named(device) ? "" : "unknown device";
}

std::string localeProblem(const std::string& identifier) {
  const auto locale = platform::Locale::named(identifier);
  if (!locale) return "unknown locale";
  if (const auto calendar = locale->calendarKeyword(); calendar && !platform::Locale::knowsCalendar(*calendar)) {
    return "unknown calendar keyword";
  }
  return "";
}

void readMatrix(const ConfigReader& reader, const Json& matrix, SnapshotConfig& config) {
  reader.requireKeys(matrix, "matrix",
                     {"kinds", "colorSchemes", "renderingModes", "platformVersions", "devices", "locales"}, {});
  config.kinds = reader.list(matrix["kinds"], "matrix.kinds", kindProblem);
  config.colorSchemes = reader.list(matrix["colorSchemes"], "matrix.colorSchemes", [](const std::string& name) {
    return enumProblem<views::ColorScheme>(name, "color scheme");
  });
  config.renderingModes = reader.list(matrix["renderingModes"], "matrix.renderingModes", [](const std::string& name) {
    return enumProblem<views::WidgetRenderingMode>(name, "rendering mode");
  });
  config.platformVersions = reader.list(matrix["platformVersions"], "matrix.platformVersions", platformProblem);
  config.devices = reader.list(matrix["devices"], "matrix.devices", deviceProblem);
  config.locales = reader.list(matrix["locales"], "matrix.locales", localeProblem);
  const std::size_t cases = config.kinds.size() * config.colorSchemes.size() * config.renderingModes.size() *
                            config.platformVersions.size() * config.devices.size() * config.locales.size();
  if (cases > kMaxSnapshotCases) {
    throw reader.error("matrix", "more than " + std::to_string(kMaxSnapshotCases) + " cases", std::to_string(cases));
  }
}

void readSettings(const ConfigReader& reader, const Json& json, SnapshotConfig& config,
                  const std::filesystem::path& folder) {
  const auto journal = std::filesystem::path(reader.text(json["journal"], "journal"));
  config.journal = journal.is_absolute() ? journal : folder / journal;
  std::error_code error;
  if (!std::filesystem::is_directory(config.journal, error)) {
    throw reader.error("journal", "no such folder", config.journal.string());
  }
  // Without a journal the extension would look for a legacy one and move it
  // in: a test suite must never do that to a folder it only reads.
  if (!std::filesystem::is_regular_file(config.journal / store::kStoreFileName, error)) {
    throw reader.error("journal", "no Quillan.sqlite in the folder", config.journal.string());
  }
  config.now = reader.text(json["now"], "now");
  if (!platform::ISO8601::parse(config.now)) throw reader.error("now", "not an ISO-8601 date with offset", config.now);
  config.timeZone = reader.text(json["timeZone"], "timeZone");
  if (!platform::TimeZone::named(config.timeZone)) throw reader.error("timeZone", "unknown time zone", config.timeZone);
  if (!json["seed"].is_number_unsigned()) throw reader.error("seed", "not a whole number from 0", json["seed"].dump());
  config.seed = json["seed"].get<std::uint64_t>();
  if (json.contains("scale")) {
    const auto& scale = json["scale"];
    if (!scale.is_number() || !(scale.get<double>() >= 1 && scale.get<double>() <= 3)) {
      throw reader.error("scale", "not a number from 1 to 3", scale.dump());
    }
    config.scale = scale.get<double>();
  }
}

}  // namespace

SnapshotConfig readSnapshotConfig(const std::filesystem::path& path) {
  const ConfigReader reader(path);
  const auto json = hosting::readJsonFile<Json>(path, kConfigFileLimit, "--config");
  reader.requireKeys(json, "", {"journal", "now", "timeZone", "seed", "matrix"}, {"scale"});
  SnapshotConfig config;
  readSettings(reader, json, config, path.parent_path().empty() ? "." : path.parent_path());
  readMatrix(reader, json["matrix"], config);
  return config;
}

SnapshotConfig defaultSnapshotConfig(const std::optional<std::filesystem::path>& groupContainer,
                                     std::optional<std::uint64_t> seed) {
  SnapshotConfig config;
  config.journal =
      std::filesystem::absolute(groupContainer.value_or(platform::FileManager::defaultGroupContainerDirectory()));
  const auto now = platform::Clock::now();
  const auto zone = platform::TimeZone::current();
  config.now = platform::ISO8601::format(
      platform::Date::fromReferenceSeconds(std::floor(now.timeIntervalSinceReferenceDate())), zone);
  config.timeZone = zone.identifier();
  config.seed = seed.value_or(kDefaultSeed);
  for (const auto& widget : bundle::TimelineWidgetBundle::body()) config.kinds.push_back(widget.kind);
  config.colorSchemes = {"light", "dark"};
  config.renderingModes = {"fullColor"};
  config.platformVersions = {"17.0"};
  config.devices = {"393x852"};
  config.locales = {platform::Locale::current().identifier()};
  return config;
}

std::string snapshotConfigText(const SnapshotConfig& config, const std::filesystem::path& path) {
  const auto folder = std::filesystem::absolute(path).parent_path();
  const auto relative = config.journal.lexically_relative(folder);
  const bool inside = !relative.empty() && *relative.begin() != "..";
  Json json;
  json["journal"] = (inside ? relative : config.journal).string();
  json["now"] = config.now;
  json["timeZone"] = config.timeZone;
  json["seed"] = config.seed;
  json["scale"] = config.scale;
  json["matrix"]["kinds"] = config.kinds;
  json["matrix"]["colorSchemes"] = config.colorSchemes;
  json["matrix"]["renderingModes"] = config.renderingModes;
  json["matrix"]["platformVersions"] = config.platformVersions;
  json["matrix"]["devices"] = config.devices;
  json["matrix"]["locales"] = config.locales;
  return json.dump(2) + "\n";
}

}  // namespace quillan::snapshot
