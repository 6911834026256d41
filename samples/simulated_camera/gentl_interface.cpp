#include "library.h"

using simcam::Call;
using simcam::Interface;
using simcam::Library;
using simcam::Required;

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  return Call("IFClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<Interface>(hIface)->Close(library.Handles());
  });
}

GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Call("IFGetInfo", [&](const Library& library) {
    simcam::InterfaceInfo(library.Get<Interface>(hIface)->Entry(), iInfoCmd)
        .CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE IFGetNumDevices(IF_HANDLE hIface, uint32_t* piNumDevices) {
  return Call("IFGetNumDevices", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto devices = library.Get<Interface>(hIface)->DeviceList();
    Required(piNumDevices, "piNumDevices") = static_cast<uint32_t>(devices.size());
  });
}

GC_ERROR GC_CALLTYPE IFGetDeviceID(IF_HANDLE hIface, uint32_t iIndex, char* sIDeviceID,
                                   size_t* piSize) {
  return Call("IFGetDeviceID", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto interface = library.Get<Interface>(hIface);
    simcam::CopyText(simcam::AtIndex(interface->DeviceList(), iIndex).id, sIDeviceID, piSize);
  });
}

GC_ERROR GC_CALLTYPE IFUpdateDeviceList(IF_HANDLE hIface, bool8_t* pbChanged,
                                        uint64_t /*iTimeout*/) {
  return Call("IFUpdateDeviceList", [&](Library& library) {
    const auto lock = library.LockTree();
    const bool changed = library.Get<Interface>(hIface)->UpdateDeviceList();
    if (pbChanged != nullptr) {
      *pbChanged = changed ? 1 : 0;
    }
  });
}

GC_ERROR GC_CALLTYPE IFGetDeviceInfo(IF_HANDLE hIface, const char* sDeviceID,
                                     DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                                     size_t* piSize) {
  return Call("IFGetDeviceInfo", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<Interface>(hIface)
        ->InfoOfDevice(&Required(sDeviceID, "sDeviceID"), iInfoCmd)
        .CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE IFOpenDevice(IF_HANDLE hIface, const char* sDeviceID,
                                  DEVICE_ACCESS_FLAGS iOpenFlags, DEV_HANDLE* phDevice) {
  return Call("IFOpenDevice", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto interface = library.Get<Interface>(hIface);
    DEV_HANDLE& handle = Required(phDevice, "phDevice");
    handle =
        library.Handles().Add(interface->OpenDevice(&Required(sDeviceID, "sDeviceID"), iOpenFlags,
                                                    library.CameraSettings(), library.Handles()));
  });
}
