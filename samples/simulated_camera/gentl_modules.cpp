// SPDX-License-Identifier: MIT
#include "library.h"

using simulated_camera::Call;
using simulated_camera::Device;
using simulated_camera::Interface;
using simulated_camera::Library;
using simulated_camera::Required;
using simulated_camera::TransportLayer;

GC_ERROR GC_CALLTYPE GCInitLib(void) {
  try {
    Library::Init();
    return GC_ERR_SUCCESS;
  } catch (...) {
    return simulated_camera::RememberCurrentException("GCInitLib");
  }
}

GC_ERROR GC_CALLTYPE GCCloseLib(void) {
  try {
    Library::Close();
    return GC_ERR_SUCCESS;
  } catch (...) {
    return simulated_camera::RememberCurrentException("GCCloseLib");
  }
}

GC_ERROR GC_CALLTYPE GCGetInfo(TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                               size_t* piSize) {
  return Call("GCGetInfo", [&](const Library&) {
    simulated_camera::TransportLayerInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

// Works without an initialized library, so that it can tell why GCInitLib failed. Does not record
// its own failures: a retry with a larger buffer must find the same error.
GC_ERROR GC_CALLTYPE GCGetLastError(GC_ERROR* piErrorCode, char* sErrText, size_t* piSize) {
  const simulated_camera::ErrorRecord& last = simulated_camera::LastErrorOfThisThread();
  try {
    Required(piErrorCode, "piErrorCode") = last.code;
    simulated_camera::CopyText(last.text, sErrText, piSize);
    return GC_ERR_SUCCESS;
  } catch (const simulated_camera::Failure& failure) {
    return failure.Code();
  } catch (...) {
    return GC_ERR_ERROR;
  }
}

GC_ERROR GC_CALLTYPE TLOpen(TL_HANDLE* phTL) {
  return Call("TLOpen", [&](Library& library) {
    TL_HANDLE& handle = Required(phTL, "phTL");
    const auto lock = library.LockTree();
    handle = library.OpenTransportLayer();
  });
}

GC_ERROR GC_CALLTYPE TLClose(TL_HANDLE hTL) {
  return Call("TLClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<TransportLayer>(hTL)->Close(library.Handles());
  });
}

GC_ERROR GC_CALLTYPE TLGetInfo(TL_HANDLE hTL, TL_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Call("TLGetInfo", [&](const Library& library) {
    static_cast<void>(library.Get<TransportLayer>(hTL));
    simulated_camera::TransportLayerInfo(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLGetNumInterfaces(TL_HANDLE hTL, uint32_t* piNumIfaces) {
  return Call("TLGetNumInterfaces", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto interfaces = library.Get<TransportLayer>(hTL)->InterfaceList();
    Required(piNumIfaces, "piNumIfaces") = static_cast<uint32_t>(interfaces.size());
  });
}

GC_ERROR GC_CALLTYPE TLGetInterfaceID(TL_HANDLE hTL, uint32_t iIndex, char* sID, size_t* piSize) {
  return Call("TLGetInterfaceID", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto transportLayer = library.Get<TransportLayer>(hTL);
    simulated_camera::CopyText(
        simulated_camera::AtIndex(transportLayer->InterfaceList(), iIndex).id, sID, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLGetInterfaceInfo(TL_HANDLE hTL, const char* sIfaceID,
                                        INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                        void* pBuffer, size_t* piSize) {
  return Call("TLGetInterfaceInfo", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<TransportLayer>(hTL)
        ->InfoOfInterface(&Required(sIfaceID, "sIfaceID"), iInfoCmd)
        .CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE TLOpenInterface(TL_HANDLE hTL, const char* sIfaceID, IF_HANDLE* phIface) {
  return Call("TLOpenInterface", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto transportLayer = library.Get<TransportLayer>(hTL);
    IF_HANDLE& handle = Required(phIface, "phIface");
    handle = library.Handles().Add(transportLayer->OpenInterface(&Required(sIfaceID, "sIfaceID")));
  });
}

GC_ERROR GC_CALLTYPE TLUpdateInterfaceList(TL_HANDLE hTL, bool8_t* pbChanged,
                                           uint64_t /*iTimeout*/) {
  return Call("TLUpdateInterfaceList", [&](Library& library) {
    const auto lock = library.LockTree();
    const bool changed = library.Get<TransportLayer>(hTL)->UpdateInterfaceList();
    if (pbChanged != nullptr) {
      *pbChanged = changed ? 1 : 0;
    }
  });
}

GC_ERROR GC_CALLTYPE IFClose(IF_HANDLE hIface) {
  return Call("IFClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<Interface>(hIface)->Close(library.Handles());
  });
}

GC_ERROR GC_CALLTYPE IFGetInfo(IF_HANDLE hIface, INTERFACE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                               void* pBuffer, size_t* piSize) {
  return Call("IFGetInfo", [&](const Library& library) {
    simulated_camera::InterfaceInfo(library.Get<Interface>(hIface)->Entry(), iInfoCmd)
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
    simulated_camera::CopyText(simulated_camera::AtIndex(interface->DeviceList(), iIndex).id,
                               sIDeviceID, piSize);
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

GC_ERROR GC_CALLTYPE DevGetPort(DEV_HANDLE hDevice, PORT_HANDLE* phRemoteDevice) {
  return Call("DevGetPort", [&](const Library& library) {
    const auto device = library.Get<Device>(hDevice);
    Required(phRemoteDevice, "phRemoteDevice") = device->Camera()->Handle();
  });
}

GC_ERROR GC_CALLTYPE DevGetNumDataStreams(DEV_HANDLE hDevice, uint32_t* piNumDataStreams) {
  return Call("DevGetNumDataStreams", [&](const Library& library) {
    static_cast<void>(library.Get<Device>(hDevice));
    Required(piNumDataStreams, "piNumDataStreams") = 1;
  });
}

GC_ERROR GC_CALLTYPE DevGetDataStreamID(DEV_HANDLE hDevice, uint32_t iIndex, char* sDataStreamID,
                                        size_t* piSize) {
  return Call("DevGetDataStreamID", [&](const Library& library) {
    const std::string ids[] = {library.Get<Device>(hDevice)->StreamId()};
    simulated_camera::CopyText(simulated_camera::AtIndex(std::span<const std::string>(ids), iIndex),
                               sDataStreamID, piSize);
  });
}

GC_ERROR GC_CALLTYPE DevOpenDataStream(DEV_HANDLE hDevice, const char* sDataStreamID,
                                       DS_HANDLE* phDataStream) {
  return Call("DevOpenDataStream", [&](Library& library) {
    const auto lock = library.LockTree();
    const auto device = library.Get<Device>(hDevice);
    DS_HANDLE& handle = Required(phDataStream, "phDataStream");
    handle = library.Handles().Add(device->OpenStream(&Required(sDataStreamID, "sDataStreamID")));
  });
}

GC_ERROR GC_CALLTYPE DevGetInfo(DEV_HANDLE hDevice, DEVICE_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                                void* pBuffer, size_t* piSize) {
  return Call("DevGetInfo", [&](const Library& library) {
    library.Get<Device>(hDevice)->Info(iInfoCmd).CopyTo(piType, pBuffer, piSize);
  });
}

GC_ERROR GC_CALLTYPE DevClose(DEV_HANDLE hDevice) {
  return Call("DevClose", [&](Library& library) {
    const auto lock = library.LockTree();
    library.Get<Device>(hDevice)->Close(library.Handles());
  });
}
