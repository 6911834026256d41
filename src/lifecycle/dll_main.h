// SPDX-License-Identifier: MIT
// What happens when the module is loaded and unloaded. The entry point of each system, in
// src/entry, calls this.
#ifndef VEXTREL_LIFECYCLE_DLL_MAIN_H
#define VEXTREL_LIFECYCLE_DLL_MAIN_H

#include <cstdint>

namespace vextrel {

// On Windows, process detach and attach; elsewhere, the destruction and construction of the
// module's static objects.
inline constexpr std::uint32_t kModuleUnloaded = 0;
inline constexpr std::uint32_t kModuleLoaded = 1;

// `moduleInstance` is the module's own handle, `reason` one of the above or anything else, which is
// ignored. `reserved` is not null if the module is unloaded because the process ends. Always
// returns 1.
//
// REQUIRES: the loader makes one call at a time.
std::int32_t DllMain(void* moduleInstance, std::uint32_t reason, void* reserved);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_DLL_MAIN_H
