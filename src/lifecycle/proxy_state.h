// SPDX-License-Identifier: MIT
// The process-wide state of the library.
#ifndef VEXTREL_LIFECYCLE_PROXY_STATE_H
#define VEXTREL_LIFECYCLE_PROXY_STATE_H

#include <cstdint>
#include <log4cpp/Category.hh>
#include <string>

#include "lifecycle/function_tables.h"
#include "platform/platform.h"
#include "registry/transport_layer_node.h"

namespace vextrel {

// Read and written on the consumer's threads, without a lock.
// REQUIRES: the consumer serialises GCInitLib and GCCloseLib, and doesn't race open and close
// calls. The pointers own what they point to, except `logger`, which log4cpp owns. They are plain
// pointers because GCInitLib and TLOpen overwrite them without freeing (Kept: 4, 50).
struct ProxyState {
  platform::ModuleHandle moduleInstance = nullptr;  // Kept: 14. Nothing reads it.
  platform::ModuleHandle detachModule = nullptr;    // Kept: 12. Nothing sets it.
  std::int32_t attachCount = 0;
  LibFunctionTable* libTable = nullptr;
  TLFunctionTable* tlTable = nullptr;
  IFFunctionTable* ifTable = nullptr;
  DevFunctionTable* devTable = nullptr;
  DSFunctionTable* dsTable = nullptr;
  PortFunctionTable* portTable = nullptr;
  EventFunctionTable* eventTable = nullptr;
  log4cpp::Category* logger = nullptr;  // set by every GCInitLib, and never cleared
  platform::ModuleHandle targetModule = nullptr;
  TransportLayerNode* registryRoot = nullptr;
  bool initialized = false;
  std::string targetPath;  // of the last GCInitLib that found the variable
};

extern ProxyState proxyState;

// Returns the category for every line, even before the first GCInitLib has set `logger`.
[[nodiscard]] log4cpp::Category& CallLogger();

// Reports the interfaces and events left on the transport layer, then deletes the registry's root.
// REQUIRES: registryRoot is not null.
void TearDownRegistry();

// Deletes all seven tables, and empties that of the newer functions.
void DeleteTables();

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_PROXY_STATE_H
