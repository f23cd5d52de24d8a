#include "render/PipelinedPngEncoder.hpp"

#include <zlib.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <thread>

#include "render/Renderer.hpp"
#include "render/StraightAlpha.hpp"

namespace quillan::render {
namespace {

// What libpng does with the default settings, which the bytes must match:
// zlib at level 2 over unfiltered rows, its output cut into an IDAT chunk each
// time libpng's 8 KiB compression buffer fills. Pictures of at most 16 KiB of
// rows get a narrower window from libpng.
constexpr int kZlibLevel = 2;
constexpr std::size_t kIdatBytes = 8192;
constexpr std::size_t kLargestNarrowedPicture = 16384;
constexpr std::uint8_t kNoFilter = 0;

// Rows travel between the threads in batches, through a few slots reused in
// turn: enough to keep both threads busy, few enough to stay in the cache.
constexpr int kRowsPerBatch = 8;
constexpr std::size_t kSlots = 3;
constexpr std::size_t kAbandoned = std::numeric_limits<std::size_t>::max();

std::size_t rowBytes(const PixelRows& rows) { return 1 + static_cast<std::size_t>(rows.width) * 4; }

// Cairo's rows as the PNG's, made on one thread and compressed on another.
class RowBatches {
 public:
  explicit RowBatches(const PixelRows& rows)
      : rows_(rows),
        batchCount_((static_cast<std::size_t>(rows.height) + kRowsPerBatch - 1) / kRowsPerBatch),
        // Left unset: the second thread writes each byte before it is read.
        slots_(std::make_unique_for_overwrite<std::uint8_t[]>(kSlots * kRowsPerBatch * rowBytes(rows))) {}

  std::size_t count() const { return batchCount_; }

  // The second thread's part: every batch in turn, each once a slot is free.
  void produce() {
    for (std::size_t batch = 0; batch < batchCount_; ++batch) {
      if (!waitForFreeSlot(batch)) return;
      const auto bytes = fill(batch);
      checksum_ = adler32_z(checksum_, bytes.data(), bytes.size());
      produced_.store(batch + 1);
      produced_.notify_one();
    }
  }

  std::span<const std::uint8_t> waitFor(std::size_t batch) {
    for (auto made = produced_.load(); made <= batch; made = produced_.load()) produced_.wait(made);
    return slotOf(batch);
  }

  void release(std::size_t batch) {
    consumed_.store(batch + 1);
    consumed_.notify_one();
  }

  // Lets the second thread end without converting the rest.
  void abandon() {
    consumed_.store(kAbandoned);
    consumed_.notify_one();
  }

  // zlib's checksum of every row; read once the second thread has ended.
  uLong checksum() const { return checksum_; }

 private:
  bool waitForFreeSlot(std::size_t batch) {
    for (auto done = consumed_.load();; done = consumed_.load()) {
      if (done == kAbandoned) return false;
      if (batch - done < kSlots) return true;
      consumed_.wait(done);
    }
  }

  std::size_t rowsIn(std::size_t batch) const {
    const std::size_t first = batch * kRowsPerBatch;
    return std::min<std::size_t>(kRowsPerBatch, static_cast<std::size_t>(rows_.height) - first);
  }

  std::span<std::uint8_t> slotOf(std::size_t batch) {
    const std::size_t size = kRowsPerBatch * rowBytes(rows_);
    return {slots_.get() + (batch % kSlots) * size, rowsIn(batch) * rowBytes(rows_)};
  }

  std::span<std::uint8_t> fill(std::size_t batch) {
    const auto slot = slotOf(batch);
    std::uint8_t* target = slot.data();
    for (std::size_t i = 0; i < rowsIn(batch); ++i, target += rowBytes(rows_)) {
      const std::size_t y = batch * kRowsPerBatch + i;
      *target = kNoFilter;
      toStraightRgba(rows_.data + y * static_cast<std::size_t>(rows_.stride), target + 1, rows_.width);
    }
    return slot;
  }

  PixelRows rows_;
  std::size_t batchCount_;
  std::unique_ptr<std::uint8_t[]> slots_;
  std::atomic<std::size_t> produced_{0};
  std::atomic<std::size_t> consumed_{0};
  uLong checksum_ = adler32_z(0, nullptr, 0);
};

// A raw deflate stream: the zlib header and checksum are written around it, the
// checksum summed on the other thread.
class RawDeflate {
 public:
  RawDeflate() {
    if (deflateInit2(&stream_, kZlibLevel, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
      throw RenderError("cannot encode a PNG: zlib cannot start");
  }
  ~RawDeflate() { deflateEnd(&stream_); }
  RawDeflate(const RawDeflate&) = delete;
  RawDeflate& operator=(const RawDeflate&) = delete;

  void compress(std::span<const std::uint8_t> input, bool last, std::vector<std::uint8_t>& output) {
    stream_.next_in = const_cast<Bytef*>(input.data());
    stream_.avail_in = static_cast<uInt>(input.size());
    const int flush = last ? Z_FINISH : Z_NO_FLUSH;
    for (;;) {
      const std::size_t start = output.size();
      output.resize(start + kIdatBytes);
      stream_.next_out = output.data() + start;
      stream_.avail_out = static_cast<uInt>(kIdatBytes);
      const int status = deflate(&stream_, flush);
      output.resize(output.size() - stream_.avail_out);
      if (status == Z_STREAM_END) return;
      if (status != Z_OK && status != Z_BUF_ERROR) throw RenderError("cannot encode a PNG: zlib failed");
      if (stream_.avail_in == 0 && !last && stream_.avail_out != 0) return;
    }
  }

 private:
  z_stream stream_{};
};

void appendBigEndian(std::vector<std::uint8_t>& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendChunk(std::vector<std::uint8_t>& out, const char (&type)[5], std::span<const std::uint8_t> data) {
  appendBigEndian(out, static_cast<std::uint32_t>(data.size()));
  const std::size_t typeAt = out.size();
  out.insert(out.end(), type, type + 4);
  out.insert(out.end(), data.begin(), data.end());
  appendBigEndian(out, static_cast<std::uint32_t>(crc32_z(0, out.data() + typeAt, out.size() - typeAt)));
}

// As zlib writes it for a 32 KiB window at this level.
void appendZlibHeader(std::vector<std::uint8_t>& out) {
  const unsigned levelFlags = kZlibLevel < 2 ? 0 : kZlibLevel < 6 ? 1 : kZlibLevel == 6 ? 2 : 3;
  unsigned header = (Z_DEFLATED + ((MAX_WBITS - 8) << 4)) << 8 | levelFlags << 6;
  header += 31 - header % 31;
  out.push_back(static_cast<std::uint8_t>(header >> 8));
  out.push_back(static_cast<std::uint8_t>(header));
}

std::vector<std::uint8_t> header(const PixelRows& rows) {
  std::vector<std::uint8_t> out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<std::uint8_t> fields;
  appendBigEndian(fields, static_cast<std::uint32_t>(rows.width));
  appendBigEndian(fields, static_cast<std::uint32_t>(rows.height));
  const std::uint8_t depth = 8, rgba = 6, deflated = 0, adaptive = 0, notInterlaced = 0;
  fields.insert(fields.end(), {depth, rgba, deflated, adaptive, notInterlaced});
  appendChunk(out, "IHDR", fields);
  return out;
}

// Compresses the batches as the other thread makes them.
std::vector<std::uint8_t> zlibStream(RowBatches& batches, const PixelRows& rows) {
  std::vector<std::uint8_t> stream;
  // Widgets compress to about a thirtieth of their rows.
  stream.reserve(static_cast<std::size_t>(rows.height) * rowBytes(rows) / 32);
  appendZlibHeader(stream);
  RawDeflate deflater;
  for (std::size_t batch = 0; batch < batches.count(); ++batch) {
    deflater.compress(batches.waitFor(batch), batch + 1 == batches.count(), stream);
    batches.release(batch);
  }
  return stream;
}

}  // namespace

std::vector<std::uint8_t> encodePNGPipelined(const PixelRows& rows) {
  const std::size_t pictureBytes = static_cast<std::size_t>(rows.height) * rowBytes(rows);
  if (!rows.premultipliedArgb || rows.width <= 0 || pictureBytes <= kLargestNarrowedPicture) return encodePNG(rows);
  RowBatches batches(rows);
  std::thread converter([&batches] { batches.produce(); });
  std::vector<std::uint8_t> stream;
  try {
    stream = zlibStream(batches, rows);
  } catch (...) {
    batches.abandon();
    converter.join();
    throw;
  }
  converter.join();
  appendBigEndian(stream, static_cast<std::uint32_t>(batches.checksum()));

  std::vector<std::uint8_t> png = header(rows);
  png.reserve(png.size() + stream.size() + (stream.size() / kIdatBytes + 2) * 12);
  for (std::size_t at = 0; at < stream.size(); at += kIdatBytes) {
    appendChunk(png, "IDAT", std::span(stream).subspan(at, std::min(kIdatBytes, stream.size() - at)));
  }
  appendChunk(png, "IEND", {});
  return png;
}

}  // namespace quillan::render
