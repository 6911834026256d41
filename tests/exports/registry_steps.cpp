// SPDX-License-Identifier: MIT
#include "exports/registry_steps.h"

#include <cstddef>

namespace vextrel_test {

Step OpenTl(std::uintptr_t tl) {
  return Opening(&Functions::TLOpen, tl);
}
Step OpenIf(std::uintptr_t interfaceHandle) {
  return Opening(&Functions::TLOpenInterface, interfaceHandle, Handle(0x1000), "interface");
}
Step OpenDev(std::uintptr_t interfaceHandle, std::uintptr_t device) {
  return Opening(&Functions::IFOpenDevice, device, Handle(interfaceHandle), "device", 4);
}
Step OpenDs(std::uintptr_t device, std::uintptr_t stream) {
  return Opening(&Functions::DevOpenDataStream, stream, Handle(device), "stream");
}
Step Announce(std::uintptr_t stream, std::uintptr_t buffer) {
  return Opening(&Functions::DSAnnounceBuffer, buffer, Handle(stream), nullptr, 8U, nullptr);
}
Step AllocAndAnnounce(std::uintptr_t stream, std::uintptr_t buffer) {
  return Opening(&Functions::DSAllocAndAnnounceBuffer, buffer, Handle(stream), 8U, nullptr);
}
Step Register(std::uintptr_t source, EVENT_TYPE type, std::uintptr_t event) {
  return Opening(&Functions::GCRegisterEvent, event, Handle(source), type);
}

Step CloseTl(std::uintptr_t tl) {
  return Calling(&Functions::TLClose, Handle(tl));
}
Step CloseIf(std::uintptr_t interfaceHandle) {
  return Calling(&Functions::IFClose, Handle(interfaceHandle));
}
Step CloseDev(std::uintptr_t device) {
  return Calling(&Functions::DevClose, Handle(device));
}
Step CloseDs(std::uintptr_t stream) {
  return Calling(&Functions::DSClose, Handle(stream));
}
Step Revoke(std::uintptr_t stream, std::uintptr_t buffer) {
  return Calling(&Functions::DSRevokeBuffer, Handle(stream), Handle(buffer), nullptr, nullptr);
}
Step Unregister(std::uintptr_t source, EVENT_TYPE type) {
  return Calling(&Functions::GCUnregisterEvent, Handle(source), type);
}

Step Queue(std::uintptr_t stream, std::uintptr_t buffer) {
  return Calling(&Functions::DSQueueBuffer, Handle(stream), Handle(buffer));
}
Step Flush(std::uintptr_t stream, ACQ_QUEUE_TYPE operation) {
  return Calling(&Functions::DSFlushQueue, Handle(stream), operation);
}
Step GetData(std::uintptr_t event, std::uintptr_t buffer) {
  return {[=](const Functions& proxy) {
    BUFFER_HANDLE delivered = Handle(buffer);
    std::size_t size = sizeof delivered;
    return proxy.EventGetData(Handle(event), &delivered, &size, 10);
  }};
}

void RegistrySteps::Tell(const Story& story) {
  for (std::size_t number = 0; number < story.steps.size(); ++number) {
    SCOPED_TRACE("step " + std::to_string(number));
    const Step& step = story.steps[number];
    script.result = step.result;
    EXPECT_EQ(step.call(proxy), step.result);
    std::vector<::testing::Matcher<std::string>> lines = {::testing::StartsWith(
        step.result == GC_ERR_SUCCESS ? "INFO GC_ERR_SUCCESS=" : "INFO GC_ERR_ERROR=")};
    lines.insert(lines.end(), step.lines.begin(), step.lines.end());
    EXPECT_THAT(TakeLines(), ::testing::ElementsAreArray(lines));
  }
  script.result = GC_ERR_SUCCESS;
}

}  // namespace vextrel_test
