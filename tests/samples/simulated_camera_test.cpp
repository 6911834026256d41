// SPDX-License-Identifier: MIT
// The library, the tree of modules, the settings and the last error.
#include "camera_fixture.h"

namespace vextrel_test {
namespace {

TEST(SimulatedCamera, HasAllFunctions) {
  const Producer gentl(CameraPath());
  ASSERT_TRUE(gentl.module.IsLoaded());
  EXPECT_NE(nullptr, gentl.GCGetInfo);
  EXPECT_NE(nullptr, gentl.GCReadPortStacked);
  EXPECT_NE(nullptr, gentl.EventKill);
  EXPECT_EQ(nullptr, gentl.module.FindAddress("GCNoSuchFunction"));
}

TEST(SimulatedCamera, RefusesCallsUnlessInitialised) {
  const Producer gentl(CameraPath());
  ASSERT_TRUE(gentl.module.IsLoaded());
  TL_HANDLE hTL = nullptr;
  size_t size = 0;
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.TLOpen(&hTL));
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.GCGetInfo(TL_INFO_ID, nullptr, nullptr, &size));
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.EventKill(&size));
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.GCReadPort(&size, 0, nullptr, nullptr));
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.GCCloseLib());

  for (int round = 0; round < 20; ++round) {
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
    EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.GCInitLib());
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
    EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.TLClose(hTL));
    EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl.GCCloseLib());
  }
}

TEST_F(CameraTest, OpensTheTransportLayerOnce) {
  TL_HANDLE hTL = nullptr;
  TL_HANDLE hOther = nullptr;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.TLOpen(nullptr));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  ASSERT_NE(nullptr, hTL);
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.TLOpen(&hOther));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLClose(hTL));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLClose(hTL));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
}

TEST_F(CameraTest, ListsInterfacesAfterAnUpdate) {
  TL_HANDLE hTL = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  uint32_t count = 99;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLGetNumInterfaces(hTL, &count));
  EXPECT_EQ(0u, count);

  bool8_t changed = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLUpdateInterfaceList(hTL, &changed, 100));
  EXPECT_EQ(1, changed);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLUpdateInterfaceList(hTL, &changed, 100));
  EXPECT_EQ(0, changed);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLGetNumInterfaces(hTL, &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.TLGetNumInterfaces(hTL, nullptr));

  for (uint32_t i = 0; i < 2; ++i) {
    ExpectAnswer(
        [&](INFO_DATATYPE* type, void* buffer, size_t* size) {
          if (type != nullptr) {
            *type = INFO_DATATYPE_STRING;
          }
          return gentl.TLGetInterfaceID(hTL, i, static_cast<char*>(buffer), size);
        },
        INFO_DATATYPE_STRING, std::string("SimIface") + (i == 0 ? '0' : '1') + '\0');
  }
  size_t size = 0;
  EXPECT_EQ(kBadIndex, gentl.TLGetInterfaceID(hTL, 2, nullptr, &size));
}

TEST_F(CameraTest, OpensInterfacesOnce) {
  TL_HANDLE hTL = nullptr;
  IF_HANDLE hIface = nullptr;
  IF_HANDLE hOther = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLOpenInterface(nullptr, "SimIface0", &hIface));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLOpenInterface(&hTL, "SimIface0", &hIface));
  EXPECT_EQ(GC_ERR_INVALID_ID, gentl.TLOpenInterface(hTL, "SimIface2", &hIface));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.TLOpenInterface(hTL, nullptr, &hIface));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.TLOpenInterface(hTL, "SimIface0", nullptr));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface0", &hIface));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.TLOpenInterface(hTL, "SimIface0", &hOther));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFClose(hIface));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.IFClose(hIface));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface0", &hIface));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.IFClose(hTL)) << "a handle of another kind";
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLClose(hTL));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.IFClose(hIface)) << "closed with its parent";
}

std::vector<std::string> DeviceIds(const Producer& gentl, IF_HANDLE hIface) {
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFUpdateDeviceList(hIface, nullptr, 0));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFGetNumDevices(hIface, &count));
  std::vector<std::string> ids;
  for (uint32_t i = 0; i < count; ++i) {
    char id[32];
    size_t size = sizeof(id);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFGetDeviceID(hIface, i, id, &size));
    ids.emplace_back(id);
    EXPECT_EQ(ids.back().size() + 1, size);
  }
  size_t size = 0;
  EXPECT_EQ(kBadIndex, gentl.IFGetDeviceID(hIface, count, nullptr, &size));
  return ids;
}

using Ids = std::vector<std::string>;

TEST_F(CameraTest, SpreadsThreeDevicesOverTheInterfaces) {
  TL_HANDLE hTL = nullptr;
  IF_HANDLE hIface[2]{};
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface0", &hIface[0]));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface1", &hIface[1]));
  uint32_t count = 99;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFGetNumDevices(hIface[0], &count));
  EXPECT_EQ(0u, count) << "the list has not been updated yet";
  bool8_t changed = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFUpdateDeviceList(hIface[0], &changed, 0));
  EXPECT_EQ(1, changed);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFUpdateDeviceList(hIface[0], &changed, 0));
  EXPECT_EQ(0, changed);
  EXPECT_EQ((Ids{"SimCam0", "SimCam2"}), DeviceIds(gentl, hIface[0]));
  EXPECT_EQ(Ids{"SimCam1"}, DeviceIds(gentl, hIface[1]));
}

TEST_F(OpenCameraTest, TheFirstDeviceRefusesToOpen) {
  DEV_HANDLE hRefused = nullptr;
  EXPECT_EQ(GC_ERR_ACCESS_DENIED,
            gentl.IFOpenDevice(hIface0, "SimCam0", DEVICE_ACCESS_EXCLUSIVE, &hRefused));
  EXPECT_EQ(nullptr, hRefused);
  EXPECT_EQ(GC_ERR_SUCCESS,
            gentl.IFOpenDevice(hIface0, "SimCam2", DEVICE_ACCESS_CONTROL, &hRefused));
}

TEST_F(OpenCameraTest, OpensDevicesOnce) {
  DEV_HANDLE hOther = nullptr;
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE,
            gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_EXCLUSIVE, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_ID,
            gentl.IFOpenDevice(hIface, "SimCam2", DEVICE_ACCESS_EXCLUSIVE, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.IFOpenDevice(hIface, nullptr, DEVICE_ACCESS_EXCLUSIVE, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.IFOpenDevice(hIface0, "SimCam2", DEVICE_ACCESS_NONE, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.IFOpenDevice(hIface0, "SimCam2", DEVICE_ACCESS_EXCLUSIVE, nullptr));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DevClose(hDevice));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DevClose(hDevice));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSClose(hStream)) << "closed with its parent";
  uint32_t urls = 0;
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.GCGetNumPortURLs(hPort, &urls)) << "gone, too";
  EXPECT_EQ(GC_ERR_SUCCESS,
            gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_READONLY, &hDevice));
}

TEST_F(OpenCameraTest, HasOneDataStream) {
  uint32_t count = 0;
  char id[32];
  size_t size = sizeof(id);
  DS_HANDLE hOther = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DevGetNumDataStreams(hDevice, &count));
  EXPECT_EQ(1u, count);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DevGetNumDataStreams(hDevice, nullptr));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DevGetDataStreamID(hDevice, 0, id, &size));
  EXPECT_STREQ("SimCam1-Stream0", id);
  EXPECT_EQ(kBadIndex, gentl.DevGetDataStreamID(hDevice, 1, id, &size));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DevOpenDataStream(hDevice, id, &hOther));
  EXPECT_EQ(GC_ERR_INVALID_ID, gentl.DevOpenDataStream(hDevice, "Stream", &hOther));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.DevGetPort(hDevice, nullptr));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSClose(hStream));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.DSClose(hStream));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DevOpenDataStream(hDevice, id, &hOther));
}

struct SettingsCase {
  const char* devices;
  Ids onFirst;
  Ids onSecond;
};

TEST(SimulatedCameraSettings, NumberOfDevices) {
  const Ids eight{"SimCam0", "SimCam2",  "SimCam4",  "SimCam6",
                  "SimCam8", "SimCam10", "SimCam12", "SimCam14"};
  const Ids otherEight{"SimCam1", "SimCam3",  "SimCam5",  "SimCam7",
                       "SimCam9", "SimCam11", "SimCam13", "SimCam15"};
  const SettingsCase cases[] = {
      {"1", {"SimCam0"}, {}},
      {"2", {"SimCam0"}, {"SimCam1"}},
      {"-3", {"SimCam0"}, {}},
      {"100", eight, otherEight},
      {"many", {"SimCam0", "SimCam2"}, {"SimCam1"}},
      {"2x", {"SimCam0", "SimCam2"}, {"SimCam1"}},
      {"nan", {"SimCam0", "SimCam2"}, {"SimCam1"}},
  };
  const Producer gentl(CameraPath());
  ASSERT_TRUE(gentl.module.IsLoaded());
  for (const SettingsCase& c : cases) {
    SCOPED_TRACE(c.devices);
    const EnvironmentSetting setting("VEXTREL_CAMERA_DEVICES", c.devices);
    TL_HANDLE hTL = nullptr;
    IF_HANDLE hIface[2]{};
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface0", &hIface[0]));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface1", &hIface[1]));
    EXPECT_EQ(c.onFirst, DeviceIds(gentl, hIface[0]));
    EXPECT_EQ(c.onSecond, DeviceIds(gentl, hIface[1]));
    DEV_HANDLE hDevice = nullptr;
    const bool refuses = c.onFirst.size() + c.onSecond.size() >= 3;
    EXPECT_EQ(refuses ? GC_ERR_ACCESS_DENIED : GC_ERR_SUCCESS,
              gentl.IFOpenDevice(hIface[0], "SimCam0", DEVICE_ACCESS_CONTROL, &hDevice));
    ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
  }
}

class LastErrorTest : public CameraTest {
 protected:
  GC_ERROR LastError(std::string& text) {
    GC_ERROR code = 1;
    size_t size = 0xDEADBEEFDEADBEEFu;
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCGetLastError(&code, nullptr, &size));
    text.assign(size, '?');
    size_t tooSmall = size - 1;
    EXPECT_EQ(kBufferTooSmall, gentl.GCGetLastError(&code, text.data(), &tooSmall));
    EXPECT_EQ(size, tooSmall);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCGetLastError(&code, text.data(), &size));
    EXPECT_EQ(text.size(), size);
    EXPECT_EQ('\0', text.back());
    text.pop_back();
    return code;
  }
};

TEST_F(LastErrorTest, TellsTheLastFailingCall) {
  std::string text;
  TL_HANDLE hTL = nullptr;
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLGetNumInterfaces(nullptr, &count));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, LastError(text));
  EXPECT_EQ(0u, text.find("TLGetNumInterfaces: ")) << text;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, LastError(text)) << "a success changes nothing";
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.TLOpen(&hTL));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, LastError(text));
  EXPECT_EQ("TLOpen: the transport layer is open already", text);
  size_t size = 0;
  GC_ERROR code = 0;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCGetLastError(nullptr, nullptr, &size));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCGetLastError(&code, nullptr, nullptr));
}

TEST_F(LastErrorTest, IsKeptPerThread) {
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLClose(nullptr));
  std::thread([this] {
    std::string text;
    EXPECT_EQ(GC_ERR_SUCCESS, LastError(text));
    EXPECT_EQ("No error", text);
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.TLOpen(nullptr));
    EXPECT_EQ(GC_ERR_INVALID_PARAMETER, LastError(text));
  }).join();
  std::string text;
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, LastError(text));
}

}  // namespace
}  // namespace vextrel_test
