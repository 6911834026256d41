// The 51 functions made alike: each takes its arguments as 64-bit patterns, so that the tests need
// no code of their own for any of them.
#ifndef VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H
#define VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "transparency/function_roles.h"

namespace vextrel_test {

// The arguments in order, zero behind the last one.
using Patterns = std::array<std::uint64_t, kMaxArguments>;

struct UniformFunction {
  std::string name;
  Roles roles{};
  // The size of what each argument points to, where that is known; 0 elsewhere.
  std::array<std::size_t, kMaxArguments> pointeeSizes{};
  // The patterns as they are behind a way through the parameters, which may be narrower.
  std::function<Patterns(const Patterns&)> narrow;
  // Calls the function of that name.
  std::function<GC_ERROR(const GenTLFunctions&, const Patterns&)> call;
  // Has a scripted target answer calls of the function with onTargetCall.
  std::function<void(GenTLFunctions&)> play;
};

// What the target does in a call. To be set while no call is on its way.
extern std::function<GC_ERROR(const Patterns&)> onTargetCall;

// In the order of the interface.
[[nodiscard]] const std::vector<UniformFunction>& UniformFunctions();
[[nodiscard]] const UniformFunction& FindFunction(const std::string& name);
[[nodiscard]] std::vector<std::string> FunctionNames();

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_TRANSPARENCY_UNIFORM_FUNCTION_H
