// SPDX-License-Identifier: MIT
#include "launching/gentl_functions.h"

#include <algorithm>

namespace vextrel::program {

const std::vector<GentlVersion>& GentlVersions() {
  static const std::vector<GentlVersion> versions = {
      {"1.0",
       {"GCGetInfo",
        "GCGetLastError",
        "GCInitLib",
        "GCCloseLib",
        "TLOpen",
        "TLClose",
        "TLGetInfo",
        "TLGetNumInterfaces",
        "TLGetInterfaceID",
        "TLGetInterfaceInfo",
        "TLOpenInterface",
        "TLUpdateInterfaceList",
        "IFClose",
        "IFGetInfo",
        "IFGetNumDevices",
        "IFGetDeviceID",
        "IFUpdateDeviceList",
        "IFGetDeviceInfo",
        "IFOpenDevice",
        "DevGetPort",
        "DevGetNumDataStreams",
        "DevGetDataStreamID",
        "DevOpenDataStream",
        "DevGetInfo",
        "DevClose",
        "DSAnnounceBuffer",
        "DSAllocAndAnnounceBuffer",
        "DSFlushQueue",
        "DSStartAcquisition",
        "DSStopAcquisition",
        "DSGetInfo",
        "DSGetBufferID",
        "DSClose",
        "DSRevokeBuffer",
        "DSQueueBuffer",
        "DSGetBufferInfo",
        "GCReadPort",
        "GCWritePort",
        "GCGetPortURL",
        "GCGetPortInfo",
        "GCRegisterEvent",
        "GCUnregisterEvent",
        "EventGetData",
        "EventGetDataInfo",
        "EventGetInfo",
        "EventFlush",
        "EventKill"}},
      {"1.1", {"GCGetNumPortURLs", "GCGetPortURLInfo", "GCReadPortStacked", "GCWritePortStacked"}},
      {"1.3", {"DSGetBufferChunkData"}},
      {"1.4", {"IFGetParentTL", "DevGetParentIF", "DSGetParentDev"}},
      {"1.5", {"DSGetNumBufferParts", "DSGetBufferPartInfo"}},
      {"1.6",
       {"DSAnnounceCompositeBuffer", "DSGetBufferInfoStacked", "DSGetBufferPartInfoStacked",
        "DSGetNumFlows", "DSGetFlowInfo", "DSGetNumBufferSegments", "DSGetBufferSegmentInfo"}}};
  return versions;
}

std::vector<std::string_view> Lacking(const GentlVersion& version,
                                      const std::vector<std::string>& exports) {
  std::vector<std::string_view> lacking;
  for (const std::string_view function : version.functions) {
    if (std::find(exports.begin(), exports.end(), function) == exports.end()) {
      lacking.push_back(function);
    }
  }
  return lacking;
}

bool HasNewerFunction(const std::vector<std::string>& exports) {
  const auto& versions = GentlVersions();
  return std::any_of(versions.begin() + 2, versions.end(), [&](const GentlVersion& version) {
    return Lacking(version, exports).size() < version.functions.size();
  });
}

}  // namespace vextrel::program
