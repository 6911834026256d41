// SPDX-License-Identifier: MIT
// The lines of the transport layer's and the interfaces' functions.
#include <cstring>

#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class TransportLayerLines : public ExportsTest {
 protected:
  const TL_HANDLE transportLayer = Handle(0x1000);
  InfoQuery query;
};

TEST_F(TransportLayerLines, TLOpen) {
  TL_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0xFEDCBA9876543210); },
              .line = "TLOpen(0x{1}->(pHandle=0xFEDCBA9876543210))"},
             &Functions::TLOpen, &handle);
}

TEST_F(TransportLayerLines, TLClose) {
  ExpectLine({.line = "TLClose(hTL=0x0000000000001000)"}, &Functions::TLClose, transportLayer);
}

TEST_F(TransportLayerLines, TLGetInfoShowsTheHandleWithout0x) {
  ExpectLine({.target = [&] { query.AnswerText("acme"); },
              .line = "TLGetInfo(hTL=0000000000001000, iInfoCmd=TL_INFO_MODEL, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING), 0x{4}->(Buffer='acme'), "
                      "0x{5}->(iSize=5))"},
             &Functions::TLGetInfo, transportLayer, 2, &query.type, query.buffer.data(),
             &query.size);
}

TEST_F(TransportLayerLines, TLGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(1000, 0x100000007); },
              .line = "TLGetInfo(hTL=0000000000001000, "
                      "iInfoCmd=(Unknown TL_INFO_CMD: 1000), "
                      "0x{3}->(iType=(Unknown INFO_DATATYPE: 1000)), "
                      "0x0000000000000000->(Buffer=(Unknown INFO_DATATYPE: 1000)), "
                      "0x{5}->(iSize=7))"},
             &Functions::TLGetInfo, transportLayer, 1000, &query.type, nullptr, &query.size);
}

TEST_F(TransportLayerLines, TLGetNumInterfacesShowsADecimalCountBehind0x) {
  std::uint32_t count = 0;
  ExpectLine({.target = [&] { count = 12; },
              .line = "TLGetNumInterfaces(hTL=0x0000000000001000, "
                      "0x{2}->(iNumInterfaces=0x12))"},
             &Functions::TLGetNumInterfaces, transportLayer, &count);
}

TEST_F(TransportLayerLines, TLGetInterfaceID) {
  ExpectLine({.target = [&] { query.AnswerText("if-0"); },
              .line = "TLGetInterfaceID(hTL=0x0000000000001000, iIndex=4294967295, "
                      "0x{3}->(Buffer=if-0), 0x{4}->(iSize=5))"},
             &Functions::TLGetInterfaceID, transportLayer, 0xFFFFFFFFU, query.buffer.data(),
             &query.size);
}

TEST_F(TransportLayerLines, TLGetInterfaceIDOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.size = 0x100000005; },
              .line = "TLGetInterfaceID(hTL=0x0000000000001000, iIndex=0, "
                      "0x0000000000000000->(Buffer=NULL), 0x{4}->(iSize=5))"},
             &Functions::TLGetInterfaceID, transportLayer, 0U, nullptr, &query.size);
}

TEST_F(TransportLayerLines, TLGetInterfaceInfosValuesShiftByOnePlaceFromTheBufferOn) {
  const char* id = "if-0";
  // The size's bytes, read as a text, are "ABCDE".
  const auto target = [&] {
    query.AnswerText("GEV");
    query.size = 0x4544434241;
  };
  ExpectLine({.target = target,
              .line = "TLGetInterfaceInfo(hTL=0x0000000000001000, "
                      "0x{2}->(sInterfaceName=if-0), iCmd=INTERFACE_INFO_TLTYPE, "
                      "0x{4}->(iType=INFO_DATATYPE_STRING), 0x<address>->(Buffer=ABCDE), "
                      "0x0000004544434241->(iSize=0))"},
             &Functions::TLGetInterfaceInfo, transportLayer, id, 2, &query.type,
             query.buffer.data(), &query.size);
}

TEST_F(TransportLayerLines, TLGetInterfaceInfoOfNoInterfaceAndTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(1, 0x41); },
              .line = "TLGetInterfaceInfo(hTL=0x0000000000001000, "
                      "0x0000000000000000->(sInterfaceName=NULL), "
                      "iCmd=(Unknown INTERFACE_INFO_CMD: -1), "
                      "0x{4}->(iType=INFO_DATATYPE_STRING), 0x<address>->(Buffer=A), "
                      "0x0000000000000041->(iSize=0))"},
             &Functions::TLGetInterfaceInfo, transportLayer, nullptr, -1, &query.type, nullptr,
             &query.size);
}

TEST_F(TransportLayerLines, TLOpenInterfaceShowsTheNewHandleWithout0x) {
  const char* id = "if-0";
  IF_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x2000); },
              .line = "TLOpenInterface(hTL=0x0000000000001000, 0x{2}->(sInterfaceName=if-0), "
                      "0x{3}->(hInterface=0000000000002000))",
              .after = {kNotOpened}},
             &Functions::TLOpenInterface, transportLayer, id, &handle);
}

TEST_F(TransportLayerLines, TLOpenInterfaceOfNoName) {
  IF_HANDLE handle = nullptr;
  ExpectLine({.line = "TLOpenInterface(hTL=0x0000000000001000, "
                      "0x0000000000000000->(sInterfaceName=NULL), "
                      "0x{3}->(hInterface=0000000000000000))",
              .after = {kNotOpened}},
             &Functions::TLOpenInterface, transportLayer, nullptr, &handle);
}

TEST_F(TransportLayerLines, TLUpdateInterfaceListShowsTheFlagAsANumber) {
  bool8_t changed = 0;
  ExpectLine({.target = [&] { changed = 255; },
              .line = "TLUpdateInterfaceList(hTL=0x0000000000001000, "
                      "0x{2}->(bHasChanged=255), iTimeout=4294967295)"},
             &Functions::TLUpdateInterfaceList, transportLayer, &changed, 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(TransportLayerLines, TLUpdateInterfaceListWithoutAFlagShowsSixteenZeros) {
  ExpectLine({.line = "TLUpdateInterfaceList(hTL=0x0000000000001000, 0x0000000000000000, "
                      "iTimeout=100)"},
             &Functions::TLUpdateInterfaceList, transportLayer, nullptr, 0x100000064U);
}

class InterfaceLines : public ExportsTest {
 protected:
  const IF_HANDLE interfaceHandle = Handle(0x2000);
  InfoQuery query;
};

TEST_F(InterfaceLines, IFClose) {
  ExpectLine({.line = "IFClose(hInterface=0x0000000000002000)", .after = {kNotOpened}},
             &Functions::IFClose, interfaceHandle);
}

TEST_F(InterfaceLines, IFGetInfo) {
  ExpectLine({.target = [&] { query.AnswerText("if-0"); },
              .line = "IFGetInfo(hInterface=0x0000000000002000, iID=INTERFACE_INFO_ID, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING), 0x{4}->(Buffer='if-0'), "
                      "0x{5}->(iSize=5))"},
             &Functions::IFGetInfo, interfaceHandle, 0, &query.type, query.buffer.data(),
             &query.size);
}

TEST_F(InterfaceLines, IFGetInfoOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(1, 0x100000007); },
              .line = "IFGetInfo(hInterface=0x0000000000002000, "
                      "iID=INTERFACE_INFO_CUSTOM_ID, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING), 0x0000000000000000->(Buffer=NULL), "
                      "0x{5}->(iSize=7))"},
             &Functions::IFGetInfo, interfaceHandle, 1000, &query.type, nullptr, &query.size);
}

TEST_F(InterfaceLines, IFGetNumDevicesShowsADecimalCountBehind0x) {
  std::uint32_t count = 0;
  ExpectLine({.target = [&] { count = 10; },
              .line = "IFGetNumDevices(hInterface=0x0000000000002000, "
                      "0x{2}->(iNumDevices=0x10))"},
             &Functions::IFGetNumDevices, interfaceHandle, &count);
}

TEST_F(InterfaceLines, IFGetDeviceID) {
  ExpectLine({.target = [&] { query.AnswerText("cam"); },
              .line = "IFGetDeviceID(hInterface=0x0000000000002000, iIndex=1, "
                      "0x{3}->(Buffer=cam), 0x{4}->(iSize=4))"},
             &Functions::IFGetDeviceID, interfaceHandle, 1U, query.buffer.data(), &query.size);
}

TEST_F(InterfaceLines, IFGetDeviceIDOfTheSizeAlone) {
  ExpectLine({.target = [&] { query.size = 0x100000004; },
              .line = "IFGetDeviceID(hInterface=0x0000000000002000, iIndex=4294967295, "
                      "0x0000000000000000->(Buffer=NULL), 0x{4}->(iSize=4))"},
             &Functions::IFGetDeviceID, interfaceHandle, 0xFFFFFFFFU, nullptr, &query.size);
}

TEST_F(InterfaceLines, IFUpdateDeviceListShowsTheFlagAsANumber) {
  bool8_t changed = 0;
  ExpectLine({.target = [&] { changed = 129; },
              .line = "IFUpdateDeviceList(hInterface=0x0000000000002000, "
                      "0x{2}->(bHasChanged=129), iTimeout=1000)"},
             &Functions::IFUpdateDeviceList, interfaceHandle, &changed, 1000U);
}

TEST_F(InterfaceLines, IFUpdateDeviceListWithoutAFlagShowsSixteenZeros) {
  ExpectLine({.line = "IFUpdateDeviceList(hInterface=0x0000000000002000, 0x0000000000000000, "
                      "iTimeout=4294967295)"},
             &Functions::IFUpdateDeviceList, interfaceHandle, nullptr, 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(InterfaceLines, IFGetDeviceInfoShowsTheDevicesNameWithoutItsAddress) {
  ExpectLine({.target = [&] { query.AnswerText("acme"); },
              .line = "IFGetDeviceInfo(hInterface=0x0000000000002000, psDeviceName=cam, "
                      "iID=DEVICE_INFO_VENDOR, 0x{4}->(iType=INFO_DATATYPE_STRING), "
                      "0x{5}->(Buffer='acme'), 0x{6}->(iSize=5))"},
             &Functions::IFGetDeviceInfo, interfaceHandle, "cam", 1, &query.type,
             query.buffer.data(), &query.size);
}

TEST_F(InterfaceLines, IFGetDeviceInfoOfNoNameAndTheSizeAlone) {
  ExpectLine({.target = [&] { query.AnswerSize(5, 0x100000004); },
              .line = "IFGetDeviceInfo(hInterface=0x0000000000002000, psDeviceName=NULL, "
                      "iID=DEVICE_INFO_ACCESS_STATUS, 0x{4}->(iType=INFO_DATATYPE_INT32), "
                      "0x0000000000000000->(Buffer=NULL), 0x{6}->(iSize=4))"},
             &Functions::IFGetDeviceInfo, interfaceHandle, nullptr, 5, &query.type, nullptr,
             &query.size);
}

TEST_F(InterfaceLines, IFOpenDeviceShowsTheLow32BitsOfTheNewHandle) {
  const char* id = "cam";
  DEV_HANDLE handle = nullptr;
  ExpectLine({.target = [&] { handle = Handle(0x123456780ABCDEF0); },
              .line = "IFOpenDevice(hInterface=0x0000000000002000, 0x{2}->(sDevName=cam), "
                      "iOpenFlags=DEVICE_ACCESS_EXCLUSIVE, 0x{4}->(hDev=0xabcdef0))",
              .after = {kNotOpened}},
             &Functions::IFOpenDevice, interfaceHandle, id, 4, &handle);
}

TEST_F(InterfaceLines, IFOpenDeviceOfNoNameAndUnknownFlags) {
  DEV_HANDLE handle = nullptr;
  ExpectLine({.line = "IFOpenDevice(hInterface=0x0000000000002000, "
                      "0x0000000000000000->(sDevName=NULL), "
                      "iOpenFlags=(Unknown DEVICE_ACCESS_FLAGS: 5), 0x{4}->(hDev=0x0))",
              .after = {kNotOpened}},
             &Functions::IFOpenDevice, interfaceHandle, nullptr, 5, &handle);
}

TEST_F(InterfaceLines, IFOpenDeviceWithoutRoomForAHandleHasAShortForm) {
  const char* id = "cam";
  ExpectLine({.line = "IFOpenDevice(hInterface=0x0000000000002000, 0x{2}->(sDevName=cam), "
                      "iOpenFlags=DEVICE_ACCESS_CONTROL, 0x0000000000000000)",
              .after = {model::Error(model::kNoDeviceSlot)}},
             &Functions::IFOpenDevice, interfaceHandle, id, 3, nullptr);
}

}  // namespace
}  // namespace vextrel_test
