#include "test_picture.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace simcam {
namespace {

constexpr size_t kLevels = 256;

// Long enough for a row to start at any grey level.
using Ramp = std::array<uint8_t, kLargestSide + kLevels>;

constexpr Ramp MakeRamp() {
  Ramp ramp{};
  for (size_t i = 0; i < ramp.size(); ++i) {
    ramp[i] = static_cast<uint8_t>(i % kLevels);
  }
  return ramp;
}

constexpr Ramp kRamp = MakeRamp();

}  // namespace

size_t PaintTestPicture(std::span<std::byte> memory, const Geometry& geometry, uint64_t frame,
                        const std::atomic<bool>& abandon) {
  const size_t end = std::min(memory.size(), geometry.PayloadSize());
  size_t painted = 0;
  for (uint64_t row = frame; painted < end && !abandon; ++row) {
    const size_t length = std::min<size_t>(geometry.width, end - painted);
    std::memcpy(memory.data() + painted, kRamp.data() + row % kLevels, length);
    painted += length;
  }
  return painted;
}

}  // namespace simcam
