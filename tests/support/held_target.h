// SPDX-License-Identifier: MIT
// A scripted target that the test holds next to the proxy.
#ifndef VEXTREL_TESTS_SUPPORT_HELD_TARGET_H
#define VEXTREL_TESTS_SUPPORT_HELD_TARGET_H

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <filesystem>
#include <string>
#include <type_traits>

#include "support/paths.h"
#include "support/system.h"
#include "support/target_script.h"

namespace vextrel_test {

// Keeps the module loaded that the proxy loads from that path. Clears its script on construction
// and destruction.
class HeldTarget {
 public:
  explicit HeldTarget(const std::filesystem::path& path = ScriptedTargetPath())
      : module_(path), script_(module_.Find<GetTargetScriptFunction>("GetTargetScript")()) {
    Clear();
  }
  ~HeldTarget() { Clear(); }
  HeldTarget(const HeldTarget&) = delete;
  HeldTarget& operator=(const HeldTarget&) = delete;

  [[nodiscard]] TargetScript& Script() const { return *script_; }
  [[nodiscard]] void* Handle() const { return module_.Handle(); }

 private:
  void Clear() const {
    script_->functions = {};
    script_->result = GC_ERR_SUCCESS;
    script_->calls = 0;
  }

  Module module_;
  TargetScript* script_;
};

// Returns the module's functions; null for those that it doesn't export.
[[nodiscard]] inline GenTLFunctions FunctionsOf(const Module& module) {
  std::array<void*, kFunctionCount> addresses{};
  std::ranges::transform(FunctionNames(), addresses.begin(),
                         [&](const std::string& name) { return module.FindAddress(name.c_str()); });
  return std::bit_cast<GenTLFunctions>(addresses);
}

// Calls a function with arguments that suit every function: zeros, and the address of zeroed
// memory.
template <typename... Arguments>
[[nodiscard]] GC_ERROR CallWithZeros(GC_ERROR(GC_CALLTYPE* function)(Arguments...)) {
  alignas(std::max_align_t) std::array<char, 256> memory{};
  [[maybe_unused]] const auto argument =
      [&memory]<typename Argument>(std::type_identity<Argument>) -> Argument {
    if constexpr (std::is_pointer_v<Argument>) {
      return reinterpret_cast<Argument>(memory.data());
    } else {
      return 0;
    }
  };
  return function(argument(std::type_identity<Arguments>{})...);
}

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_SUPPORT_HELD_TARGET_H
