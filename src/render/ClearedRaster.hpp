#pragma once

#include <cstddef>
#include <thread>

#include "render/CairoHandles.hpp"

namespace quillan::render {

// The pixels of a picture about to be drawn, cleared on a thread of their own
// from the moment they are asked for: a @3x picture is a few hundred pages,
// and the kernel's clearing of each page at its first touch would otherwise
// come after the layout, on the drawing's own time.
class ClearedRaster {
 public:
  ClearedRaster(int width, int height);
  ~ClearedRaster();
  ClearedRaster(const ClearedRaster&) = delete;
  ClearedRaster& operator=(const ClearedRaster&) = delete;

  // A transparent ARGB32 image surface of the pixels, which frees them when
  // destroyed; once only. Waits for the clearing.
  CairoSurface surface();

 private:
  int width_;
  int height_;
  std::size_t bytes_;
  void* pixels_ = nullptr;
  std::thread clearing_;
};

}  // namespace quillan::render
