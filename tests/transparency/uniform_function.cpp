// SPDX-License-Identifier: MIT
#include "transparency/uniform_function.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace vextrel_test {

std::function<GC_ERROR(const Patterns&)> onTargetCall;

namespace {

template <typename Value>
std::uint64_t ToPattern(Value value) {
  if constexpr (std::is_pointer_v<Value>) {
    return reinterpret_cast<std::uintptr_t>(value);
  } else {
    return static_cast<std::uint64_t>(value);
  }
}

template <typename Value>
Value FromPattern(std::uint64_t pattern) {
  if constexpr (std::is_pointer_v<Value>) {
    return reinterpret_cast<Value>(static_cast<std::uintptr_t>(pattern));
  } else {
    return static_cast<Value>(pattern);
  }
}

template <typename Value>
constexpr std::size_t PointeeSize() {
  if constexpr (std::is_pointer_v<Value>) {
    using Pointee = std::remove_pointer_t<Value>;
    if constexpr (!std::is_void_v<Pointee>) {
      return sizeof(Pointee);
    }
  }
  return 0;
}

template <typename... Parameters>
GC_ERROR GC_CALLTYPE PlayUniformly(Parameters... parameters) {
  return onTargetCall(Patterns{ToPattern(parameters)...});
}

template <typename... Parameters>
using Slot = GC_ERROR (GC_CALLTYPE* GenTLFunctions::*)(Parameters...);

template <typename... Parameters, std::size_t... places>
UniformFunction MakeUniform(const char* name, Slot<Parameters...> slot, const Roles& roles,
                            std::index_sequence<places...> /*sequence*/) {
  return {
      name,
      roles,
      {PointeeSize<Parameters>()...},
      []([[maybe_unused]] const Patterns& patterns) {
        return Patterns{ToPattern(FromPattern<Parameters>(patterns[places]))...};
      },
      [slot](const GenTLFunctions& functions, [[maybe_unused]] const Patterns& patterns) {
        return (functions.*slot)(FromPattern<Parameters>(patterns[places])...);
      },
      [slot](GenTLFunctions& functions) { functions.*slot = &PlayUniformly<Parameters...>; },
  };
}

template <typename... Parameters>
UniformFunction MakeUniform(const char* name, Slot<Parameters...> slot, const Roles& roles) {
  return MakeUniform(name, slot, roles, std::index_sequence_for<Parameters...>());
}

std::vector<UniformFunction> MakeAll() {
  std::vector<UniformFunction> functions;
  ForEachFunction([&](const char* name, auto slot, const Roles& roles) {
    functions.push_back(MakeUniform(name, slot, roles));
  });
  return functions;
}

}  // namespace

const std::vector<UniformFunction>& UniformFunctions() {
  static const std::vector<UniformFunction> kFunctions = MakeAll();
  return kFunctions;
}

const UniformFunction& FindFunction(const std::string& name) {
  const auto found = std::ranges::find(UniformFunctions(), name, &UniformFunction::name);
  if (found == UniformFunctions().end()) {
    throw std::logic_error("no function " + name);
  }
  return *found;
}

}  // namespace vextrel_test
