// SPDX-License-Identifier: MIT
#include "frame.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "settings.h"

namespace simulated_camera {
namespace {

constexpr size_t kLevels = 256;

// Long enough for a row to start at any gray level.
using Ramp = std::array<uint8_t, kLargestSide + kLevels>;

constexpr Ramp MakeRamp(bool falling) {
  Ramp ramp{};
  for (size_t i = 0; i < ramp.size(); ++i) {
    const size_t level = i % kLevels;
    ramp[i] = static_cast<uint8_t>(falling ? kLevels - 1 - level : level);
  }
  return ramp;
}

constexpr Ramp kImageRamp = MakeRamp(false);
constexpr Ramp kConfidenceRamp = MakeRamp(true);

// Returns the number of bytes painted.
size_t PaintPart(std::span<std::byte> memory, const Ramp& ramp, const FrameRecord& frame,
                 const std::atomic<bool>& abandon) {
  const size_t end = std::min(memory.size(), frame.geometry.PartSize());
  size_t painted = 0;
  for (uint64_t row = frame.id; painted < end && !abandon; ++row) {
    const size_t length = std::min<size_t>(frame.geometry.width, end - painted);
    std::memcpy(memory.data() + painted, ramp.data() + row % kLevels, length);
    painted += length;
  }
  return painted;
}

}  // namespace

size_t PaintFrame(std::span<std::byte> memory, const FrameRecord& frame,
                  const std::atomic<bool>& abandon) {
  size_t painted = PaintPart(memory, kImageRamp, frame, abandon);
  if constexpr (kExtended) {
    painted += PaintPart(memory.subspan(painted), kConfidenceRamp, frame, abandon);
    const std::array chunks{frame.id, frame.timestamp};
    const size_t length = std::min(memory.size() - painted, sizeof chunks);
    if (painted == frame.geometry.ChunkOffset()) {
      std::memcpy(memory.data() + painted, chunks.data(), length);
      painted += length;
    }
  }
  return painted;
}

InfoValue PartInfo(const FrameRecord& frame, void* base, uint32_t part,
                   BUFFER_PART_INFO_CMD command) {
  const Geometry& geometry = frame.geometry;
  const size_t offset = part * geometry.PartSize();
  const size_t filled =
      std::min(frame.filled - std::min(frame.filled, offset), geometry.PartSize());
  switch (command) {
    case BUFFER_PART_INFO_BASE:
      return InfoValue::Pointer(static_cast<std::byte*>(base) + offset);
    case BUFFER_PART_INFO_DATA_SIZE:
      return InfoValue::Size(filled);
    case BUFFER_PART_INFO_DATA_TYPE:
      return InfoValue::Size(part == 0 ? PART_DATATYPE_2D_IMAGE : PART_DATATYPE_CONFIDENCE_MAP);
    case BUFFER_PART_INFO_DATA_FORMAT:
      return InfoValue::UInt64(part == 0 ? kMono8 : kConfidence8);
    case BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE:
      return InfoValue::UInt64(kPixelFormatNamespacePfnc32);
    case BUFFER_PART_INFO_WIDTH:
      return InfoValue::Size(geometry.width);
    case BUFFER_PART_INFO_HEIGHT:
      return InfoValue::Size(geometry.height);
    case BUFFER_PART_INFO_XOFFSET:
    case BUFFER_PART_INFO_YOFFSET:
    case BUFFER_PART_INFO_XPADDING:
      return InfoValue::Size(0);
    case BUFFER_PART_INFO_SOURCE_ID:
    case BUFFER_PART_INFO_REGION_ID:
      return InfoValue::UInt64(0);
    case BUFFER_PART_INFO_DATA_PURPOSE_ID:
      return InfoValue::UInt64(part);
    case BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT:
      return InfoValue::Size(filled / geometry.width);
    default:
      RefuseCommand(command);
  }
}

}  // namespace simulated_camera
