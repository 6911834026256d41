// SPDX-License-Identifier: MIT
// A producer that keeps its state over GCCloseLib, and a thread that runs until EventKill.
#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>

#include "gentl/gentl.h"

namespace {

// Of this load.
std::atomic<std::uint64_t> inits = 0;
std::atomic<std::uint64_t> runs = 0;
std::atomic<bool> isEnding = false;
std::thread worker;  // NOLINT(cert-err58-cpp)

}  // namespace

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  if (++inits == 1) {
    worker = std::thread([] {
      while (!isEnding) {
        ++runs;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    });
  }
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  return GC_ERR_SUCCESS;
}

// Writes the two counts to where the handle points.
GC_ERROR GC_CALLTYPE DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS /*iStartFlags*/,
                                        uint64_t /*iNumToAcquire*/) {
  auto* counts = static_cast<std::uint64_t*>(hDataStream);
  counts[0] = inits;
  counts[1] = runs;
  return GC_ERR_SUCCESS;
}

GC_ERROR GC_CALLTYPE EventKill(EVENT_HANDLE /*hEvent*/) {
  isEnding = true;
  if (worker.joinable()) {
    worker.join();
  }
  return GC_ERR_SUCCESS;
}
