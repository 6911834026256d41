// SPDX-License-Identifier: MIT
#include "launching/gentl_functions.h"

#include <algorithm>
#include <iterator>

#include "calllog/function_names.h"

namespace vextrel::program {
namespace {

// The log's own lines have all functions of 1.0 and 1.1 in front, and those that came later in the
// order of their coming.
constexpr std::string_view kOf11[] = {"GCGetNumPortURLs", "GCGetPortURLInfo", "GCReadPortStacked",
                                      "GCWritePortStacked"};
struct FirstOfVersion {
  std::string_view version;
  std::string_view function;
};
constexpr FirstOfVersion kNewerVersions[] = {{"1.3", "DSGetBufferChunkData"},
                                             {"1.4", "IFGetParentTL"},
                                             {"1.5", "DSGetNumBufferParts"},
                                             {"1.6", "DSAnnounceCompositeBuffer"}};

std::vector<GentlVersion> MakeVersions() {
  std::vector<GentlVersion> versions = {{"1.0", {}}, {"1.1", {}}};
  const auto* next = std::begin(kNewerVersions);
  for (const std::string_view function : kFunctionNames) {
    if (next != std::end(kNewerVersions) && function == next->function) {
      versions.push_back({next++->version, {}});
    }
    const bool is11 = std::find(std::begin(kOf11), std::end(kOf11), function) != std::end(kOf11);
    const bool is10 = versions.size() == 2 && !is11;
    (is10 ? versions.front() : versions.back()).functions.push_back(function);
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

bool HasNewerFunction(const std::vector<std::string>& exports) {
  const auto& versions = GentlVersions();
  return std::any_of(versions.begin() + 2, versions.end(), [&](const GentlVersion& version) {
    return Lacking(version, exports).size() < version.functions.size();
  });
}

}  // namespace vextrel::program
