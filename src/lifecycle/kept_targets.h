// SPDX-License-Identifier: MIT
// Targets that stay loaded for as long as the extended module itself, whatever GCCloseLib unloads:
// a target that keeps state over GCCloseLib, or whose threads outlive it, then behaves as it does
// without Vextrel. Not thread-safe; runs inside GCInitLib and when the loader unloads the module.
#ifndef VEXTREL_LIFECYCLE_KEPT_TARGETS_H
#define VEXTREL_LIFECYCLE_KEPT_TARGETS_H

#include <string>

#include "platform/platform.h"

namespace vextrel {

// Takes a loader reference of its own to `module`, which was loaded from `path`, unless it has one.
void KeepTarget(platform::ModuleHandle module, const std::string& path);

// Gives all of them back.
void ReleaseKeptTargets();

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_KEPT_TARGETS_H
