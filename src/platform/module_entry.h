// How the loader reaches the library. The platform's entry file calls DllMain; the lifecycle
// implements it.
#ifndef VEXTREL_PLATFORM_MODULE_ENTRY_H
#define VEXTREL_PLATFORM_MODULE_ENTRY_H

#include <cstdint>

namespace vextrel {

inline constexpr std::uint32_t kReasonProcessDetach = 0;
inline constexpr std::uint32_t kReasonProcessAttach = 1;

// Called by the loader, one call at a time, when the module comes and goes. `moduleInstance` is
// the module's own handle; `reserved` is not used. Always returns 1.
std::int32_t DllMain(void* moduleInstance, std::uint32_t reason, void* reserved);

}  // namespace vextrel

#endif  // VEXTREL_PLATFORM_MODULE_ENTRY_H
