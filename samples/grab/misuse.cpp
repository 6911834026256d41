// SPDX-License-Identifier: MIT
// How not to close: one mistake of every kind, for a tracing producer to report.
#include <iostream>
#include <utility>

#include "session.h"

namespace grab {
namespace {

void Announce(const std::string& mistake) {
  std::cout << "Misuse: " << mistake << '\n';
}

[[nodiscard]] std::string HandleText(void* handle) {
  return Hex(reinterpret_cast<std::uintptr_t>(handle), 16);
}

// Calls a function, and prints the refusal if it fails.
template <typename F, typename... Arguments>
void Try(const F& function, Arguments... arguments) {
  if (const GC_ERROR result = function.Try(arguments...); result != GC_ERR_SUCCESS) {
    std::cout << "  refused: " << function.Describe(result) << '\n';
  }
}

void LeaveEvent(const Producer& gentl, void* source, const std::string& sourceName) {
  EVENT_HANDLE forgotten = nullptr;
  Announce("EVENT_ERROR is registered on " + sourceName + " " + HandleText(source) +
           " and never unregistered");
  Try(gentl.GCRegisterEvent, source, EVENT_ERROR, &forgotten);
}

void CloseStreamBadly(Session& session) {
  const Producer& gentl = session.gentl;
  DS_HANDLE stream = std::exchange(session.stream, nullptr);
  const std::vector<BUFFER_HANDLE> buffers = std::exchange(session.buffers, {});
  session.newBuffer = nullptr;

  Announce("buffer " + HandleText(buffers.front()) + " is revoked twice");
  void* memory = nullptr;
  void* userPointer = nullptr;
  Try(gentl.DSRevokeBuffer, stream, buffers.front(), &memory, &userPointer);
  Try(gentl.DSRevokeBuffer, stream, buffers.front(), &memory, &userPointer);
  for (std::size_t index = 1; index + 1 < buffers.size(); ++index) {
    Try(gentl.DSRevokeBuffer, stream, buffers[index], &memory, &userPointer);
  }
  Announce("buffer " + HandleText(buffers.back()) + " is never revoked");
  Announce("EVENT_NEW_BUFFER is left registered on data stream " + HandleText(stream));
  Try(gentl.DSClose, stream);
}

}  // namespace

void CloseBadly(Session& session) {
  const Producer& gentl = session.gentl;
  CloseStreamBadly(session);

  DEV_HANDLE device = std::exchange(session.device, nullptr);
  DS_HANDLE forgottenStream = nullptr;
  Announce("data stream " + session.streamId + " is opened again and never closed");
  Try(gentl.DevOpenDataStream, device, session.streamId.c_str(), &forgottenStream);
  LeaveEvent(gentl, device, "device");
  Try(gentl.DevClose, device);

  IF_HANDLE interfaceHandle = std::exchange(session.interfaceHandle, nullptr);
  DEV_HANDLE forgottenDevice = nullptr;
  Announce("device " + session.deviceId + " is opened again and never closed");
  Try(gentl.IFOpenDevice, interfaceHandle, session.deviceId.c_str(), DEVICE_ACCESS_EXCLUSIVE,
      &forgottenDevice);
  Try(gentl.IFClose, interfaceHandle);

  TL_HANDLE transportLayer = std::exchange(session.transportLayer, nullptr);
  IF_HANDLE forgottenInterface = nullptr;
  Announce("interface " + session.interfaceId + " is opened again and never closed");
  Try(gentl.TLOpenInterface, transportLayer, session.interfaceId.c_str(), &forgottenInterface);
  LeaveEvent(gentl, transportLayer, "transport layer");
  Try(gentl.TLClose, transportLayer);

  TL_HANDLE forgottenTransportLayer = nullptr;
  Announce("the transport layer is opened again and not closed before the library");
  Try(gentl.TLOpen, &forgottenTransportLayer);
}

}  // namespace grab
