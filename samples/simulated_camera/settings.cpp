// SPDX-License-Identifier: MIT
#include "settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "platform.h"

namespace simulated_camera {
namespace {

double NumberOf(const char* variable, double fallback, double lowest, double highest) {
  const auto text = EnvironmentVariable(variable);
  if (!text) {
    return fallback;
  }
  double number = 0;
  const char* const end = text->data() + text->size();
  const auto [stop, error] = std::from_chars(text->data(), end, number);
  if (error != std::errc{} || stop != end || !std::isfinite(number)) {
    return fallback;
  }
  return std::clamp(number, lowest, highest);
}

uint32_t CountOf(const char* variable, uint32_t fallback, uint32_t highest) {
  return static_cast<uint32_t>(NumberOf(variable, fallback, 1, highest));
}

}  // namespace

Settings ReadSettings() {
  const Settings defaults;
  Settings settings;
  settings.rate = NumberOf("VEXTREL_CAMERA_RATE", defaults.rate, kLowestRate, kHighestRate);
  settings.width = CountOf("VEXTREL_CAMERA_WIDTH", defaults.width, kLargestSide);
  settings.height = CountOf("VEXTREL_CAMERA_HEIGHT", defaults.height, kLargestSide);
  settings.devices = CountOf("VEXTREL_CAMERA_DEVICES", defaults.devices, kMostDevices);
  settings.lose = static_cast<uint32_t>(NumberOf("VEXTREL_CAMERA_LOSE", 0, 2, kRarest));
  settings.incomplete = static_cast<uint32_t>(NumberOf("VEXTREL_CAMERA_INCOMPLETE", 0, 1, kRarest));
  settings.stall = CountOf("VEXTREL_CAMERA_STALL", 0, kLongestPause);
  settings.slow = CountOf("VEXTREL_CAMERA_SLOW", 0, kLongestPause);
  settings.quirk = QuirkNamed(EnvironmentVariable("VEXTREL_CAMERA_QUIRK").value_or(""));
  return settings;
}

}  // namespace simulated_camera
