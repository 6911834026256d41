// SPDX-License-Identifier: MIT
// Operations on the handle registry, in step with its model: the same results, lines and records.
#include <fuzzer/FuzzedDataProvider.h>
#include <sanitizer/lsan_interface.h>

#include <cstddef>
#include <cstdint>
#include <stdexcept>

#include "check.h"
#include "registry/registry_pair.h"
#include "registry/transport_layer_node.h"

namespace {

// One for the whole run. The registry leaks by design, so leak detection is off.
struct Log {
  Log() {
    __lsan_disable();
    recorder.Record(category);
  }
  log4cpp::Category& category = log4cpp::Category::getInstance("registry");
  vextrel_test::LineRecorder& recorder = *new vextrel_test::LineRecorder;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static Log log;
  FuzzedDataProvider data(bytes, size);
  const vextrel_test::Dice dice = [&](std::uint64_t count) {
    return data.ConsumeIntegralInRange<std::uint64_t>(0, count - 1);
  };
  void* transportLayer = reinterpret_cast<void*>(dice(0x11));
  vextrel_test::RegistryPair pair(transportLayer, log.category, log.recorder);
  try {
    while (data.remaining_bytes() > 0) {
      pair.Step(dice);
    }
    pair.Report();
  } catch (const std::runtime_error& difference) {
    vextrel_fuzz::Check(false, difference.what());
  }
  pair.DeleteRecords();
  return 0;
}
