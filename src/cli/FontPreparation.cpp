#include "cli/FontPreparation.hpp"

namespace quillan::cli {

FontPreparation::FontPreparation(std::chrono::milliseconds patience, Work work)
    : thread_([this, patience, work = std::move(work)] { prepareUnlessFinishedWithin(patience, work); }) {}

FontPreparation::~FontPreparation() { finish(); }

void FontPreparation::finish() {
  {
    const std::lock_guard lock(mutex_);
    finished_ = true;
  }
  viewReady_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void FontPreparation::prepareUnlessFinishedWithin(std::chrono::milliseconds patience, const Work& work) {
  {
    std::unique_lock lock(mutex_);
    if (viewReady_.wait_for(lock, patience, [this] { return finished_; })) return;
  }
  try {
    work();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the drawing that follows reports it
  }
}

}  // namespace quillan::cli
