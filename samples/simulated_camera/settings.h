// What the environment can change. The variables are read by GCInitLib:
//
//   VEXTREL_CAMERA_RATE     frames per second, 0.1 to 10000, 30 by default
//   VEXTREL_CAMERA_WIDTH    picture width in pixels, 1 to 8192, 640 by default
//   VEXTREL_CAMERA_HEIGHT   picture height in pixels, 1 to 8192, 480 by default
//   VEXTREL_CAMERA_DEVICES  number of devices, 1 to 16, 3 by default
//
// A number out of range is taken as the nearest one in range; anything else that is not a number
// gives the default.
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H

#include <cstdint>

namespace simcam {

inline constexpr double kLowestRate = 0.1;
inline constexpr double kHighestRate = 10000.0;
inline constexpr uint32_t kLargestSide = 8192;
inline constexpr uint32_t kMostDevices = 16;

struct Settings {
  double rate = 30.0;  // frames per second
  uint32_t width = 640;
  uint32_t height = 480;
  uint32_t devices = 3;
};

[[nodiscard]] Settings ReadSettings();

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_SETTINGS_H
