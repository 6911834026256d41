// SPDX-License-Identifier: MIT
#include "lifecycle/newer_functions.h"

#include <string>

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "lifecycle/resolver.h"

namespace vextrel {

NewerFunctionTable newerFunctions;

void ResolveNewerFunctions(platform::ModuleHandle module, log4cpp::Category& logger) {
  std::string missing;
  const auto resolve = [&, resolver = Resolver(module, logger)]<FormatText name>(
                           auto& slot, FunctionName<name> function) {
    if (!resolver.Find(slot, function)) {
      missing.append(missing.empty() ? "" : ", ").append(name.characters);
    }
  };
  resolve(newerFunctions.DSGetBufferChunkData, "DSGetBufferChunkData"_function);
  resolve(newerFunctions.IFGetParentTL, "IFGetParentTL"_function);
  resolve(newerFunctions.DevGetParentIF, "DevGetParentIF"_function);
  resolve(newerFunctions.DSGetParentDev, "DSGetParentDev"_function);
  resolve(newerFunctions.DSGetNumBufferParts, "DSGetNumBufferParts"_function);
  resolve(newerFunctions.DSGetBufferPartInfo, "DSGetBufferPartInfo"_function);
  resolve(newerFunctions.DSAnnounceCompositeBuffer, "DSAnnounceCompositeBuffer"_function);
  resolve(newerFunctions.DSGetBufferInfoStacked, "DSGetBufferInfoStacked"_function);
  resolve(newerFunctions.DSGetBufferPartInfoStacked, "DSGetBufferPartInfoStacked"_function);
  resolve(newerFunctions.DSGetNumFlows, "DSGetNumFlows"_function);
  resolve(newerFunctions.DSGetFlowInfo, "DSGetFlowInfo"_function);
  resolve(newerFunctions.DSGetNumBufferSegments, "DSGetNumBufferSegments"_function);
  resolve(newerFunctions.DSGetBufferSegmentInfo, "DSGetBufferSegmentInfo"_function);
  if (!missing.empty()) {
    ReportInfo(logger, report::kNewerNotExported, missing);
  }
}

}  // namespace vextrel
