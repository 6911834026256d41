// SPDX-License-Identifier: MIT
// Binding and unbinding the target producer. Implements GCInitLib and GCCloseLib, which gentl.h
// declares.
//
// REQUIRES: the consumer serialises both with all other calls.
// Only GCInitLib may throw an exception of ours, for example std::runtime_error for a producer path
// that refers to a variable that can't be read (Kept: 3).
#ifndef VEXTREL_LIFECYCLE_LIBRARY_H
#define VEXTREL_LIFECYCLE_LIBRARY_H

#include <string>

#include "platform/platform.h"

namespace vextrel {

// Returns the module's file version as four decimal numbers joined by dots; 0.0.0.0 if it has none.
[[nodiscard]] std::string GetProducerFileVersion(platform::ModuleHandle module);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_LIBRARY_H
