// SPDX-License-Identifier: MIT
#include "transparency/traced_proxy.h"

#include <algorithm>
#include <cerrno>
#include <cfenv>

namespace vextrel_test {
namespace {

constexpr std::uint32_t kConsumersLastError = 17;
constexpr std::uint32_t kTargetsLastError = 4711;

// On Windows a thread has two such values, elsewhere only one.
void SetLastErrors(std::uint32_t value) {
  errno = static_cast<int>(value);
  SetLastErrorValue(value);
}

// The state after a call.
struct Behind {
  GC_ERROR result;
  std::uint32_t lastError;
  std::uint32_t errnoValue;
  FloatEnvironment floats;
};

// Restores the test's own environment.
class FloatsRestored {
 public:
  FloatsRestored() = default;
  ~FloatsRestored() { before_.Apply(); }
  FloatsRestored(const FloatsRestored&) = delete;
  FloatsRestored& operator=(const FloatsRestored&) = delete;

 private:
  const FloatEnvironment before_ = FloatEnvironment::Now();
};

Behind MakeCall(const GenTLFunctions& proxy, const ConsumerCall& call,
                const FloatEnvironment& floats) {
  const FloatsRestored restored;
  SetLastErrors(kConsumersLastError);
  floats.Apply();
  const GC_ERROR result = call.Function().call(proxy, call.Arguments());
  const std::uint32_t lastError = LastError();
  const auto errnoValue = static_cast<std::uint32_t>(errno);
  return {result, lastError, errnoValue, FloatEnvironment::Now()};
}

}  // namespace

// What the target saw of a call, and what it left behind.
struct TracedProxy::Seen {
  int calls = 0;
  Patterns arguments{};
  ConsumerMemory::Bytes before{};
  ConsumerMemory::Bytes after{};
  FloatEnvironment floats{};
};

TracedProxy::TracedProxy()
    : consumerFloats{FE_UPWARD, FE_UNDERFLOW},
      targetFloats{FE_DOWNWARD, FE_DIVBYZERO | FE_OVERFLOW},
      script_(target_.Script()) {}

// With the timing of calls, where there is any.
#if defined(VEXTREL_EXTENDED)
const std::string kFullLog = std::string("INFO, file") + kWithTiming;
#else
const std::string kFullLog = "INFO, file";
#endif

TracedProxy::~TracedProxy() {
  script_.functions = {};
  onTargetCall = nullptr;
  if (proxy.GCCloseLib != nullptr) {
    proxy.GCCloseLib();
  }
  UnloadProxy();
}

void TracedProxy::SetUpLog(Log log) {
  UseLog({.file = log == Log::FolderAsFile ? Folder() : LogFile(),
          .rootCategory = log == Log::BelowPriority ? "ERROR, file" : kFullLog,
          .pattern = "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n"});
  if (log == Log::NoAppender) {
    WriteFile(Folder() / "log.properties", "rootCategory=INFO, file\n");
  } else if (log == Log::NoConfiguration) {
    SetVariable(kLogConfigVariable, nullptr);
  }
}

void TracedProxy::Start(Log log) {
  SetUpLog(log);
  UseTarget(ScriptedTargetPath());
  LoadProxy();
  ASSERT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
}

void TracedProxy::PrepareFor(const UniformFunction& function) {
  if (function.name == "GCInitLib") {
    proxy.GCCloseLib();
  }
}

void TracedProxy::TidyUpAfter(const UniformFunction& function) {
  script_.functions = {};
  if (function.name == "GCCloseLib") {
    proxy.GCInitLib();
  }
}

void TracedProxy::ExpectMemory(const ConsumerCall& call, const ConsumerMemory::Bytes& expected,
                               std::string_view whose) const {
  const auto [different, unused] = std::ranges::mismatch(call.Memory(), expected);
  if (different != call.Memory().end()) {
    ADD_FAILURE() << whose << " memory differs: "
                  << call.NameOf(static_cast<std::size_t>(different - call.Memory().begin()));
  }
}

void TracedProxy::ExpectNothingChanged(const UniformFunction& function, Shape shape,
                                       const Answer& answer) {
  SCOPED_TRACE(function.name + ", shape " + std::to_string(static_cast<int>(shape)) + ", result " +
               std::to_string(answer.result) + ", type " + std::to_string(answer.type));
  const ConsumerCall call(function, shape);
  const ConsumerMemory::Bytes given = call.Memory();
  Seen seen;
  onTargetCall = [&](const Patterns& arguments) {
    seen.floats = FloatEnvironment::Now();
    ++seen.calls;
    seen.arguments = arguments;
    seen.before = call.Memory();
    call.WriteAnswer(arguments, answer);
    seen.after = call.Memory();
    targetFloats.Apply();
    SetLastErrors(kTargetsLastError);
    return answer.result;
  };
  PrepareFor(function);
  function.play(script_.functions);
  script_.calls = 0;
  const Behind behind = MakeCall(proxy, call, consumerFloats);
  const int allCalls = script_.calls;
  TidyUpAfter(function);
  ++calls_;

  // The target got what the consumer gave, once.
  EXPECT_EQ(seen.calls, 1);
  EXPECT_EQ(allCalls, 1);
  EXPECT_EQ(seen.arguments, call.Arguments());
  EXPECT_TRUE(seen.before == given);
  EXPECT_EQ(seen.floats, consumerFloats);
  // The consumer got what the target left behind.
  EXPECT_EQ(behind.result, answer.result);
  EXPECT_EQ(behind.lastError, kTargetsLastError);
  EXPECT_EQ(behind.errnoValue, kTargetsLastError);
  EXPECT_EQ(behind.floats, targetFloats);
  ExpectMemory(call, seen.after, "the consumer's");
}

void TracedProxy::ExpectNobodyThere(const UniformFunction& function, Shape shape, GC_ERROR result) {
  SCOPED_TRACE(function.name + ", shape " + std::to_string(static_cast<int>(shape)));
  const ConsumerCall call(function, shape);
  const ConsumerMemory::Bytes given = call.Memory();
  script_.calls = 0;
  const Behind behind = MakeCall(proxy, call, consumerFloats);
  EXPECT_EQ(script_.calls, 0);
  EXPECT_EQ(behind.result, result);
  // Only the attempt to load a target may change them.
  if (function.name != "GCInitLib") {
    EXPECT_EQ(behind.lastError, kConsumersLastError);
    EXPECT_EQ(behind.errnoValue, kConsumersLastError);
  }
  EXPECT_EQ(behind.floats, consumerFloats);
  ExpectMemory(call, given, "the consumer's");
}

void TracedProxy::OpenRecords() {
  void* parent = Handle(ConsumerCall::ValueAt(0));
  void* buffer = Handle(ConsumerCall::ValueAt(1));
  // The target leaves the outputs alone, so they keep these handles.
  proxy.TLOpen(&parent);
  proxy.TLOpenInterface(parent, "interface", &parent);
  proxy.IFOpenDevice(parent, "device", DEVICE_ACCESS_CONTROL, &parent);
  proxy.DevOpenDataStream(parent, "stream", &parent);
  proxy.DSAllocAndAnnounceBuffer(parent, 1024, nullptr, &buffer);
  proxy.GCRegisterEvent(parent, EVENT_NEW_BUFFER, &parent);
}

}  // namespace vextrel_test
