// SPDX-License-Identifier: MIT
#include <xmmintrin.h>

#include <cfenv>
#include <cstdint>

#include "transparency/float_environment.h"

// MinGW's own functions unmask exceptions while they set flags, so the registers are set here.
// There are two sets of them: SSE's, and x87's for long double.
namespace vextrel_test {
namespace {

constexpr int kFlags = FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT;
constexpr int kRounding = FE_TOWARDZERO;  // both bits
constexpr unsigned kSseRoundingShift = 3;

std::uint16_t X87Control() {
  std::uint16_t control = 0;
  __asm__ volatile("fnstcw %0" : "=m"(control));
  return control;
}

std::uint16_t X87Status() {
  std::uint16_t status = 0;
  __asm__ volatile("fnstsw %0" : "=m"(status));
  return status;
}

}  // namespace

FloatEnvironment FloatEnvironment::Now() {
  const auto sse = static_cast<int>(_mm_getcsr());
  const int rounding = sse >> kSseRoundingShift & kRounding;
  // A difference between the two is a difference to any environment that was set here.
  return {rounding | (rounding ^ (X87Control() & kRounding)) << 16, (sse | X87Status()) & kFlags};
}

void FloatEnvironment::Apply() const {
  const auto control = static_cast<std::uint16_t>((X87Control() & ~kRounding) | rounding);
  __asm__ volatile("fnclex; fldcw %0" : : "m"(control));
  const auto sse = static_cast<int>(_mm_getcsr());
  _mm_setcsr(static_cast<unsigned>((sse & ~(kRounding << kSseRoundingShift) & ~kFlags) |
                                   rounding << kSseRoundingShift | raised));
}

}  // namespace vextrel_test
