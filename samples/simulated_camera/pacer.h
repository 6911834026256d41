#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "platform.h"

namespace simcam {

// Does something at a steady pace, on a thread of its own.
class Pacer {
 public:
  // Calls `tick` as often per second as `rate` tells, until it returns false or the pacer is
  // destroyed; waits that came out too long are made up for. Throws std::system_error if there
  // can be no thread.
  Pacer(std::function<double()> rate, std::function<bool()> tick);
  // Waits for a tick under way.
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

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_PACER_H
