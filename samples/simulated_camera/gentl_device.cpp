#include "library.h"

using simcam::Call;
using simcam::Device;
using simcam::Library;
using simcam::Required;

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
    simcam::CopyText(simcam::AtIndex(std::span<const std::string>(ids), iIndex), sDataStreamID,
                     piSize);
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
