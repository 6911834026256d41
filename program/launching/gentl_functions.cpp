// SPDX-License-Identifier: MIT
#include "launching/gentl_functions.h"

#include <algorithm>
#include <iterator>

#include "calllog/function_names.h"

namespace vextrel::program {
namespace {

// What came after 1.0, the oldest version first.
struct Addition {
  std::string_view function;
  std::string_view version;
};
constexpr Addition kAdditions[] = {
    {"GCGetNumPortURLs", "1.1"},
    {"GCGetPortURLInfo", "1.1"},
    {"GCReadPortStacked", "1.1"},
    {"GCWritePortStacked", "1.1"},
    {"DSGetBufferChunkData", "1.3"},
    {"IFGetParentTL", "1.4"},
    {"DevGetParentIF", "1.4"},
    {"DSGetParentDev", "1.4"},
    {"DSGetNumBufferParts", "1.5"},
    {"DSGetBufferPartInfo", "1.5"},
    {"DSAnnounceCompositeBuffer", "1.6"},
    {"DSGetBufferInfoStacked", "1.6"},
    {"DSGetBufferPartInfoStacked", "1.6"},
    {"DSGetNumFlows", "1.6"},
    {"DSGetFlowInfo", "1.6"},
    {"DSGetNumBufferSegments", "1.6"},
    {"DSGetBufferSegmentInfo", "1.6"},
};

std::vector<GentlVersion> MakeVersions() {
  std::vector<GentlVersion> versions = {{"1.0", {}}};
  for (const std::string_view function : kFunctionNames) {
    if (std::ranges::find(kAdditions, function, &Addition::function) == std::end(kAdditions)) {
      versions.front().functions.push_back(function);
    }
  }
  for (const Addition& addition : kAdditions) {
    if (versions.back().name != addition.version) {
      versions.push_back({addition.version, {}});
    }
    versions.back().functions.push_back(addition.function);
  }
  return versions;
}

}  // namespace

const std::vector<GentlVersion>& GentlVersions() {
  static const std::vector<GentlVersion> versions = MakeVersions();
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

std::string_view FirstNewerFunction(const std::vector<std::string>& exports) {
  const auto& versions = GentlVersions();
  for (auto version = versions.begin() + 2; version != versions.end(); ++version) {
    for (const std::string_view function : version->functions) {
      if (std::find(exports.begin(), exports.end(), function) != exports.end()) {
        return function;
      }
    }
  }
  return {};
}

}  // namespace vextrel::program
