#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace quillan::cli {

// Loads the drawing module and the body font on a thread of its own while the
// command works out a widget's view, so that drawing does not then wait for
// fontconfig. A view that is ready within `patience` (one that reads nothing
// from the journal) is drawn without it: it would only make that picture wait
// for fonts it may not need.
//
// `finish()` (or the destructor) returns once the thread is done, and must be
// called before drawing. A failure here is left for the drawing to report: it
// loads the same module again and fails with the same one line.
class FontPreparation {
 public:
  using Work = std::function<void()>;
  // `work` is what loads the module and the fonts (the command's
  // prepareDrawingFonts); tests put their own, and their own patience. A
  // view that reads nothing is ready in a fraction of a millisecond, and a
  // millisecond more of waiting is what every other picture pays.
  explicit FontPreparation(Work work) : FontPreparation(std::chrono::milliseconds(1), std::move(work)) {}
  FontPreparation(std::chrono::milliseconds patience, Work work);
  ~FontPreparation();
  FontPreparation(const FontPreparation&) = delete;
  FontPreparation& operator=(const FontPreparation&) = delete;

  void finish();

 private:
  void prepareUnlessFinishedWithin(std::chrono::milliseconds patience, const Work& work);

  std::mutex mutex_;
  std::condition_variable viewReady_;
  bool finished_ = false;
  std::thread thread_;
};

}  // namespace quillan::cli
