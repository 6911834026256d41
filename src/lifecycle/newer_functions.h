// SPDX-License-Identifier: MIT
// The target's functions of GenTL 1.3 to 1.6, of the extended module alone.
#ifndef VEXTREL_LIFECYCLE_NEWER_FUNCTIONS_H
#define VEXTREL_LIFECYCLE_NEWER_FUNCTIONS_H

#include <log4cpp/Category.hh>

#include "gentl/gentl_newer.h"
#include "platform/platform.h"

namespace vextrel {

// A slot holds null if the target doesn't export its function, and while there is no target.
struct NewerFunctionTable {
  decltype(&::DSGetBufferChunkData) DSGetBufferChunkData = nullptr;
  decltype(&::IFGetParentTL) IFGetParentTL = nullptr;
  decltype(&::DevGetParentIF) DevGetParentIF = nullptr;
  decltype(&::DSGetParentDev) DSGetParentDev = nullptr;
  decltype(&::DSGetNumBufferParts) DSGetNumBufferParts = nullptr;
  decltype(&::DSGetBufferPartInfo) DSGetBufferPartInfo = nullptr;
  decltype(&::DSAnnounceCompositeBuffer) DSAnnounceCompositeBuffer = nullptr;
  decltype(&::DSGetBufferInfoStacked) DSGetBufferInfoStacked = nullptr;
  decltype(&::DSGetBufferPartInfoStacked) DSGetBufferPartInfoStacked = nullptr;
  decltype(&::DSGetNumFlows) DSGetNumFlows = nullptr;
  decltype(&::DSGetFlowInfo) DSGetFlowInfo = nullptr;
  decltype(&::DSGetNumBufferSegments) DSGetNumBufferSegments = nullptr;
  decltype(&::DSGetBufferSegmentInfo) DSGetBufferSegmentInfo = nullptr;
};

// Filled by GCInitLib, emptied by GCCloseLib, only read in between. Not locked, like the other
// tables.
extern NewerFunctionTable newerFunctions;

// Fills the table from the exports of `module`, and logs one INFO line with the names of all that
// are missing, if any.
void ResolveNewerFunctions(platform::ModuleHandle module, log4cpp::Category& logger);

}  // namespace vextrel

#endif  // VEXTREL_LIFECYCLE_NEWER_FUNCTIONS_H
