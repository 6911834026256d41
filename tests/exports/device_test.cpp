#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class DeviceLines : public ExportsTest {
 protected:
  const DEV_HANDLE device = Handle(0x3000);
  InfoQuery query;
};

TEST_F(DeviceLines, DevGetPort) {
  PORT_HANDLE port = nullptr;
  ExpectLine({.target = [&] { port = Handle(0xFEDCBA9876543210); },
              .line = Fill("DevGetPort(hDev=0x0000000000003000, "
                           "0x{}->(pPort=0xFEDCBA9876543210))",
                           Hex16(&port))},
             &Functions::DevGetPort, device, &port);
}

TEST_F(DeviceLines, DevGetNumDataStreamsShowsTheCountInDecimal) {
  std::uint32_t count = 0;
  ExpectLine({.target = [&] { count = 4294967290; },
              .line = Fill("DevGetNumDataStreams(hDev=0x0000000000003000, "
                           "0x{}->(piNumChannel=4294967290))",
                           Hex16(&count))},
             &Functions::DevGetNumDataStreams, device, &count);
}

TEST_F(DeviceLines, DevGetDataStreamIDShowsADecimalSizeBehind0x) {
  ExpectLine({.target = [&] { query.AnswerText("stream-zero"); },
              .line = Fill("DevGetDataStreamID(hDev=0x0000000000003000, iIndex=4294967295, "
                           "0x{}->(pBuffer=stream-zero), 0x{}->(iSize=0x12))",
                           Hex16(query.buffer.data()), Hex16(&query.size))},
             &Functions::DevGetDataStreamID, device, 0xFFFFFFFFU, query.buffer.data(), &query.size);
}

TEST_F(DeviceLines, DevGetDataStreamIDOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.size = 0x10000000C; },
              .line = Fill("DevGetDataStreamID(hDev=0x0000000000003000, iIndex=0, "
                           "0x0000000000000000->(pBuffer=NULL), 0x{}->(iSize=0x12))",
                           Hex16(&query.size))},
             &Functions::DevGetDataStreamID, device, 0U, nullptr, &query.size);
}

TEST_F(DeviceLines, DevOpenDataStream) {
  const char* id = "stream-0";
  DS_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x4000); },
              .line = Fill("DevOpenDataStream(hDev=0x0000000000003000, 0x{}->(pID=stream-0), "
                           "0x{}->(hDS=0x0000000000004000))",
                           Hex16(id), Hex16(&handle)),
              .after = {kNotOpened}},
             &Functions::DevOpenDataStream, device, id, &handle);
}

TEST_F(DeviceLines, DevOpenDataStreamOfNoName) {
  DS_HANDLE handle = nullptr;
  ExpectLine({.line = Fill("DevOpenDataStream(hDev=0x0000000000003000, "
                           "0x0000000000000000->(pID=NULL), 0x{}->(hDS=0x0000000000000000))",
                           Hex16(&handle)),
              .after = {kNotOpened}},
             &Functions::DevOpenDataStream, device, nullptr, &handle);
}

TEST_F(DeviceLines, DevGetInfo) {
  ExpectLine({.target = [&] { query.AnswerText("acme"); },
              .line = Fill("DevGetInfo(hDev=0x0000000000003000, iID=DEVICE_INFO_VENDOR, "
                           "0x{}->(iType=INFO_DATATYPE_STRING) 0x{}->(Buffer='acme'), "
                           "0x{}->(iSize=5))",
                           Hex16(&query.type), Hex16(query.buffer.data()), Hex16(&query.size))},
             &Functions::DevGetInfo, device, 1, &query.type, query.buffer.data(), &query.size);
}

TEST_F(DeviceLines, DevGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(2, 0x100000007); },
              .line = Fill("DevGetInfo(hDev=0x0000000000003000, "
                           "iID=(Unknown DEVICE_INFO_CMD: 1001), "
                           "0x{}->(iType=INFO_DATATYPE_STRINGLIST) "
                           "0x0000000000000000->(Buffer=STRINGLIST), 0x{}->(iSize=7))",
                           Hex16(&query.type), Hex16(&query.size))},
             &Functions::DevGetInfo, device, 1001, &query.type, nullptr, &query.size);
}

TEST_F(DeviceLines, DevClose) {
  ExpectLine({.line = "DevClose(hDev=0x0000000000003000)", .after = {kNotOpened}},
             &Functions::DevClose, device);
}

using DeviceRegistry = ExportsTest;

TEST_F(DeviceRegistry, DevOpenDataStreamOnANullDeviceIsReportedThoughTheStreamIsValid) {
  OpenTransportLayer(0x1000);
  DS_HANDLE handle = Handle(0x4000);
  const char* id = "s";
  EXPECT_EQ(proxy.DevOpenDataStream(nullptr, id, &handle), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000000000, "
                         "0x{}->(pID=s), 0x{}->(hDS=0x0000000000004000))",
                         Hex16(id), Hex16(&handle)),
                    "ERROR DevOpenDataStream returned a NULL handle to the datastream!"));
}

TEST_F(DeviceRegistry, DevOpenDataStreamOnANullDeviceIsReportedWithoutATransportLayerToo) {
  DS_HANDLE handle = Handle(0x4000);
  const char* id = "s";
  EXPECT_EQ(proxy.DevOpenDataStream(nullptr, id, &handle), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000000000, "
                         "0x{}->(pID=s), 0x{}->(hDS=0x0000000000004000))",
                         Hex16(id), Hex16(&handle)),
                    "ERROR DevOpenDataStream returned a NULL handle to the datastream!"));
}

TEST_F(DeviceRegistry, DevOpenDataStreamAddsAStreamOnceANullHandleLikeAnyOther) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  OpenDataStream(0x3000, 0);
  DS_HANDLE again = nullptr;
  const char* id = "s";
  EXPECT_EQ(proxy.DevOpenDataStream(Handle(0x3000), id, &again), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000003000, "
                         "0x{}->(pID=s), 0x{}->(hDS=0x0000000000000000))",
                         Hex16(id), Hex16(&again)),
                    "ERROR DataStream object with the handle 0x0000000000000000 has already been "
                    "added on Device with handle 0x0000000000003000"));
}

TEST_F(DeviceRegistry, DevOpenDataStreamOnAnUnknownDevice) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  DS_HANDLE handle = Handle(0x4000);
  const char* id = "s";
  EXPECT_EQ(proxy.DevOpenDataStream(Handle(0x3000), id, &handle), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000003000, "
                         "0x{}->(pID=s), 0x{}->(hDS=0x0000000000004000))",
                         Hex16(id), Hex16(&handle)),
                    "ERROR Unable to add DataStream with handle 0x0000000000004000! Device with "
                    "handle 0x0000000000003000 on Interface 0x0000000000002000 was not found!"));
}

TEST_F(DeviceRegistry, DevOpenDataStreamWithoutAnyInterface) {
  OpenTransportLayer(0x1000);
  DS_HANDLE handle = Handle(0x4000);
  const char* id = "s";
  EXPECT_EQ(proxy.DevOpenDataStream(Handle(0x3000), id, &handle), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=DevOpenDataStream(hDev=0x0000000000003000, "
                         "0x{}->(pID=s), 0x{}->(hDS=0x0000000000004000))",
                         Hex16(id), Hex16(&handle)),
                    "ERROR Unable to add DataStream with handle 0x0000000000004000! Device with "
                    "handle 0x0000000000003000 on TL 0x0000000000001000 was not found!"));
}

TEST_F(DeviceRegistry, FailedDevOpenDataStreamAddsNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  DS_HANDLE handle = Handle(0x4000);
  ExpectNoStepOnFailure(&Functions::DevOpenDataStream, Handle(0x3000), "s", &handle);
  ExpectNoStepOnFailure(&Functions::DevOpenDataStream, nullptr, "s", &handle);
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)"));
}

TEST_F(DeviceRegistry, DevCloseOfANullHandleIsIllegalAndChangesNothing) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0);
  RegisterEvent(0, 0, 0x6000);
  EXPECT_EQ(proxy.DevClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000000000)",
                                 "ERROR Illegal Device handle!"));
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=IFClose(hInterface=0x0000000000002000)",
                                 "ERROR Device with handle 0x0000000000000000 on interface "
                                 "0x0000000000002000 was not closed properly using DevClose()"));
}

TEST_F(DeviceRegistry, DevCloseOfANullHandleIsIllegalWithoutATransportLayerToo) {
  EXPECT_EQ(proxy.DevClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000000000)",
                                 "ERROR Illegal Device handle!"));
}

TEST_F(DeviceRegistry, DevCloseOfADeviceNeverRecorded) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)",
                    "ERROR Device object with the handle 0x0000000000003000 is not defined on "
                    "Interface with handle 0x0000000000002000",
                    "ERROR Unable to remove Device with handle 0x0000000000003000 on any Interface "
                    "on TL 0x0000000000001000!",
                    "ERROR The device with handle 0x0000000000000000 was not previously opened "
                    "correctly using DevOpen()!"));
}

TEST_F(DeviceRegistry, DevCloseReleasesItsEventsBeforeItReportsTheStreams) {
  OpenDataStreamAndAllAbove();
  RegisterEvent(0x3000, 3, 0x6000);
  RegisterEvent(0x3000, 0, 0x6001);
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)",
            "WARN Event type EVENT_FEATURE_CHANGE with handle 0x0000000000006000 on device "
            "0x0000000000003000 was not unregistered directly using GCUnregisterEvent()",
            "WARN Event type EVENT_ERROR with handle 0x0000000000006001 on device "
            "0x0000000000003000 was not unregistered directly using GCUnregisterEvent()",
            "ERROR DataStream with handle 0x0000000000004000 on Device 0x0000000000003000 was not "
            "closed properly using DSClose()"));
}

TEST_F(DeviceRegistry, DevCloseReleasesTheEventsBeforeItLooksForTheDevice) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenInterface(0x2001);
  OpenDevice(0x2001, 0x3000);
  RegisterEvent(0x3000, 0, 0x6000);
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on device "
                    "0x0000000000003000 was not unregistered directly using GCUnregisterEvent()",
                    "ERROR Device object with the handle 0x0000000000003000 is not defined on "
                    "Interface with handle 0x0000000000002000"));
}

TEST_F(DeviceRegistry, FailedDevCloseLeavesTheDeviceOpen) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  RegisterEvent(0x3000, 0, 0x6000);
  ExpectNoStepOnFailure(&Functions::DevClose, Handle(0x3000));
  ExpectNoStepOnFailure(&Functions::DevClose, nullptr);
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)",
                    "WARN Event type EVENT_ERROR with handle 0x0000000000006000 on device "
                    "0x0000000000003000 was not unregistered directly using GCUnregisterEvent()"));
}

}  // namespace
}  // namespace vextrel_test
