// SPDX-License-Identifier: MIT
// All functions made alike: each takes its arguments as 64-bit patterns, so that a test needs no
// code of its own for any of them.
#ifndef VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H
#define VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "support/gentl_functions.h"

namespace vextrel_test {

// The arguments in order, zero past the last one.
using Patterns = std::array<std::uint64_t, kMaxArguments>;

struct UniformFunction {
  std::string name;
  Roles roles{};
  // The size of what each argument points to; 0 if unknown.
  std::array<std::size_t, kMaxArguments> pointeeSizes{};
  // The patterns after a pass through the parameters, which may be narrower.
  std::function<Patterns(const Patterns&)> narrow;
  // Calls the function of that name.
  std::function<GC_ERROR(const GenTLFunctions&, const Patterns&)> call;
  // Has a scripted target answer calls of the function with onTargetCall.
  std::function<void(GenTLFunctions&)> play;
};

// What the target does in a call. REQUIRES: nobody sets it while a call is running.
extern std::function<GC_ERROR(const Patterns&)> onTargetCall;

// In the order of the interface.
[[nodiscard]] const std::vector<UniformFunction>& UniformFunctions();
[[nodiscard]] const UniformFunction& FindFunction(const std::string& name);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H
