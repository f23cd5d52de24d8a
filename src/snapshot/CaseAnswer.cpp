#include "snapshot/CaseAnswer.hpp"

#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "hosting/UsageError.hpp"

namespace quillan::snapshot {
namespace {

// An answer's first byte.
constexpr char kResult = 'r';
constexpr char kUsageError = 'u';
constexpr char kError = 'e';

void appendNumber(std::string& out, std::uint64_t number) {
  out.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void appendField(std::string& out, std::string_view field) {
  appendNumber(out, field.size());
  out.append(field);
}

// Reads the fields of a result in the order they were appended. The results
// come from this program's own workers over a pipe: a short one is a bug.
class FieldReader {
 public:
  explicit FieldReader(std::string_view encoded) : rest_(encoded) {}

  std::uint64_t number() {
    std::uint64_t value = 0;
    std::memcpy(&value, take(sizeof value).data(), sizeof value);
    return value;
  }

  std::string_view field() { return take(static_cast<std::size_t>(number())); }

 private:
  std::string_view take(std::size_t size) {
    if (rest_.size() < size) throw std::logic_error("snapshot: a worker's answer is cut short");
    const auto taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }

  std::string_view rest_;
};

}  // namespace

std::string answerOf(const std::function<std::string()>& work) {
  try {
    return kResult + work();
  } catch (const hosting::UsageError& error) {
    return kUsageError + std::string(error.what());
  } catch (const std::exception& error) {
    return kError + std::string(error.what());
  }
}

std::string resultOf(std::string_view answer) {
  const std::string rest(answer.substr(1));
  if (answer.front() == kUsageError) throw hosting::UsageError(rest);
  if (answer.front() == kError) throw std::runtime_error(rest);
  return rest;
}

std::string encodePicture(const SnapshotPicture& picture) {
  std::string out;
  appendField(out, picture.viewJson);
  appendField(out, {reinterpret_cast<const char*>(picture.png.data()), picture.png.size()});
  return out;
}

SnapshotPicture decodePicture(std::string_view encoded) {
  FieldReader reader(encoded);
  SnapshotPicture picture;
  picture.viewJson = reader.field();
  const auto png = reader.field();
  picture.png.assign(png.begin(), png.end());
  return picture;
}

std::string encodeVerdict(const SnapshotVerdict& verdict) {
  std::string out;
  appendField(out, verdict.caseName);
  appendField(out, verdict.problem);
  appendNumber(out, verdict.difference ? 1 : 0);
  if (!verdict.difference) return out;
  const auto& image = *verdict.difference;
  appendNumber(out, static_cast<std::uint64_t>(image.width));
  appendNumber(out, static_cast<std::uint64_t>(image.height));
  appendField(out, {reinterpret_cast<const char*>(image.pixels.data()), image.pixels.size() * sizeof image.pixels[0]});
  return out;
}

SnapshotVerdict decodeVerdict(std::string_view encoded) {
  FieldReader reader(encoded);
  SnapshotVerdict verdict;
  verdict.caseName = reader.field();
  verdict.problem = reader.field();
  if (reader.number() == 0) return verdict;
  const auto width = static_cast<int>(reader.number());
  const auto height = static_cast<int>(reader.number());
  render::PixelImage image(width, height);
  const auto pixels = reader.field();
  if (pixels.size() != image.pixels.size() * sizeof image.pixels[0])
    throw std::logic_error("snapshot: a worker's difference image is cut short");
  std::memcpy(image.pixels.data(), pixels.data(), pixels.size());
  verdict.difference = std::move(image);
  return verdict;
}

}  // namespace quillan::snapshot
