// SPDX-License-Identifier: MIT
// A consumer that calls the proxy at random, and knows what the log must say about it.
//
// A call takes its arguments from the session, makes the call through Call, and expects its lines
// in `log`. The target's answer, results and outputs alike, is drawn before the call.
#ifndef VEXTREL_TESTS_SESSION_SESSION_H
#define VEXTREL_TESTS_SESSION_SESSION_H

#include <gtest/gtest.h>

#include <any>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "model/log.h"
#include "model/registry.h"
#include "model/value_names.h"
#include "session/memory.h"
#include "session/random_source.h"
#include "session/target_files.h"
#include "support/gentl_functions.h"

namespace vextrel_test::session {

using model::Value;

enum class HandleKind { TransportLayer, Interface, Device, DataStream, Buffer, Event, Port };
inline constexpr std::uint64_t kHandleKinds = 7;

// As the lines of the newer functions name a result.
[[nodiscard]] inline std::string ResultName(GC_ERROR result) {
  return model::kNewerGcErrors.NameOf(result);
}

// The call in progress, as the target sees it.
struct Played {
  GC_ERROR result = 0;
  Memory* memory = nullptr;
  std::any arguments;
  std::string snapshot;
};

// The only state that the target's functions can reach.
Played& CurrentCall();

// Where a function's slot is in GenTLFunctions.
template <typename Slot>
[[nodiscard]] std::size_t OffsetOf(Slot slot) {
  constexpr GenTLFunctions functions;
  return static_cast<std::size_t>(reinterpret_cast<const char*>(&(functions.*slot)) -
                                  reinterpret_cast<const char*>(&functions));
}
// The function whose slot is there.
[[nodiscard]] std::string_view NameAt(std::size_t offset);

template <typename... Arguments>
GC_ERROR GC_CALLTYPE Play(Arguments... arguments) {
  Played& call = CurrentCall();
  call.arguments = std::make_tuple(arguments...);
  call.memory->WriteNow();
  call.snapshot = call.memory->Snapshot();
  return call.result;
}

class Session {
 public:
  Session(std::uint64_t seed, const GenTLFunctions& proxyFunctions)
      : random(seed), proxy(proxyFunctions) {}

  // --- Arguments --------------------------------------------------------------------------------

  // One of the few handles of that kind mostly, so that they meet again; also null, one of another
  // kind, one that all kinds share, or any.
  [[nodiscard]] void* Handle(HandleKind kind);
  [[nodiscard]] void* AnyHandle();
  // Null now and then.
  [[nodiscard]] const char* InText();
  [[nodiscard]] char* OutText();
  // Null now and then; a zero byte ends the block.
  [[nodiscard]] void* InfoBuffer();

  // An output that holds one random value, and may get another from the target; zero bytes after
  // it end it as a text.
  template <typename Make>
  [[nodiscard]] auto* Output(Make make, std::size_t zerosAfter = 0) {
    using T = decltype(make());
    const T before = make();
    const T after = make();
    std::string bytes(reinterpret_cast<const char*>(&before), sizeof before);
    bytes.append(zerosAfter, '\0');
    unsigned char* slot = memory.Add(bytes);
    if (!random.OneIn(5)) {
      memory.WriteLater(slot, {reinterpret_cast<const char*>(&after), sizeof after});
    }
    return reinterpret_cast<T*>(slot);
  }
  [[nodiscard]] void** HandleOutput(HandleKind kind) {
    return Output([this, kind] { return Handle(kind); });
  }
  // Any number: for a size that nobody may take as one.
  [[nodiscard]] std::size_t* SizeOutput(std::size_t zerosAfter = 0) {
    return Output([this] { return std::size_t{random.Number()}; }, zerosAfter);
  }

  // --- The call ---------------------------------------------------------------------------------

  // Calls the proxy and returns what it returned. Fails the test unless the call reached the bound
  // target once, with these arguments, its result came back, and nobody but the target wrote to the
  // arguments' memory.
  template <typename... Arguments>
  GC_ERROR Call(GC_ERROR (GC_CALLTYPE* GenTLFunctions::*slot)(Arguments...),
                std::type_identity_t<Arguments>... arguments) {
    return CallThrough(tables, GC_ERR_NOT_IMPLEMENTED, slot, arguments...);
  }

  // The same for a call that is expected to reach `target`, or to return `otherwise` if there is
  // none.
  template <typename... Arguments>
  GC_ERROR CallThrough(TargetFile* target, GC_ERROR otherwise,
                       GC_ERROR (GC_CALLTYPE* GenTLFunctions::*slot)(Arguments...),
                       std::type_identity_t<Arguments>... arguments) {
    const std::string_view name = NameOf(slot);
    const bool isForwarded = target != nullptr && target->Has(name);
    const GC_ERROR missing = target != nullptr ? GC_ERR_NOT_IMPLEMENTED : otherwise;
    Played& call = CurrentCall();
    call = {RandomResult(), &memory, {}, memory.Snapshot()};
    if (target != nullptr) {
      target->script.result = kPlayedByNobody;
      target->script.calls = 0;
      target->script.functions.*slot = &Play<Arguments...>;
    }
    const GC_ERROR result = (proxy.*slot)(arguments...);
    if (target != nullptr) {
      target->script.functions.*slot = nullptr;
      EXPECT_EQ(target->script.calls, isForwarded ? 1 : 0) << name;
    }
    EXPECT_EQ(result, isForwarded ? call.result : missing) << name;
    if (isForwarded) {
      const auto* received = std::any_cast<std::tuple<Arguments...>>(&call.arguments);
      EXPECT_TRUE(received != nullptr && *received == std::make_tuple(arguments...)) << name;
    }
    EXPECT_TRUE(memory.Snapshot() == call.snapshot) << name << " wrote to the caller's memory";
    ++calls[name];
    ++results[result];
    return result;
  }

  template <typename Slot>
  [[nodiscard]] static std::string_view NameOf(Slot slot) {
    return NameAt(OffsetOf(slot));
  }

  RandomSource random;
  Memory memory;
  model::Log log;
  model::Registry registry{log};
  const GenTLFunctions& proxy;

  // The binding: what the proxy's tables lead to, whether it holds the loader's reference for it,
  // and whether it has been initialized.
  TargetFiles targets;
  TargetFile* tables = nullptr;
  bool isTargetLoaded = false;
  bool isInitialized = false;

  std::map<std::string_view, int> calls;
  std::map<GC_ERROR, int> results;

 private:
  static constexpr GC_ERROR kPlayedByNobody = -77777;

  [[nodiscard]] GC_ERROR RandomResult();
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_SESSION_H
