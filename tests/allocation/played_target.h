// SPDX-License-Identifier: MIT
// A target with an answer for every function, and what each answer is.
#ifndef VEXTREL_TESTS_ALLOCATION_PLAYED_TARGET_H
#define VEXTREL_TESTS_ALLOCATION_PLAYED_TARGET_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "support/target_script.h"

namespace vextrel_test {

// The handles that the target gives.
inline constexpr std::uintptr_t kTl = 0x1000;
inline constexpr std::uintptr_t kInterface = 0x2000;
inline constexpr std::uintptr_t kDevice = 0x3000;
inline constexpr std::uintptr_t kStream = 0x4000;
inline constexpr std::uintptr_t kBuffer = 0x5000;
inline constexpr std::uintptr_t kAllocatedBuffer = 0x5001;
inline constexpr std::uintptr_t kEvent = 0x6000;
inline constexpr std::uintptr_t kPort = 0x7000;

// What it writes to the other outputs.
inline constexpr std::uint32_t kCount = 7;
inline constexpr std::size_t kSize = 5;
// Longer than what fits anywhere without an allocation.
inline constexpr std::string_view kText =
    "a text that is longer than the room for short ones, which is sixty-four characters or less";
inline constexpr std::uint64_t kNumber = 0x1122334455667788;

// The type of the next info values; a string's value is kText, any other's kNumber.
extern INFO_DATATYPE playedType;

// What a function returns: success where something opens or closes, an error of its own elsewhere.
inline constexpr GC_ERROR kInfoResult = GC_ERR_SUCCESS;
inline constexpr GC_ERROR kTextResult = GC_ERR_INVALID_BUFFER;
inline constexpr GC_ERROR kCountResult = GC_ERR_NOT_AVAILABLE;
inline constexpr GC_ERROR kPortResult = GC_ERR_IO;

void PlayEverything(TargetScript& script);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_ALLOCATION_PLAYED_TARGET_H
