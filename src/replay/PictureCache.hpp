#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "render/HitTest.hpp"
#include "render/RenderContext.hpp"

namespace quillan::replay {

// A picture drawn once, and the tap targets of its tree once they are asked for.
struct CachedPicture {
  std::vector<std::uint8_t> png;
  std::optional<std::vector<render::HitRegion>> regions;
};

// The PNGs a replay has drawn, by what decides their every byte: the view
// tree's JSON and the context it is drawn in. Drawing is deterministic, and a
// replay shows the same few trees again and again (a widget whose entry is
// shown again after each of the app's reloads, the lock screen all week), so a
// tree met again is not laid out, painted and compressed again. What else the
// drawing reads (the process's locale, its fonts) stays as it is for the whole
// command, as long as a cache lives. Bounded by the bytes it holds: the
// pictures least recently asked for go first.
class PictureCache {
 public:
  explicit PictureCache(std::size_t byteLimit) : byteLimit_(byteLimit) {}

  static std::string keyOf(const std::string& treeJson, const render::RenderContext& context);

  // The picture kept under `key`, now the most recently used; null if none is.
  CachedPicture* find(const std::string& key);
  // Keeps `picture` under `key`, replacing what was kept there; a picture
  // larger than the whole limit is not kept.
  void insert(const std::string& key, CachedPicture picture);

  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    std::string key;
    CachedPicture picture;
  };
  using Entries = std::list<Entry>;

  static std::size_t bytesOf(const Entry& entry);
  void evictBeyond(std::size_t limit);

  std::size_t byteLimit_;
  std::size_t bytes_ = 0;
  Entries entries_;  // most recently used first
  std::unordered_map<std::string, Entries::iterator> index_;
};

}  // namespace quillan::replay
