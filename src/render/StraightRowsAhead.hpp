#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>

#include "render/PngEncoder.hpp"

namespace quillan::render {

// Cairo's premultiplied rows as the straight RGBA rows a PNG stores, made on a
// thread of its own a few batches ahead of the one that compresses them, so
// that un-premultiplying a picture costs the compressing thread nothing. The
// rows pass through a few slots reused in turn: little memory, and the rows
// are still in the cache when they are compressed.
class StraightRowsAhead {
 public:
  explicit StraightRowsAhead(const PixelRows& rows);
  // Stops the thread, wherever the reader is.
  ~StraightRowsAhead();
  StraightRowsAhead(const StraightRowsAhead&) = delete;
  StraightRowsAhead& operator=(const StraightRowsAhead&) = delete;

  // Row `y` in straight RGBA; waits until it is made. Rows are read in order,
  // each once: reading row y gives the slots of the rows before it back.
  const std::uint8_t* row(int y);

  // Whether a picture is large enough for the thread to pay for itself.
  static bool worthwhile(const PixelRows& rows);

 private:
  void produce();
  bool waitForFreeSlot(std::size_t batch);
  std::uint8_t* slotOf(std::size_t batch) const;
  void release(std::size_t batch);

  PixelRows rows_;
  std::size_t batchCount_;
  std::size_t rowBytes_;
  std::unique_ptr<std::uint8_t[]> slots_;
  std::atomic<std::size_t> produced_{0};
  std::atomic<std::size_t> released_{0};
  std::size_t reading_ = 0;  // the batch the reader is in
  std::thread thread_;
};

}  // namespace quillan::render
