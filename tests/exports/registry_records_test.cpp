// SPDX-License-Identifier: MIT
// What becomes of the registry's records where lines alone cannot tell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <log4cpp/Priority.hh>
#include <stdexcept>
#include <string>

#include "exports/linked_exports.h"
#include "registry/heap_watch.h"

namespace vextrel_test {
namespace {

using vextrel::proxyState;
using vextrel::TransportLayerNode;

class RegistryRecords : public LinkedExports {
 protected:
  // Transport layer 0x1000, interface 0x2000, device 0x3000, stream 0x4000, with an event on each.
  void OpenEverything() {
    TL_HANDLE transportLayer = Handle(0x1000);
    IF_HANDLE interfaceHandle = Handle(0x2000);
    DEV_HANDLE device = Handle(0x3000);
    DS_HANDLE stream = Handle(0x4000);
    EXPECT_EQ(::TLOpen(&transportLayer), 0);
    EXPECT_EQ(::TLOpenInterface(transportLayer, "interface", &interfaceHandle), 0);
    EXPECT_EQ(::IFOpenDevice(interfaceHandle, "device", DEVICE_ACCESS_CONTROL, &device), 0);
    EXPECT_EQ(::DevOpenDataStream(device, "stream", &stream), 0);
    for (void* source : {transportLayer, interfaceHandle, device, stream}) {
      EVENT_HANDLE event = Handle(0x6000);
      EXPECT_EQ(::GCRegisterEvent(source, EVENT_ERROR, &event), 0);
    }
    static_cast<void>(TakeLines());
  }
};

TEST_F(RegistryRecords, ASecondTLOpenDestroysNothingOfTheFirstTree) {
  OpenEverything();
  TransportLayerNode* const first = proxyState.registryRoot;
  const HeapWatch root(first);
  const HeapWatch interfaceNode(first->interfaces.at(0));
  const HeapWatch device(first->interfaces[0]->devices.at(0));
  const HeapWatch event(first->events.Registrations().at(0));
  TL_HANDLE second = Handle(0x1001);
  EXPECT_EQ(::TLOpen(&second), 0);
  EXPECT_NE(proxyState.registryRoot, first);
  EXPECT_EQ(proxyState.registryRoot->handle, Handle(0x1001));
  EXPECT_EQ(::TLClose(Handle(0x1001)), 0);
  for (const HeapWatch* each : {&root, &interfaceNode, &device, &event}) {
    EXPECT_FALSE(each->IsFreed());
  }
  delete first;
}

class FailingRelease : public RegistryRecords {
 protected:
  // Opens everything, and closes one of it while nothing can be said about the events on it.
  template <typename Close>
  void CloseWithoutWarnings(Close close) {
    OpenEverything();
    hook.action = [](const log4cpp::LoggingEvent& event) {
      if (event.priority == log4cpp::Priority::WARN) {
        throw std::runtime_error("no warnings today");
      }
    };
    EXPECT_EQ(close(), 0);
    hook.action = [](const log4cpp::LoggingEvent& /*event*/) {};
    static_cast<void>(TakeLines());
  }
};

struct Closing {
  const char* name;
  GC_ERROR (*close)();
  // The registry's first line when it is closed again.
  const char* gone;
};

class FailingReleaseOf : public FailingRelease, public ::testing::WithParamInterface<Closing> {};

TEST_P(FailingReleaseOf, DoesNotKeepTheRecordThatIsClosed) {
  CloseWithoutWarnings(GetParam().close);
  EXPECT_EQ(GetParam().close(), 0);
  EXPECT_THAT(TakeLines(), ::testing::Contains(GetParam().gone));
}

INSTANTIATE_TEST_SUITE_P(
    All, FailingReleaseOf,
    ::testing::Values(
        Closing{"IFClose", [] { return ::IFClose(Handle(0x2000)); },
                "ERROR Interface object with the handle 0x0000000000002000 is not defined on TL "
                "with handle 0x0000000000001000"},
        Closing{"DevClose", [] { return ::DevClose(Handle(0x3000)); },
                "ERROR Device object with the handle 0x0000000000003000 is not defined on "
                "Interface with handle 0x0000000000002000"},
        Closing{"DSClose", [] { return ::DSClose(Handle(0x4000)); },
                "ERROR DataStream object with the handle 0x0000000000004000 is not defined on "
                "Device with handle 0x0000000000003000"}),
    [](const auto& closing) { return std::string(closing.param.name); });

TEST_F(FailingRelease, DoesNotKeepTheTransportLayer) {
  CloseWithoutWarnings([] { return ::TLClose(Handle(0x1000)); });
  EXPECT_EQ(proxyState.registryRoot, nullptr);
}

}  // namespace
}  // namespace vextrel_test
