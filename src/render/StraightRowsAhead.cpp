#include "render/StraightRowsAhead.hpp"

#include <algorithm>
#include <limits>

#include "render/StraightAlpha.hpp"

namespace quillan::render {
namespace {

constexpr std::size_t kRowsPerBatch = 8;
constexpr std::size_t kSlots = 3;
constexpr std::size_t kStopped = std::numeric_limits<std::size_t>::max();
// Below about a small widget at @1x, starting a thread costs more than it saves.
constexpr std::size_t kSmallestWorthwhilePixels = 128 * 1024;

}  // namespace

StraightRowsAhead::StraightRowsAhead(const PixelRows& rows)
    : rows_(rows),
      batchCount_((static_cast<std::size_t>(rows.height) + kRowsPerBatch - 1) / kRowsPerBatch),
      rowBytes_(static_cast<std::size_t>(rows.width) * 4),
      // Left unset: the thread writes each byte before it is read.
      slots_(std::make_unique_for_overwrite<std::uint8_t[]>(kSlots * kRowsPerBatch * rowBytes_)),
      thread_([this] { produce(); }) {}

StraightRowsAhead::~StraightRowsAhead() {
  released_.store(kStopped);
  released_.notify_one();
  thread_.join();
}

bool StraightRowsAhead::worthwhile(const PixelRows& rows) {
  return rows.premultipliedArgb &&
         static_cast<std::size_t>(rows.width) * static_cast<std::size_t>(rows.height) >= kSmallestWorthwhilePixels;
}

const std::uint8_t* StraightRowsAhead::row(int y) {
  const std::size_t batch = static_cast<std::size_t>(y) / kRowsPerBatch;
  if (batch != reading_) {
    release(reading_);
    reading_ = batch;
  }
  for (auto made = produced_.load(); made <= batch; made = produced_.load()) produced_.wait(made);
  return slotOf(batch) + (static_cast<std::size_t>(y) % kRowsPerBatch) * rowBytes_;
}

void StraightRowsAhead::produce() {
  for (std::size_t batch = 0; batch < batchCount_; ++batch) {
    if (!waitForFreeSlot(batch)) return;
    const std::size_t first = batch * kRowsPerBatch;
    const std::size_t count = std::min(kRowsPerBatch, static_cast<std::size_t>(rows_.height) - first);
    std::uint8_t* target = slotOf(batch);
    for (std::size_t y = first; y < first + count; ++y, target += rowBytes_) {
      toStraightRgba(rows_.data + y * static_cast<std::size_t>(rows_.stride), target, rows_.width);
    }
    produced_.store(batch + 1);
    produced_.notify_one();
  }
}

bool StraightRowsAhead::waitForFreeSlot(std::size_t batch) {
  for (auto released = released_.load();; released = released_.load()) {
    if (released == kStopped) return false;
    if (batch - released < kSlots) return true;
    released_.wait(released);
  }
}

std::uint8_t* StraightRowsAhead::slotOf(std::size_t batch) const {
  return slots_.get() + (batch % kSlots) * kRowsPerBatch * rowBytes_;
}

void StraightRowsAhead::release(std::size_t batch) {
  released_.store(batch + 1);
  released_.notify_one();
}

}  // namespace quillan::render
