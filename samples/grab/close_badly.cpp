#include "close_badly.h"

#include <iostream>
#include <vector>

#include "text.h"

namespace grab {
namespace {

void Announce(const std::string& mistake) {
  std::cout << "Misuse: " << mistake << '\n';
}

// Calls a function, and prints its refusal if it fails.
template <typename F, typename... Arguments>
bool Try(const GenTl& gentl, const F& function, Arguments... arguments) {
  const GC_ERROR result = function(arguments...);
  if (result != GC_ERR_SUCCESS) {
    std::cout << "  refused: " << gentl.Describe(function.Name(), result) << '\n';
  }
  return result == GC_ERR_SUCCESS;
}

void LeaveEvent(const GenTl& gentl, void* source, const std::string& sourceName) {
  EVENT_HANDLE forgotten = nullptr;
  Announce("EVENT_ERROR is registered on " + sourceName + " " + Hex(source) +
           " and never unregistered");
  Try(gentl, gentl.GCRegisterEvent, source, EVENT_ERROR, &forgotten);
}

void CloseStreamBadly(const GenTl& gentl, OpenSession& session, Buffers& buffers,
                      Event& newBuffer) {
  DS_HANDLE stream = session.stream.Release();
  const std::vector<BUFFER_HANDLE> announced = buffers.Handles();
  buffers.Forget();
  newBuffer.Forget();

  Announce("buffer " + Hex(announced.front()) + " is revoked twice");
  void* memory = nullptr;
  void* privateValue = nullptr;
  Try(gentl, gentl.DSRevokeBuffer, stream, announced.front(), &memory, &privateValue);
  Try(gentl, gentl.DSRevokeBuffer, stream, announced.front(), &memory, &privateValue);
  for (std::size_t index = 1; index + 1 < announced.size(); ++index) {
    Try(gentl, gentl.DSRevokeBuffer, stream, announced[index], &memory, &privateValue);
  }
  Announce("buffer " + Hex(announced.back()) + " is never revoked");
  Announce("EVENT_NEW_BUFFER is left registered on data stream " + Hex(stream));
  Try(gentl, gentl.DSClose, stream);
}

}  // namespace

void CloseBadly(const GenTl& gentl, OpenSession& session, Buffers& buffers, Event& newBuffer) {
  CloseStreamBadly(gentl, session, buffers, newBuffer);

  DEV_HANDLE device = session.device.Release();
  DS_HANDLE forgottenStream = nullptr;
  Announce("data stream " + session.streamId + " is opened again and never closed");
  Try(gentl, gentl.DevOpenDataStream, device, session.streamId.c_str(), &forgottenStream);
  LeaveEvent(gentl, device, "device");
  Try(gentl, gentl.DevClose, device);

  IF_HANDLE interfaceHandle = session.interfaceHandle.Release();
  DEV_HANDLE forgottenDevice = nullptr;
  Announce("device " + session.deviceId + " is opened again and never closed");
  Try(gentl, gentl.IFOpenDevice, interfaceHandle, session.deviceId.c_str(), DEVICE_ACCESS_EXCLUSIVE,
      &forgottenDevice);
  Try(gentl, gentl.IFClose, interfaceHandle);

  TL_HANDLE transportLayer = session.transportLayer.Release();
  IF_HANDLE forgottenInterface = nullptr;
  Announce("interface " + session.interfaceId + " is opened again and never closed");
  Try(gentl, gentl.TLOpenInterface, transportLayer, session.interfaceId.c_str(),
      &forgottenInterface);
  LeaveEvent(gentl, transportLayer, "transport layer");
  Try(gentl, gentl.TLClose, transportLayer);

  TL_HANDLE forgottenTransportLayer = nullptr;
  Announce("the transport layer is opened again and not closed before the library");
  Try(gentl, gentl.TLOpen, &forgottenTransportLayer);
}

}  // namespace grab
