// SPDX-License-Identifier: MIT
#include "pacer.h"

#include <chrono>
#include <utility>

namespace simulated_camera {
namespace {

using Clock = std::chrono::steady_clock;

// After a longer delay, such as a suspended process, the schedule starts over.
constexpr auto kMostToMakeUp = std::chrono::milliseconds(200);

}  // namespace

Pacer::Pacer(std::function<double()> rate, std::function<bool()> tick)
    : rate_(std::move(rate)), tick_(std::move(tick)), thread_([this] { Run(); }) {}

Pacer::~Pacer() {
  {
    const std::scoped_lock lock(mutex_);
    stop_ = true;
  }
  stopped_.notify_all();
  thread_.join();
}

void Pacer::Run() {
  auto next = Clock::now();
  std::unique_lock lock(mutex_);
  for (;;) {
    const std::chrono::duration<double> period(1.0 / rate_());
    next += std::chrono::duration_cast<Clock::duration>(period);
    if (const auto now = Clock::now(); now - next > kMostToMakeUp) {
      next = now;
    }
    if (stopped_.wait_until(lock, next, [this] { return stop_; })) {
      return;
    }
    lock.unlock();
    const bool more = tick_();
    lock.lock();
    if (!more) {
      return;
    }
  }
}

}  // namespace simulated_camera
