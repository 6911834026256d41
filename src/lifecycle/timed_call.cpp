// SPDX-License-Identifier: MIT
#include "lifecycle/timed_call.h"

#include <atomic>
#include <log4cpp/Priority.hh>
#include <string>
#include <utility>

#include "backend/log4cpp_internals.h"
#include "calllog/digits.h"
#include "calllog/line_format.h"
#include "calllog/log_text.h"
#include "calllog/logger_setup.h"
#include "lifecycle/observation.h"

namespace vextrel {
namespace {

using Clock = std::chrono::steady_clock;

std::atomic<std::uint64_t> latestNumber = 0;

std::uint64_t NextNumber() noexcept {
  return latestNumber.fetch_add(1, std::memory_order_relaxed) + 1;
}

template <FormatText text, typename... Values>
void Write(KnownFormat<text> format, const Values&... values) noexcept {
  Observe([&] {
    backend::LogFinishedLine(*timingLogger, log4cpp::Priority::DEBUG,
                             FormatLine(format, values...));
  });
}

RenderedText RenderMicroseconds(std::int64_t nanoseconds) {
  return RenderedText::Number(
      [nanoseconds](char* text) { return WriteMicroseconds(nanoseconds, text); });
}

}  // namespace

log4cpp::Category* timingLogger = nullptr;

void StartTiming() {
  timingLogger = &GetLogger("Vextrel.Timing");
}

CallTimer::CallTimer(const char* function) noexcept : function_(function), number_(NextNumber()) {
  Write(timing::kEnters, number_, function_);
  start_ = Clock::now();
}

CallTimer::CallTimer(const char* function, const volatile void* firstArgument) noexcept
    : function_(function), number_(NextNumber()) {
  Write(timing::kEntersWithPointer, number_, function_, firstArgument);
  start_ = Clock::now();
}

CallTimer::CallTimer(const char* function, std::int32_t firstArgument) noexcept
    : function_(function), number_(NextNumber()) {
  Write(timing::kEntersWithNumber, number_, function_, firstArgument);
  start_ = Clock::now();
}

CallTimer::~CallTimer() {
  const auto duration = std::chrono::nanoseconds(Clock::now() - start_);
  Observe([&] {
    const RenderedText microseconds = RenderMicroseconds(duration.count());
    Write(timing::kLeaves, number_, function_, microseconds);
  });
}

}  // namespace vextrel
