// SPDX-License-Identifier: MIT
// The layout of a frame. The camera with 51 functions sends the image only; the extended camera
// adds a confidence map and two chunks:
//
//   image            Mono8         (x + y + frame) % 256
//   confidence map   Confidence8   255 - the image's pixel
//   frame ID         uint64        chunk 0x1001
//   time stamp       uint64        chunk 0x1002
//
// in this order, without gaps.
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_FRAME_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_FRAME_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "edition.h"
#include "info_value.h"

namespace simulated_camera {

inline constexpr uint32_t kMono8 = 0x01080001;
inline constexpr uint32_t kConfidence8 = 0x010800C6;
inline constexpr uint64_t kPixelFormatNamespacePfnc32 = 4;

inline constexpr uint32_t kPartCount = kExtended ? 2 : 1;
inline constexpr size_t kChunkCount = kExtended ? 2 : 0;
inline constexpr uint64_t kFirstChunkId = 0x1001;
inline constexpr size_t kChunkSize = sizeof(uint64_t);

struct Geometry {
  uint32_t width = 0;
  uint32_t height = 0;

  [[nodiscard]] size_t PartSize() const { return size_t{width} * height; }
  [[nodiscard]] size_t ChunkOffset() const { return kPartCount * PartSize(); }
  [[nodiscard]] size_t PayloadSize() const { return ChunkOffset() + kChunkCount * kChunkSize; }
};

// The last frame of a buffer.
struct FrameRecord {
  bool present = false;  // False until the first frame.
  bool isNew = false;    // Until the buffer is queued again.
  bool incomplete = false;
  size_t filled = 0;  // In bytes.
  Geometry geometry;
  uint64_t id = 0;
  uint64_t timestamp = 0;  // Nanoseconds of a steady clock.
};

// Paints a frame. Stops at the end of `memory`, or soon after `abandon` is set. Returns the number
// of bytes painted.
[[nodiscard]] size_t PaintFrame(std::span<std::byte> memory, const FrameRecord& frame,
                                const std::atomic<bool>& abandon);

// Describes a part of a frame whose first byte is at `base`. REQUIRES: part < kPartCount.
[[nodiscard]] InfoValue PartInfo(const FrameRecord& frame, void* base, uint32_t part,
                                 BUFFER_PART_INFO_CMD command);

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_FRAME_H
