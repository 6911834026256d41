// SPDX-License-Identifier: MIT
// Every function forwards alike: the same checks for all of them.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "exports/exports_fixture.h"
#include "model/value_names.h"

namespace vextrel_test {
namespace {

// What the arguments that are pointers point to: a block for each place in the argument list.
struct alignas(16) Block {
  std::array<std::byte, 256> bytes{};
  bool operator==(const Block&) const = default;
};
using Blocks = std::array<Block, kMaxArguments>;

// What the scripted target does in every call, and what it saw.
struct TargetCall {
  GC_ERROR result = 0;
  std::uint32_t lastError = 0;
  Blocks leftBehind{};
};
TargetCall targetCall;
Blocks blocks;

template <typename Value>
Value MakeArgument(std::size_t place) {
  if constexpr (std::is_pointer_v<Value>) {
    Block& block = blocks.at(place);
    block = {};
    if constexpr (std::is_const_v<std::remove_pointer_t<Value>>) {
      std::memcpy(block.bytes.data(), "input", 6);
    }
    return reinterpret_cast<Value>(block.bytes.data());
  } else {
    // Bits set in every half, and other ones in every place.
    return static_cast<Value>(0xF0E1D2C3B4A59600U + place);
  }
}

// Writes through an argument as a target would; a handle is an address of ours, too.
template <typename Value>
void WriteOutput(Value value) {
  if constexpr (!std::is_pointer_v<Value>) {
    static_cast<void>(value);
  } else if constexpr (std::is_const_v<std::remove_pointer_t<Value>>) {
    static_cast<void>(value);
  } else if constexpr (std::is_same_v<Value, void**>) {
    *value = Handle(0xFEDCBA9876543210);
  } else if constexpr (std::is_same_v<Value, std::size_t*>) {
    *value = 4;
  } else if constexpr (std::is_same_v<Value, std::int32_t*>) {
    *value = 1;
  } else if constexpr (std::is_same_v<Value, std::uint32_t*>) {
    *value = 0x89ABCDEF;
  } else if constexpr (std::is_same_v<Value, bool8_t*>) {
    *value = 0xA5;
  } else if constexpr (std::is_same_v<Value, PORT_REGISTER_STACK_ENTRY*>) {
    *value = {0x123456789ABCDEF0, nullptr, 5};
  } else if constexpr (std::is_same_v<Value, SINGLE_CHUNK_DATA*>) {
    *value = {0x123456789ABCDEF0, -5, 5};
  } else if constexpr (std::is_same_v<Value, DS_BUFFER_INFO_STACKED*>) {
    *value = {1, 2, nullptr, 5, -3};
  } else if constexpr (std::is_same_v<Value, DS_BUFFER_PART_INFO_STACKED*>) {
    *value = {1, 2, -3, 4, nullptr, 5};
  } else {
    static_assert(std::is_same_v<Value, void*> || std::is_same_v<Value, char*>);
    std::memcpy(value, "written", 8);
  }
}

// The consumer's and the target's side of a function with these parameters.
template <typename... Parameters>
struct Call {
  using Arguments = std::tuple<Parameters...>;

  static inline std::vector<Arguments> seen_;

  static GC_ERROR GC_CALLTYPE Play(Parameters... parameters) {
    seen_.emplace_back(parameters...);
    (WriteOutput(parameters), ...);
    targetCall.leftBehind = blocks;
    SetLastErrorValue(targetCall.lastError);
    return targetCall.result;
  }

  static Arguments Make() { return Make(std::index_sequence_for<Parameters...>()); }

 private:
  template <std::size_t... place>
  static Arguments Make(std::index_sequence<place...> /*places*/) {
    return Arguments{MakeArgument<Parameters>(place)...};
  }
};

template <typename... Parameters>
Call<Parameters...> CallOf(GC_ERROR (GC_CALLTYPE* Functions::*)(Parameters...));

std::size_t CountInfoLines(const std::vector<std::string>& lines, const std::string& begin) {
  return static_cast<std::size_t>(std::ranges::count_if(
      lines, [&](const std::string& line) { return line.starts_with("INFO " + begin); }));
}

class Forwarding : public BoundProxy {
 protected:
  // Has the target play the function of `slot` and no other, calls it through the proxy, and
  // hands the arguments given and those seen to `check`, with the result and the thread's last
  // error behind the call.
  template <typename Slot, typename Check>
  void CallThroughProxy(const std::string& name, Slot slot, Check check) {
    SCOPED_TRACE(name);
    using ThisCall = decltype(CallOf(slot));
    const typename ThisCall::Arguments given = ThisCall::Make();
    ThisCall::seen_.clear();
    script.functions = {};
    script.functions.*slot = &ThisCall::Play;
    script.calls = 0;
    SetLastErrorValue(0);
    const GC_ERROR result = std::apply(proxy.*slot, given);
    const std::uint32_t lastError = LastError();
    script.functions = {};
    check(given, ThisCall::seen_, result, lastError);
    if (name == "GCCloseLib") {
      EXPECT_EQ(proxy.GCInitLib(), 0);
    }
  }

  // The same for each function.
  template <typename Check>
  void CallEveryFunction(Check check) {
    ForEachFunction(
        [&](const char* name, auto slot) { CallThroughProxy(std::string(name), slot, check); });
  }
};

TEST_F(Forwarding, EveryArgumentReachesTheTargetUnchanged) {
  CallEveryFunction([](const auto& given, const auto& seen, GC_ERROR, std::uint32_t) {
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_TRUE(seen.front() == given);
  });
}

TEST_F(Forwarding, EveryCallReachesTheSameFunctionOfTheTargetOnceAndNoOther) {
  CallEveryFunction([this](const auto&, const auto& seen, GC_ERROR, std::uint32_t) {
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(script.calls, 1);
  });
}

TEST_F(Forwarding, WhatTheTargetWritesReachesTheConsumer) {
  for (const GC_ERROR result : {0, -1001}) {
    SCOPED_TRACE(result);
    targetCall.result = result;
    CallEveryFunction([](const auto&, const auto& seen, GC_ERROR, std::uint32_t) {
      ASSERT_EQ(seen.size(), 1U);
      EXPECT_TRUE(blocks == targetCall.leftBehind);
    });
  }
}

// Those with a name, and some without.
std::vector<GC_ERROR> EveryResult() {
  std::vector<GC_ERROR> results = {-1016, -10001, 1, std::numeric_limits<GC_ERROR>::max(),
                                   std::numeric_limits<GC_ERROR>::min()};
  for (const model::ValueName& each : model::kGcErrors.names) {
    results.push_back(each.value);
  }
  return results;
}

// What the function's line begins with.
std::string ShownResult(std::string_view function, GC_ERROR result) {
  return IsNewer(function) && result == -1016 ? "GC_ERR_BUFFER_TOO_SMALL"
                                              : model::kGcErrors.NameOf(result);
}

TEST_F(Forwarding, EveryResultComesBackUnchangedAndBeginsTheOneLineOfItsCall) {
  for (const GC_ERROR each : EveryResult()) {
    targetCall.result = each;
    ForEachFunction([&](const char* name, auto slot) {
      static_cast<void>(TakeLines());
      CallThroughProxy(name, slot, [&](const auto&, const auto&, GC_ERROR result, std::uint32_t) {
        EXPECT_EQ(result, each);
        const std::vector<std::string> lines = TakeLines();
        const std::string line = ShownResult(name, each) + "=" + name + "(";
        EXPECT_EQ(CountInfoLines(lines, line), 1U) << ::testing::PrintToString(lines);
        if (std::string_view(name) != "GCInitLib") {
          EXPECT_EQ(CountInfoLines(lines, ""), 1U) << ::testing::PrintToString(lines);
        }
      });
    });
  }
}

TEST_F(Forwarding, LastErrorIsWhatTheTargetLeft) {
  targetCall.lastError = 4711;
  for (const GC_ERROR result : {0, -1010}) {
    SCOPED_TRACE(result);
    targetCall.result = result;
    CallEveryFunction([](const auto&, const auto& seen, GC_ERROR, std::uint32_t lastError) {
      ASSERT_EQ(seen.size(), 1U);
      EXPECT_EQ(lastError, 4711U);
    });
  }
  targetCall.lastError = 0;
}

// A target without the function of that name, or none at all.
class ForwardingToNothing : public ProxyFiles {
 protected:
  // Calls the function: it returns -1003, writes nothing to the consumer's variables, and, if
  // asked for, writes its line.
  template <typename Slot>
  void ExpectNotImplemented(const char* name, Slot slot, bool logged = true) {
    SCOPED_TRACE(name);
    const auto given = decltype(CallOf(slot))::Make();
    const Blocks before = blocks;
    const std::size_t lineCount = LogLines().size();
    EXPECT_EQ(std::apply(proxy.*slot, given), -1003);
    EXPECT_TRUE(blocks == before);
    if (!logged) {
      return;
    }
    std::vector<std::string> lines = LogLines();
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(lineCount));
    const std::string line = std::string("GC_ERR_NOT_IMPLEMENTED=") + name + "(";
    EXPECT_EQ(CountInfoLines(lines, line), 1U) << ::testing::PrintToString(lines);
    const std::string_view called = name;
    if (called != "GCInitLib" && called != "GCCloseLib") {
      EXPECT_EQ(lines.size(), 1U) << ::testing::PrintToString(lines);
    }
  }

  // GCCloseLib comes last, since it ends the binding that the others are tried in.
  void ExpectNothingImplemented(bool logged = true) {
    ForEachFunction([&](const char* name, auto slot) {
      const std::string_view called = name;
      if (called != "GCInitLib" && called != "GCCloseLib") {
        ExpectNotImplemented(name, slot, logged);
      }
    });
    ExpectNotImplemented("GCCloseLib", &Functions::GCCloseLib, logged);
  }
};

class ForwardingToMissingExport : public ForwardingToNothing,
                                  public ::testing::WithParamInterface<std::string> {};

TEST_P(ForwardingToMissingExport, ReturnsNotImplementedAndWritesTheLine) {
  const std::filesystem::path path = ScriptedTargetWithout(GetParam());
  const Module target(path);
  ASSERT_TRUE(target.IsLoaded());
  TargetScript& script = *target.Find<GetTargetScriptFunction>("GetTargetScript")();
  UseTarget(path);
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), GetParam() == "GCInitLib" ? -1003 : 0);

  script.calls = 0;
  ForEachFunction([&](const char* name, auto slot) {
    if (GetParam() == name) {
      ExpectNotImplemented(name, slot);
    }
  });
  EXPECT_EQ(script.calls, 0);
}

INSTANTIATE_TEST_SUITE_P(EachFunction, ForwardingToMissingExport,
                         ::testing::ValuesIn(FunctionNames()),
                         [](const auto& tested) { return tested.param; });

TEST_F(ForwardingToNothing, WithoutAProducerVariableNothingIsImplemented) {
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  ExpectNothingImplemented();
}

TEST_F(ForwardingToNothing, WithAProducerThatCannotBeLoadedNothingIsImplemented) {
  UseLogFile();
  UseTarget(Folder() / "no_such_producer.cti");
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  ExpectNothingImplemented();
}

TEST_F(ForwardingToNothing, WithATargetThatExportsNothingNothingIsImplemented) {
  UseLogFile();
  UseTarget(EmptyTargetPath());
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), -1003);
  ExpectNothingImplemented();
}

// The target is there, and counts the calls that reach it.
class ForwardingWhileUnbound : public ForwardingToNothing {
 protected:
  ForwardingWhileUnbound() {
    UseTarget(ScriptedTargetPath());
    UseLogFile();
    LoadProxy();
  }

  const Module target{ScriptedTargetPath()};
  TargetScript& script = *target.Find<GetTargetScriptFunction>("GetTargetScript")();
};

TEST_F(ForwardingWhileUnbound, BeforeGCInitLibNothingIsImplemented) {
  script.calls = 0;
  // The log is configured by GCInitLib, so nothing is written yet.
  ExpectNothingImplemented(false);
  EXPECT_EQ(script.calls, 0);
}

TEST_F(ForwardingWhileUnbound, AfterGCCloseLibNothingIsImplemented) {
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  script.calls = 0;
  ExpectNothingImplemented();
  EXPECT_EQ(script.calls, 0);
}

TEST_F(ForwardingToNothing, LinesBelowTheCategorysPriorityAreLeftOut) {
  UseTarget(ScriptedTargetPath());
  UseLogFile("ERROR, file");
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_EQ(proxy.IFClose(nullptr), 0);
  EXPECT_THAT(LogLines(), Lines(model::Error(model::kIllegalInterface)));
}

}  // namespace
}  // namespace vextrel_test
