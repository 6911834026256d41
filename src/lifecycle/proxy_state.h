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

// Read and written on whatever thread the consumer calls from, without a lock: the consumer
// serialises GCInitLib and GCCloseLib, and does not race open and close calls. The pointers own
// what they point to, but for `logger`, which log4cpp owns. They are plain ones because some
// operations overwrite them without freeing, on purpose.
struct ProxyState {
  platform::ModuleHandle moduleInstance = nullptr;  // the library itself; nothing reads it
  platform::ModuleHandle detachModule = nullptr;    // never set: see DllMain
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

// The category that every line goes to, also before the first GCInitLib has set `logger`.
[[nodiscard]] log4cpp::Category& CallLogger();

// Reports what is still open on the transport layer and registered on it, then ends the registry.
// There must be one.
void TearDownRegistry();

// Deletes all seven tables.
void DeleteTables();

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_PROXY_STATE_H
