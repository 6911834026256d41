// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "platform.h"

namespace simulated_camera {

// Calls a function at a steady rate, on a thread of its own.
class Pacer {
 public:
  // Calls `tick` rate() times per second until it returns false or the pacer is destroyed. Makes up
  // for late ticks. Throws std::system_error if no thread can be started.
  Pacer(std::function<double()> rate, std::function<bool()> tick);
  // Waits for a running tick to return.
  ~Pacer();
  Pacer(const Pacer&) = delete;
  Pacer& operator=(const Pacer&) = delete;

 private:
  void Run();

  const std::function<double()> rate_;
  const std::function<bool()> tick_;
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool stop_ = false;
  const ModulePin pin_;
  std::thread thread_;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H
