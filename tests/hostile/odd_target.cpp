// SPDX-License-Identifier: MIT
// A producer whose exports are not one function each: two share one, one is no function at all, and
// one is a place where the loader asks or looks further.
#include <cstdint>

#include "exported.h"

// Without the GenTL header, which knows all of these as functions.

// NOLINTBEGIN(readability-identifier-naming): exports are named like functions.

VEXTREL_TEST_EXPORT int CallsOfOddTarget;
int CallsOfOddTarget = 0;

VEXTREL_TEST_EXPORT std::int32_t GCInitLib() {
  return 0;
}

VEXTREL_TEST_EXPORT std::int32_t GCCloseLib() {
  return 0;
}

VEXTREL_TEST_EXPORT std::int32_t EventFlush(void* /*hEvent*/) {
  ++CallsOfOddTarget;
  return -1012;
}

VEXTREL_TEST_EXPORT [[gnu::alias("EventFlush")]] std::int32_t EventKill(void* hEvent);

VEXTREL_TEST_EXPORT const std::uint64_t TLGetInfo[4];
const std::uint64_t TLGetInfo[4] = {1, 2, 3, 4};

// NOLINTEND(readability-identifier-naming)

#if !defined(_WIN32)
extern "C" {
static std::int32_t Abort() {
  return -1012;
}
// Called by the loader for the address of the function.
[[maybe_unused]] static auto ResolveEventGetInfo() {
  return &Abort;
}
}
VEXTREL_TEST_EXPORT [[gnu::ifunc("ResolveEventGetInfo")]] std::int32_t EventGetInfo();
#endif
