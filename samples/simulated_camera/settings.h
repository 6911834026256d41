// SPDX-License-Identifier: MIT
// Settings from the environment, read by GCInitLib:
//
//   VEXTREL_CAMERA_RATE     frames per second, 0.1 to 10000 (default 30)
//   VEXTREL_CAMERA_WIDTH    image width in pixels, 1 to 8192 (default 640)
//   VEXTREL_CAMERA_HEIGHT   image height in pixels, 1 to 8192 (default 480)
//   VEXTREL_CAMERA_DEVICES  number of devices, 1 to 16 (default 3)
//
// and its faults, which it has none of unless they're asked for:
//
//   VEXTREL_CAMERA_LOSE        loses one of so many frames, 2 to 1000000
//   VEXTREL_CAMERA_INCOMPLETE  leaves the second half of one of so many frames out, 1 to 1000000
//   VEXTREL_CAMERA_STALL       pauses for so many milliseconds before each 12th frame, 1 to 10000
//   VEXTREL_CAMERA_SLOW        takes so many milliseconds to stop, 1 to 10000
//   VEXTREL_CAMERA_QUIRK       does one thing wrong; quirks.h has the names
//
// Numbers out of range are clamped; anything but a number selects the default, and anything but
// the name of a quirk selects none.
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H

#include <cstdint>

#include "quirks.h"

namespace simulated_camera {

inline constexpr double kLowestRate = 0.1;
inline constexpr double kHighestRate = 10000.0;
inline constexpr uint32_t kLargestSide = 8192;
inline constexpr uint32_t kMostDevices = 16;
inline constexpr uint32_t kRarest = 1000000;
inline constexpr uint32_t kLongestPause = 10000;

struct Settings {
  double rate = 30.0;  // Frames per second.
  uint32_t width = 640;
  uint32_t height = 480;
  uint32_t devices = 3;
  // One of so many frames; 0 for none.
  uint32_t lose = 0;
  uint32_t incomplete = 0;
  // In milliseconds.
  uint32_t stall = 0;
  uint32_t slow = 0;
  Quirk quirk = Quirk::None;
};

[[nodiscard]] Settings ReadSettings();

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H
