#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "pages/EntryPictures.hpp"
#include "platform/Date.hpp"
#include "render/DeviceProfile.hpp"
#include "render/DrawingFunctions.hpp"
#include "render/HitTest.hpp"
#include "replay/EvaluationPipeline.hpp"
#include "replay/PictureCache.hpp"
#include "views/Environment.hpp"
#include "worker/WidgetWorker.hpp"

namespace quillan::replay {

// Why an entry could not be drawn: the extension stopped, or its tree was unusable.
struct EntryFailure {
  std::string reason;
};

// Draws the entries a replay shows. The views are built by the extension in
// the pipeline's workers, with the clock pinned to the moment the entry is shown and the
// journal the replay reads; the host draws them with `drawing`, in light and
// in dark.
class EntryPainter {
 public:
  // The display environment the host gives a widget of `family`.
  using EnvironmentOf = std::function<views::Environment(views::WidgetFamily)>;

  EntryPainter(EvaluationPipeline& views, worker::ProcessSettings settings, EnvironmentOf environment,
               render::DeviceProfile device, std::filesystem::path output, const render::DrawingFunctions& drawing);

  // An entry shown at `at`, about to be painted.
  struct ShownEntry {
    std::string kind;
    platform::Date entryDate;
    platform::Date at;
  };
  // The entries to be painted next, in order: their views are evaluated ahead.
  void expect(const std::vector<ShownEntry>& entries);
  // Forgets what was expected and not painted.
  void forgetExpected() { views_.forgetExpected(); }
  // Tells the workers of the replay's own writes into its journal.
  void hear(const worker::JournalWriteNotice& notice) { views_.hear(notice); }

  // Writes <kind>/<sequence>-light.png, -dark.png and .json under the output
  // folder. A failed evaluation is returned, not thrown: the replay goes on.
  std::variant<pages::EntryPictures, EntryFailure> paint(const std::string& kind, platform::Date entryDate,
                                                         platform::Date at, int sequence);

  // Pixels per point of the pictures: enough to read, a third of the size of
  // the phone's @3x for a replay that draws hundreds of them.
  static constexpr double kScale = 2;
  // What the pictures drawn once are kept in: a week of every widget draws
  // about eighty different pictures of some tens of kilobytes.
  static constexpr std::size_t kPictureCacheBytes = 32 * 1024 * 1024;

 private:
  struct Drawn {
    std::string treeJson;
    render::RenderContext context;
    std::string pictureKey;
  };
  std::variant<Drawn, EntryFailure> draw(const std::string& kind, platform::Date entryDate, platform::Date at,
                                         views::ColorScheme scheme, const std::filesystem::path& file);
  worker::ViewEvaluation evaluationOf(const std::string& kind, platform::Date entryDate, platform::Date at,
                                      views::ColorScheme scheme) const;
  std::optional<EntryFailure> drawPicture(const Drawn& drawn, const std::filesystem::path& file);
  std::vector<render::HitRegion> regionsOf(const Drawn& drawn);

  EvaluationPipeline& views_;
  worker::ProcessSettings settings_;
  EnvironmentOf environment_;
  render::DeviceProfile device_;
  std::filesystem::path output_;
  const render::DrawingFunctions& drawing_;
  PictureCache pictures_{kPictureCacheBytes};
};

}  // namespace quillan::replay
