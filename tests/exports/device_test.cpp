// SPDX-License-Identifier: MIT
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
              .line = "DevGetPort(hDev=0x0000000000003000, "
                      "0x{2}->(pPort=0xFEDCBA9876543210))"},
             &Functions::DevGetPort, device, &port);
}

TEST_F(DeviceLines, DevGetNumDataStreamsShowsTheCountInDecimal) {
  std::uint32_t count = 0;
  ExpectLine({.target = [&] { count = 4294967290; },
              .line = "DevGetNumDataStreams(hDev=0x0000000000003000, "
                      "0x{2}->(piNumChannel=4294967290))"},
             &Functions::DevGetNumDataStreams, device, &count);
}

TEST_F(DeviceLines, DevGetDataStreamIDShowsADecimalSizeBehind0x) {
  ExpectLine({.target = [&] { query.AnswerText("stream-zero"); },
              .line = "DevGetDataStreamID(hDev=0x0000000000003000, iIndex=4294967295, "
                      "0x{3}->(pBuffer=stream-zero), 0x{4}->(iSize=0x12))"},
             &Functions::DevGetDataStreamID, device, 0xFFFFFFFFU, query.buffer.data(), &query.size);
}

TEST_F(DeviceLines, DevGetDataStreamIDOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.size = 0x10000000C; },
              .line = "DevGetDataStreamID(hDev=0x0000000000003000, iIndex=0, "
                      "0x0000000000000000->(pBuffer=NULL), 0x{4}->(iSize=0x12))"},
             &Functions::DevGetDataStreamID, device, 0U, nullptr, &query.size);
}

TEST_F(DeviceLines, DevOpenDataStream) {
  const char* id = "stream-0";
  DS_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x4000); },
              .line = "DevOpenDataStream(hDev=0x0000000000003000, 0x{2}->(pID=stream-0), "
                      "0x{3}->(hDS=0x0000000000004000))",
              .after = {kNotOpened}},
             &Functions::DevOpenDataStream, device, id, &handle);
}

TEST_F(DeviceLines, DevOpenDataStreamOfNoName) {
  DS_HANDLE handle = nullptr;
  ExpectLine({.line = "DevOpenDataStream(hDev=0x0000000000003000, "
                      "0x0000000000000000->(pID=NULL), 0x{3}->(hDS=0x0000000000000000))",
              .after = {kNotOpened}},
             &Functions::DevOpenDataStream, device, nullptr, &handle);
}

TEST_F(DeviceLines, DevGetInfo) {
  ExpectLine({.target = [&] { query.AnswerText("acme"); },
              .line = "DevGetInfo(hDev=0x0000000000003000, iID=DEVICE_INFO_VENDOR, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING) 0x{4}->(Buffer='acme'), "
                      "0x{5}->(iSize=5))"},
             &Functions::DevGetInfo, device, 1, &query.type, query.buffer.data(), &query.size);
}

TEST_F(DeviceLines, DevGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(2, 0x100000007); },
              .line = "DevGetInfo(hDev=0x0000000000003000, "
                      "iID=(Unknown DEVICE_INFO_CMD: 1001), "
                      "0x{3}->(iType=INFO_DATATYPE_STRINGLIST) "
                      "0x0000000000000000->(Buffer=STRINGLIST), 0x{5}->(iSize=7))"},
             &Functions::DevGetInfo, device, 1001, &query.type, nullptr, &query.size);
}

TEST_F(DeviceLines, DevClose) {
  ExpectLine({.line = "DevClose(hDev=0x0000000000003000)", .after = {kNotOpened}},
             &Functions::DevClose, device);
}

}  // namespace
}  // namespace vextrel_test
