// Making and breaking the binding to the target producer: GCInitLib and GCCloseLib, which gentl.h
// declares, are implemented here. Neither is thread-safe: the consumer serialises them and makes no
// other call meanwhile. Only GCInitLib may raise an exception, a std::runtime_error for a producer
// path that refers to a variable which cannot be read.
#ifndef VEXTREL_LIFECYCLE_LIBRARY_H
#define VEXTREL_LIFECYCLE_LIBRARY_H

#include <string>

#include "platform/platform.h"

namespace vextrel {

// The module's file version as four decimal numbers joined by dots; 0.0.0.0 if it has none.
[[nodiscard]] std::string GetProducerFileVersion(platform::ModuleHandle module);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_LIBRARY_H
