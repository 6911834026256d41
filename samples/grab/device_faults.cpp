// SPDX-License-Identifier: MIT
#include "device_faults.h"

#include <array>

#include "fault_calls.h"

namespace grab {

// Returns false if the camera doesn't answer.
static bool CanRead(const Session& session) {
  try {
    return session.camera->Read("Width").has_value();
  } catch (const Error&) {
    return false;
  }
}

void ReadClosed(Session& session, bool mended) {
  if (mended) {
    static_cast<void>(CanRead(session));
  }
  session.Close();
  if (!mended) {
    static_cast<void>(CanRead(session));
  }
}

// Goes on asking a camera that was unplugged. One that wasn't is left alone after a second.
void AskUnplugged(Session& session, bool mended) {
  const int refusals = mended ? 1 : 3;
  for (int tries = 0, refused = 0; tries < 100 && refused < refusals; ++tries) {
    refused += CanRead(session) ? 0 : 1;
    Sleep(10);
  }
  // It can't be told to stop.
  session.acquiring = false;
  session.gentl.DSStopAcquisition(session.stream, ACQ_STOP_FLAGS_DEFAULT);
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

void IgnoreErrors(Session& session, bool mended) {
  constexpr std::uint64_t nowhere = 0xFFFFFFFF0;
  PORT_HANDLE port = nullptr;
  session.gentl.DevGetPort(session.device, &port);
  for (int i = 0; i < 3; ++i) {
    std::array<char, 4> bytes{};
    std::size_t size = bytes.size();
    const GC_ERROR result = session.gentl.GCReadPort.Try(port, nowhere, bytes.data(), &size);
    if (mended) {
      static_cast<void>(session.gentl.GCReadPort.Describe(result));
    }
  }
}

void WriteReadOnly(Session& session, bool mended) {
  OpenInterfaceAgain(session);
  static_cast<void>(session.FindDevices());
  session.gentl.IFOpenDevice(session.interfaceHandle, session.deviceId.c_str(),
                             mended ? DEVICE_ACCESS_CONTROL : DEVICE_ACCESS_READONLY,
                             &session.device);
  session.OpenCamera();
  try {
    session.camera->Write("TLParamsLocked", 0);
  } catch (const Error&) {
    // It has to be refused.
  }
}

// Opens the last camera of the interface, which isn't the session's own if there are five, and its
// stream.
static void OpenAnother(IF_HANDLE interfaceHandle, Session* another) {
  another->interfaceHandle = interfaceHandle;
  if (!another->OpenDevice(another->FindDevices().back())) {
    throw Error("The interface has no other camera.");
  }
  another->OpenFirstStream();
}

void QueueForeign(Session& session, bool mended) {
  Session another(session.gentl);
  OpenAnother(session.interfaceHandle, &another);
  another.interfaceHandle = nullptr;  // It isn't its own.
  Call(session.gentl.DSQueueBuffer, mended ? session.stream : another.stream,
       session.buffers.front());
  session.gentl.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
}

// That's no mistake, but Vextrel reports one.
void UseSecondInterface(Session& session, bool mended) {
  Session another(session.gentl);
  const std::vector<std::string> interfaces = session.FindInterfaces();
  OpenAnother(mended ? session.interfaceHandle
                     : session.gentl.TLOpenInterface.Open(session.transportLayer,
                                                          interfaces.back().c_str()),
              &another);
  if (mended) {
    another.interfaceHandle = nullptr;
  }
}

}  // namespace grab
