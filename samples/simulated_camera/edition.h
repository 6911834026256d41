// SPDX-License-Identifier: MIT
// The camera comes in two editions, from the same sources: with the 51 functions of GenTL 1.1, or,
// if SIMULATED_CAMERA_EXTENDED is defined, with the 64 functions of GenTL 1.6.
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_EDITION_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_EDITION_H

#include <cstdint>

#include "gentl/gentl_newer.h"

namespace simulated_camera {

#if defined(SIMULATED_CAMERA_EXTENDED)
inline constexpr bool kExtended = true;
inline constexpr GC_ERROR kBufferTooSmall = GC_ERR_BUFFER_TOO_SMALL;
inline constexpr GC_ERROR kBadIndex = GC_ERR_INVALID_INDEX;
#else
inline constexpr bool kExtended = false;
// GenTL 1.1 has no specific errors for these.
inline constexpr GC_ERROR kBufferTooSmall = GC_ERR_INVALID_BUFFER;
inline constexpr GC_ERROR kBadIndex = GC_ERR_INVALID_PARAMETER;
#endif

inline constexpr uint32_t kGenTLMajor = 1;
inline constexpr uint32_t kGenTLMinor = kExtended ? 6 : 1;

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_EDITION_H
