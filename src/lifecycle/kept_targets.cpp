// SPDX-License-Identifier: MIT
#include "lifecycle/kept_targets.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vextrel {
namespace {

VEXTREL_CONSTRUCTED_FIRST std::vector<platform::ModuleHandle> keptTargets;

}  // namespace

void KeepTarget(platform::ModuleHandle module, const std::string& path) {
  if (std::ranges::find(keptTargets, module) != keptTargets.end()) {
    return;
  }
  keptTargets.push_back(module);
  const platform::ModuleHandle again = platform::LoadModule(path.c_str()).module;
  if (again == module) {
    return;
  }
  // The file was exchanged in between, and this is another module.
  keptTargets.pop_back();
  if (again != nullptr) {
    platform::UnloadModule(again);
  }
}

void ReleaseKeptTargets() {
  for (const platform::ModuleHandle module : std::exchange(keptTargets, {})) {
    platform::UnloadModule(module);
  }
}

}  // namespace vextrel
