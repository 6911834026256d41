// SPDX-License-Identifier: MIT
// What a consumer does, step by step, and what the registry says to each step.
#ifndef VEXTREL_TESTS_EXPORTS_REGISTRY_STEPS_H
#define VEXTREL_TESTS_EXPORTS_REGISTRY_STEPS_H

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "exports/exports_fixture.h"

namespace vextrel_test {

// A call, and the lines behind the call's own. Opening steps are given the handle that the target
// returns; unless a step says something, it has to be silent.
struct Step {
  std::function<GC_ERROR(const Functions&)> call;
  GC_ERROR result = GC_ERR_SUCCESS;
  std::vector<std::string> lines = {};

  [[nodiscard]] Step Says(std::vector<std::string> said) && {
    lines = std::move(said);
    return std::move(*this);
  }
};

template <typename... Parameters, typename... Arguments>
[[nodiscard]] Step Calling(GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...),
                           Arguments... arguments) {
  return {[=](const Functions& proxy) { return (proxy.*slot)(arguments...); }};
}
// A call whose last argument takes the handle `returned`.
template <typename... Parameters, typename... Arguments>
[[nodiscard]] Step Opening(GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...),
                           std::uintptr_t returned, Arguments... arguments) {
  return {[=](const Functions& proxy) {
    void* handle = Handle(returned);
    return (proxy.*slot)(arguments..., &handle);
  }};
}

// The step, which the target fails, and which is silent for that.
[[nodiscard]] inline Step Failed(Step step) {
  step.result = GC_ERR_ERROR;
  return step;
}

[[nodiscard]] Step OpenTl(std::uintptr_t tl);
[[nodiscard]] Step OpenIf(std::uintptr_t interfaceHandle);
[[nodiscard]] Step OpenDev(std::uintptr_t interfaceHandle, std::uintptr_t device);
[[nodiscard]] Step OpenDs(std::uintptr_t device, std::uintptr_t stream);
[[nodiscard]] Step Announce(std::uintptr_t stream, std::uintptr_t buffer);
[[nodiscard]] Step AllocAndAnnounce(std::uintptr_t stream, std::uintptr_t buffer);
[[nodiscard]] Step Register(std::uintptr_t source, EVENT_TYPE type, std::uintptr_t event);

[[nodiscard]] Step CloseTl(std::uintptr_t tl);
[[nodiscard]] Step CloseIf(std::uintptr_t interfaceHandle);
[[nodiscard]] Step CloseDev(std::uintptr_t device);
[[nodiscard]] Step CloseDs(std::uintptr_t stream);
[[nodiscard]] Step Revoke(std::uintptr_t stream, std::uintptr_t buffer);
[[nodiscard]] Step Unregister(std::uintptr_t source, EVENT_TYPE type);

[[nodiscard]] Step Queue(std::uintptr_t stream, std::uintptr_t buffer);
[[nodiscard]] Step Flush(std::uintptr_t stream, ACQ_QUEUE_TYPE operation);
[[nodiscard]] Step GetData(std::uintptr_t event, std::uintptr_t buffer);

struct Story {
  const char* name;
  std::vector<Step> steps;
};

class RegistrySteps : public BoundProxy, public ::testing::WithParamInterface<Story> {
 protected:
  void Tell(const Story& story);
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_EXPORTS_REGISTRY_STEPS_H
