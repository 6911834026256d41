// SPDX-License-Identifier: MIT
// Arbitrary bytes where a log is expected.
#include <cstddef>
#include <cstdint>
#include <string>

#include "program_run.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  vextrel_fuzz::RunProgramOn({reinterpret_cast<const char*>(bytes), size});
  return 0;
}
