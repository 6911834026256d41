#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_TEST_PICTURE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_TEST_PICTURE_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "remote_device.h"

namespace simcam {

// Paints a diagonal ramp that moves by one grey level a frame: the pixel in column x of row y is
// (x + y + frame) modulo 256. Stops at the end of `memory`, or soon after `abandon` is set, and
// returns the number of bytes painted.
size_t PaintTestPicture(std::span<std::byte> memory, const Geometry& geometry, uint64_t frame,
                        const std::atomic<bool>& abandon);

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_TEST_PICTURE_H
