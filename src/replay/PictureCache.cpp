#include "replay/PictureCache.hpp"

#include <cstdio>

namespace quillan::replay {
namespace {

// Exact, so that two sizes or scales never share a key through rounding.
std::string exactText(double value) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%a", value);
  return buffer;
}

}  // namespace

std::string PictureCache::keyOf(const std::string& treeJson, const render::RenderContext& context) {
  const auto& env = context.env;
  const auto size = context.device.sizeOf(env.family);
  std::string key = treeJson;
  key += '\0';
  for (const int field :
       {static_cast<int>(env.colorScheme), static_cast<int>(env.renderingMode), env.platformVersion.major,
        env.platformVersion.minor, static_cast<int>(env.family), static_cast<int>(env.layoutDirection),
        static_cast<int>(env.dynamicTypeSize), static_cast<int>(context.redacted)}) {
    key += std::to_string(field) + ' ';
  }
  key += context.device.name + ' ';
  for (const double value : {context.device.scale, size.width, size.height, context.scale}) {
    key += exactText(value) + ' ';
  }
  return key;
}

CachedPicture* PictureCache::find(const std::string& key) {
  const auto found = index_.find(key);
  if (found == index_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  return &found->second->picture;
}

void PictureCache::insert(const std::string& key, CachedPicture picture) {
  if (const auto found = index_.find(key); found != index_.end()) {
    bytes_ -= bytesOf(*found->second);
    entries_.erase(found->second);
    index_.erase(found);
  }
  Entry entry{key, std::move(picture)};
  const auto bytes = bytesOf(entry);
  if (bytes > byteLimit_) return;
  evictBeyond(byteLimit_ - bytes);
  entries_.push_front(std::move(entry));
  index_.emplace(key, entries_.begin());
  bytes_ += bytes;
}

// The key is counted twice: the list's and the index's copy.
std::size_t PictureCache::bytesOf(const Entry& entry) { return entry.picture.png.size() + 2 * entry.key.size(); }

void PictureCache::evictBeyond(std::size_t limit) {
  while (bytes_ > limit && !entries_.empty()) {
    bytes_ -= bytesOf(entries_.back());
    index_.erase(entries_.back().key);
    entries_.pop_back();
  }
}

}  // namespace quillan::replay
