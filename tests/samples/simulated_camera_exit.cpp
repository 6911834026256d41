// SPDX-License-Identifier: MIT
// Ends the process while the camera runs and nothing has been closed. Exits with 0 unless that
// crashes.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <thread>

#include "producer.h"

int main() {
  using vextrel_test::EnvironmentSetting;
  using vextrel_test::Producer;
  static Producer gentl(SIMULATED_CAMERA);
  if (!gentl.module.IsLoaded()) {
    std::puts("the module cannot be loaded");
    return 1;
  }
  const EnvironmentSetting rate("VEXTREL_CAMERA_RATE", "1000");
  TL_HANDLE hTL = nullptr;
  IF_HANDLE hIface = nullptr;
  DEV_HANDLE hDevice = nullptr;
  DS_HANDLE hStream = nullptr;
  const bool runs =
      gentl.GCInitLib() == GC_ERR_SUCCESS && gentl.TLOpen(&hTL) == GC_ERR_SUCCESS &&
      gentl.TLOpenInterface(hTL, "SimIface1", &hIface) == GC_ERR_SUCCESS &&
      gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_CONTROL, &hDevice) == GC_ERR_SUCCESS &&
      gentl.DevOpenDataStream(hDevice, "SimCam1-Stream0", &hStream) == GC_ERR_SUCCESS &&
      gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, ~uint64_t{0}) == GC_ERR_SUCCESS;
  if (!runs) {
    std::puts("the camera does not run");
    return 1;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  return 0;
}
