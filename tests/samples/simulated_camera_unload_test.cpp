// SPDX-License-Identifier: MIT
// Unloading the module, with and without GCCloseLib.
#include <atomic>
#include <memory>

#include "camera_fixture.h"

namespace vextrel_test {
namespace {

DS_HANDLE OpenStream(const Producer& gentl) {
  TL_HANDLE hTL = nullptr;
  IF_HANDLE hIface = nullptr;
  DEV_HANDLE hDevice = nullptr;
  DS_HANDLE hStream = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLOpen(&hTL));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.TLOpenInterface(hTL, "SimIface1", &hIface));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_CONTROL, &hDevice));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DevOpenDataStream(hDevice, "SimCam1-Stream0", &hStream));
  return hStream;
}

void StartFrames(const Producer& gentl, DS_HANDLE hStream) {
  BUFFER_HANDLE hBuffer = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS,
            gentl.DSAllocAndAnnounceBuffer(hStream, size_t{640} * 480, nullptr, &hBuffer));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, 0, kForever));
}

TEST(SimulatedCameraUnload, LeavesMemoryAfterClosing) {
  const EnvironmentSetting rate("VEXTREL_CAMERA_RATE", "1000");
  for (int round = 0; round < 5; ++round) {
    {
      const Producer gentl(CameraPath());
      ASSERT_TRUE(gentl.module.IsLoaded());
      StartFrames(gentl, OpenStream(gentl));
      EXPECT_TRUE(IsModuleLoaded(CameraPath()));
      EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
    }
    EXPECT_FALSE(IsModuleLoaded(CameraPath()));
  }
}

TEST(SimulatedCameraUnload, StandsUnloadingWithoutClosing) {
  {
    const Producer gentl(CameraPath());
    ASSERT_TRUE(gentl.module.IsLoaded());
    OpenStream(gentl);
  }
  EXPECT_FALSE(IsModuleLoaded(CameraPath()));
  const Producer gentl(CameraPath());
  ASSERT_TRUE(gentl.module.IsLoaded());
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib()) << "it starts afresh";
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
}

TEST(SimulatedCameraUnload, StandsUnloadingWhileFramesFlow) {
  const EnvironmentSetting rate("VEXTREL_CAMERA_RATE", "1000");
  {
    const Producer gentl(CameraPath());
    ASSERT_TRUE(gentl.module.IsLoaded());
    StartFrames(gentl, OpenStream(gentl));
  }
  EXPECT_TRUE(IsModuleLoaded(CameraPath())) << "a thread runs in it";
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  {
    const Producer gentl(CameraPath());
    ASSERT_TRUE(gentl.module.IsLoaded());
    EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.GCInitLib()) << "it was never closed";
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
  }
  EXPECT_FALSE(IsModuleLoaded(CameraPath()));
}

// The thread that made a call may well live longer than the module.
TEST(SimulatedCameraUnload, StandsThreadsThatLiveLonger) {
  auto gentl = std::make_unique<Producer>(CameraPath());
  ASSERT_TRUE(gentl->module.IsLoaded());
  std::atomic<bool> called = false;
  std::atomic<bool> unloaded = false;
  std::thread thread([&] {
    EXPECT_EQ(GC_ERR_NOT_INITIALIZED, gentl->TLClose(nullptr));
    called = true;
    EXPECT_TRUE(Eventually([&] { return unloaded.load(); }));
  });
  EXPECT_TRUE(Eventually([&] { return called.load(); }));
  gentl.reset();
  EXPECT_FALSE(IsModuleLoaded(CameraPath()));
  unloaded = true;
  thread.join();
}

}  // namespace
}  // namespace vextrel_test
