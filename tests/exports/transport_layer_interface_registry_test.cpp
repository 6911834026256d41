// What the transport layer's and the interfaces' functions do to the handle registry, as far as its
// lines tell.
#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class TransportLayerRegistry : public ExportsTest {
 protected:
  void ExpectNothingOpen() {
    EXPECT_EQ(proxy.DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
    EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000004000, "
                                   "hB=0x0000000000005000)",
                                   kNotOpened));
  }
  void ExpectTransportLayerOpen() {
    EXPECT_EQ(proxy.DSQueueBuffer(Handle(0x4000), Handle(0x5000)), 0);
    EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000004000, "
                                   "hB=0x0000000000005000)"));
  }
};
using InterfaceRegistry = TransportLayerRegistry;

TEST_F(TransportLayerRegistry, TLOpenTakesTheHandleThatTheTargetReturned) {
  TL_HANDLE handle = nullptr;
  TargetDoes(&Functions::TLOpen, 0, [&] { handle = Handle(0x1234567890ABCDEF); });
  EXPECT_EQ(proxy.TLOpen(&handle), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=TLOpen("
                                      "0x{}->(pHandle=0x1234567890ABCDEF))",
                                      Hex16(&handle))));
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)",
            "ERROR Interface object with the handle 0x0000000000002000 is not defined on TL with "
            "handle 0x1234567890ABCDEF",
            "ERROR The interface with handle 0x0000000000000000 was not previously opened "
            "correctly using TLOpenInterface()!"));
}

TEST_F(TransportLayerRegistry, FailedTLOpenOpensNothing) {
  TL_HANDLE handle = Handle(0x1000);
  ExpectNoStepOnFailure(&Functions::TLOpen, &handle);
  ExpectNothingOpen();
}

TEST_F(TransportLayerRegistry, FailedTLOpenLeavesAnOpenTransportLayerAsItIs) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  TL_HANDLE handle = Handle(0x1001);
  ExpectNoStepOnFailure(&Functions::TLOpen, &handle);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                                 "ERROR Interface with handle 0x0000000000002000 on TL "
                                 "0x0000000000001000 was not closed properly using IFClose()"));
}

TEST_F(TransportLayerRegistry, SecondTLOpenForgetsTheFirstTransportLayerWithoutAWord) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  TL_HANDLE second = Handle(0x1001);
  EXPECT_EQ(proxy.TLOpen(&second), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=TLOpen("
                                      "0x{}->(pHandle=0x0000000000001001))",
                                      Hex16(&second))));
  OpenInterface(0x2002);
  EXPECT_EQ(proxy.TLClose(Handle(0x1001)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001001)",
                                 "ERROR Interface with handle 0x0000000000002002 on TL "
                                 "0x0000000000001001 was not closed properly using IFClose()"));
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

TEST_F(TransportLayerRegistry, TLCloseWithAnyHandleEndsTheTreeWithALineForEachInterface) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenInterface(0x2001);
  OpenDevice(0x2000, 0x3000);
  EXPECT_EQ(proxy.TLClose(Handle(0x9999)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000009999)",
                                 "ERROR Interface with handle 0x0000000000002000 on TL "
                                 "0x0000000000001000 was not closed properly using IFClose()",
                                 "ERROR Interface with handle 0x0000000000002001 on TL "
                                 "0x0000000000001000 was not closed properly using IFClose()"));
  ExpectNothingOpen();
}

TEST_F(TransportLayerRegistry, TLCloseWithANullHandleEndsTheTreeToo) {
  OpenTransportLayer(0x1000);
  EXPECT_EQ(proxy.TLClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000000000)"));
  ExpectNothingOpen();
}

TEST_F(TransportLayerRegistry, TLCloseWithoutATransportLayerHasNothingToSay) {
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

TEST_F(TransportLayerRegistry, TLCloseReleasesItsEventsBeforeItReportsTheInterfaces) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x1000, 0, 0x6000);
  RegisterEvent(0x1000, 1000, 0x6001);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on Transport Layer "
                    "0x0000000000001000 was not unregistered directly using GCUnregisterEvent()",
                    "WARN Event type EVENT_CUSTOM_ID with handle 0x0000000000006001 on Transport "
                    "Layer 0x0000000000001000 was not unregistered directly using "
                    "GCUnregisterEvent()",
                    "ERROR Interface with handle 0x0000000000002000 on TL 0x0000000000001000 was "
                    "not closed properly using IFClose()"));
}

TEST_F(TransportLayerRegistry, TLCloseWithAnotherHandleReportsTheEventsAfterTheInterfaces) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x1000, 0, 0x6000);
  RegisterEvent(0x2000, 1, 0x6001);
  EXPECT_EQ(proxy.TLClose(Handle(0x2000)), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000002000)",
            "WARN Event type EVENT_NEW_BUFFER with handle 0x0000000000006001 on interface "
            "0x0000000000002000 was not unregistered directly using GCUnregisterEvent()",
            "ERROR Interface with handle 0x0000000000002000 on TL 0x0000000000001000 was not "
            "closed properly using IFClose()",
            "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on Transport Layer "
            "0x0000000000001000 was not unregistered directly using GCUnregisterEvent()"));
}

TEST_F(TransportLayerRegistry, FailedTLCloseLeavesTheTransportLayerOpen) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x1000, 0, 0x6000);
  ExpectNoStepOnFailure(&Functions::TLClose, Handle(0x1000));
  ExpectTransportLayerOpen();
}

TEST_F(InterfaceRegistry, TLOpenInterfaceAddsAnInterfaceOnce) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  IF_HANDLE again = Handle(0x2000);
  const char* id = "if-0";
  EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), id, &again), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=TLOpenInterface("
                                      "hTL=0x0000000000001000, 0x{}->(sInterfaceName=if-0), "
                                      "0x{}->(hInterface=0000000000002000))",
                                      Hex16(id), Hex16(&again)),
                                 "ERROR Interface object with the handle 0x0000000000002000 has "
                                 "already been added on TL with handle 0x0000000000001000"));
}

TEST_F(InterfaceRegistry, TLOpenInterfaceAddsANullHandleLikeAnyOther) {
  OpenTransportLayer(0x1000);
  OpenInterface(0);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                                 "ERROR Interface with handle 0x0000000000000000 on TL "
                                 "0x0000000000001000 was not closed properly using IFClose()"));
}

TEST_F(InterfaceRegistry, FailedTLOpenInterfaceAddsNothing) {
  OpenTransportLayer(0x1000);
  IF_HANDLE handle = Handle(0x2000);
  ExpectNoStepOnFailure(&Functions::TLOpenInterface, Handle(0x1000), "if-0", &handle);
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

TEST_F(InterfaceRegistry, IFCloseOfANullHandleIsIllegalAndChangesNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0);
  RegisterEvent(0, 0, 0x6000);
  EXPECT_EQ(proxy.IFClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000000000)",
                                 "ERROR Illegal Interface handle!"));
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)",
                                 "ERROR Interface with handle 0x0000000000000000 on TL "
                                 "0x0000000000001000 was not closed properly using IFClose()"));
}

TEST_F(InterfaceRegistry, IFCloseOfANullHandleIsIllegalWithoutATransportLayerToo) {
  EXPECT_EQ(proxy.IFClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000000000)",
                                 "ERROR Illegal Interface handle!"));
}

TEST_F(InterfaceRegistry, IFCloseOfAnUnknownHandle) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  EXPECT_EQ(proxy.IFClose(Handle(0x2001)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002001)",
                    "ERROR Interface object with the handle 0x0000000000002001 is not defined on "
                    "TL with handle 0x0000000000001000",
                    "ERROR The interface with handle 0x0000000000000000 was not previously opened "
                    "correctly using TLOpenInterface()!"));
}

TEST_F(InterfaceRegistry, IFCloseRemovesTheInterface) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)"));
  EXPECT_EQ(proxy.TLClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=TLClose(hTL=0x0000000000001000)"));
}

TEST_F(InterfaceRegistry, IFCloseReleasesItsEventsBeforeItReportsTheDevices) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  OpenDevice(0x2000, 0x3001);
  RegisterEvent(0x2000, 2, 0x6000);
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)",
            "WARN Event type EVENT_FEATURE_INVALIDATE with handle 0x0000000000006000 on interface "
            "0x0000000000002000 was not unregistered directly using GCUnregisterEvent()",
            "ERROR Device with handle 0x0000000000003000 on interface 0x0000000000002000 was not "
            "closed properly using DevClose()",
            "ERROR Device with handle 0x0000000000003001 on interface 0x0000000000002000 was not "
            "closed properly using DevClose()"));
}

TEST_F(InterfaceRegistry, IFCloseReleasesTheEventsOfWhateverHasTheHandle) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x1000, 0, 0x6000);
  EXPECT_EQ(proxy.IFClose(Handle(0x1000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000001000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on Transport Layer "
                    "0x0000000000001000 was not unregistered directly using GCUnregisterEvent()",
                    "ERROR Interface object with the handle 0x0000000000001000 is not defined on "
                    "TL with handle 0x0000000000001000",
                    "ERROR The interface with handle 0x0000000000000000 was not previously opened "
                    "correctly using TLOpenInterface()!"));
}

TEST_F(InterfaceRegistry, FailedIFCloseLeavesTheInterfaceOpen) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  RegisterEvent(0x2000, 0, 0x6000);
  ExpectNoStepOnFailure(&Functions::IFClose, Handle(0x2000));
  ExpectNoStepOnFailure(&Functions::IFClose, nullptr);
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on interface "
                    "0x0000000000002000 was not unregistered directly using GCUnregisterEvent()"));
}

TEST_F(InterfaceRegistry, IFOpenDeviceWithoutRoomForAHandleAddsNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  const char* id = "cam";
  EXPECT_EQ(proxy.IFOpenDevice(Handle(0x2000), id, 2, nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=IFOpenDevice("
                                      "hInterface=0x0000000000002000, 0x{}->(sDevName=cam), "
                                      "iOpenFlags=DEVICE_ACCESS_READONLY, 0x0000000000000000)",
                                      Hex16(id)),
                                 "ERROR IFOpenDevice returned a NULL handle to the device!"));
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)"));
}

TEST_F(InterfaceRegistry, IFOpenDeviceAddsADeviceOnce) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0xFFFFFFFF00003000);
  DEV_HANDLE again = Handle(0xFFFFFFFF00003000);
  const char* id = "cam";
  EXPECT_EQ(proxy.IFOpenDevice(Handle(0x2000), id, 4, &again), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=IFOpenDevice("
                                      "hInterface=0x0000000000002000, 0x{}->(sDevName=cam), "
                                      "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x{}->(hDev=0x3000))",
                                      Hex16(id), Hex16(&again)),
                                 "ERROR Device object with the handle 0xFFFFFFFF00003000 has "
                                 "already been added on Interface with handle "
                                 "0x0000000000002000"));
}

TEST_F(InterfaceRegistry, IFOpenDeviceOnAnUnknownInterfaceIsReportedAndStillASuccess) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  DEV_HANDLE handle = Handle(0x3000);
  const char* id = "cam";
  EXPECT_EQ(proxy.IFOpenDevice(Handle(0x2001), id, 4, &handle), 0);
  EXPECT_THAT(TakeLines(), Lines(Fill("INFO GC_ERR_SUCCESS=IFOpenDevice("
                                      "hInterface=0x0000000000002001, 0x{}->(sDevName=cam), "
                                      "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x{}->(hDev=0x3000))",
                                      Hex16(id), Hex16(&handle)),
                                 "ERROR Unable to add Device with handle 0x0000000000003000! "
                                 "Interface with handle 0x0000000000002001 on TL "
                                 "0x0000000000001000 was not found!"));
}

TEST_F(InterfaceRegistry, FailedIFOpenDeviceAddsNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  DEV_HANDLE handle = Handle(0x3000);
  ExpectNoStepOnFailure(&Functions::IFOpenDevice, Handle(0x2000), "cam", 4, &handle);
  ExpectNoStepOnFailure(&Functions::IFOpenDevice, Handle(0x2000), "cam", 4, nullptr);
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)"));
}

}  // namespace
}  // namespace vextrel_test
