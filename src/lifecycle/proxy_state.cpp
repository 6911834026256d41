// SPDX-License-Identifier: MIT
#include "lifecycle/proxy_state.h"

#include <utility>

#include "calllog/logger_setup.h"
#include "lifecycle/edition.h"
#include "lifecycle/newer_functions.h"
#include "lifecycle/observation.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

template <typename Table>
void DeleteTable(Table*& table) {
  delete std::exchange(table, nullptr);
}

}  // namespace

VEXTREL_CONSTRUCTED_FIRST ProxyState proxyState;

log4cpp::Category& CallLogger() {
  return proxyState.logger != nullptr ? *proxyState.logger : GetLogger("Vextrel");
}

void TearDownRegistry() {
  Observe([] {
    proxyState.registryRoot->ReportInterfaces();
    proxyState.registryRoot->ReportEvents();
  });
  delete std::exchange(proxyState.registryRoot, nullptr);
}

void DeleteTables() {
  DeleteTable(proxyState.libTable);
  DeleteTable(proxyState.tlTable);
  DeleteTable(proxyState.ifTable);
  DeleteTable(proxyState.devTable);
  DeleteTable(proxyState.dsTable);
  DeleteTable(proxyState.portTable);
  DeleteTable(proxyState.eventTable);
  if constexpr (kIsExtended) {
    newerFunctions = {};
  }
}

}  // namespace vextrel
