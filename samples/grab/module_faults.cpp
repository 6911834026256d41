// SPDX-License-Identifier: MIT
#include "module_faults.h"

#include <array>
#include <thread>
#include <utility>

#include "fault_calls.h"

namespace grab {

void InitTwice(Session& session, bool mended) {
  if (mended) {
    session.Close();
    session.gentl.GCCloseLib();
  }
  Call(session.gentl.GCInitLib);
}

void UseClosedLibrary(Session& session, bool mended) {
  session.Close();
  session.gentl.GCCloseLib();
  if (mended) {
    session.gentl.GCInitLib();
  }
  Call(session.gentl.TLOpen, &session.transportLayer);
  if (!mended) {
    session.gentl.GCInitLib();  // for whoever closes it now
  }
}

void CloseWhileRunning(Session& session, bool mended) {
  if (mended) {
    return;  // It's stopped first, as without a fault.
  }
  session.acquiring = false;
  session.stream = nullptr;
  session.newBuffer = nullptr;
  session.buffers.clear();
  session.gentl.DevClose(std::exchange(session.device, nullptr));
}

// Forgets a handle that is open still, so that nobody closes it.
void LeaveOpen(Session& session, bool mended) {
  if (mended) {
    return;
  }
  session.newBuffer = nullptr;
  session.buffers.clear();
  session.stream = nullptr;
  session.device = nullptr;
  session.interfaceHandle = nullptr;
  session.transportLayer = nullptr;
}

void OpenTwice(Session& session, bool mended) {
  if (mended) {
    CloseStream(session);
    session.gentl.DevClose(std::exchange(session.device, nullptr));
  }
  DEV_HANDLE device = nullptr;
  Call(session.gentl.IFOpenDevice, session.interfaceHandle, session.deviceId.c_str(),
       DEVICE_ACCESS_EXCLUSIVE, &device);
  if (mended) {
    session.device = device;
  }
}

void CloseTwice(Session& session, bool mended) {
  DS_HANDLE stream = session.stream;
  CloseStream(session);
  if (mended) {
    stream = session.gentl.DevOpenDataStream.Open(session.device, session.streamId.c_str());
  }
  Call(session.gentl.DSClose, stream);
}

void CloseNothing(Session& session, bool mended) {
  DEV_HANDLE device = nullptr;
  if (mended) {
    CloseStream(session);
    device = std::exchange(session.device, nullptr);
  }
  Call(session.gentl.DevClose, device);
}

void UseWrongKind(Session& session, bool mended) {
  Call(session.gentl.DSFlushQueue, mended ? session.stream : session.device, ACQ_QUEUE_ALL_DISCARD);
}

void UseUnknownHandle(Session& session, bool mended) {
  static int nothing = 0;
  Call(session.gentl.DSFlushQueue, mended ? session.stream : &nothing, ACQ_QUEUE_ALL_DISCARD);
}

void CountUnlisted(Session& session, bool mended) {
  session.Close();
  session.transportLayer = session.gentl.TLOpen.Open();
  if (mended) {
    Call(session.gentl.TLUpdateInterfaceList, session.transportLayer, nullptr, 1000U);
  }
  std::uint32_t count = 0;
  Call(session.gentl.TLGetNumInterfaces, session.transportLayer, &count);
}

// Some producers take an id for unknown until they've listed it.
void OpenUnlisted(Session& session, bool mended) {
  OpenInterfaceAgain(session);
  if (mended) {
    Call(session.gentl.IFUpdateDeviceList, session.interfaceHandle, nullptr, 1000U);
  }
  static_cast<void>(session.OpenDevice(std::string(session.deviceId)));
}

void AskBehindTheEnd(Session& session, bool mended) {
  std::uint32_t count = 0;
  session.gentl.IFGetNumDevices(session.interfaceHandle, &count);
  std::array<char, 64> id{};
  std::size_t size = id.size();
  Call(session.gentl.IFGetDeviceID, session.interfaceHandle, mended ? count - 1 : count, id.data(),
       &size);
}

void UpdateBriefly(Session& session, bool mended) {
  Call(session.gentl.IFUpdateDeviceList, session.interfaceHandle, nullptr, mended ? 1000U : 50U);
}

void UpdateWhileReading(Session& session, bool mended) {
  std::uint32_t count = 0;
  session.gentl.IFGetNumDevices(session.interfaceHandle, &count);
  std::thread([&] {
    Call(session.gentl.IFUpdateDeviceList, session.interfaceHandle, nullptr, 1000U);
  }).join();
  if (mended) {
    session.gentl.IFGetNumDevices(session.interfaceHandle, &count);
  }
  static_cast<void>(session.gentl.IFGetDeviceID.Id(session.interfaceHandle, 0U));
}

void AskOptional(Session& session, bool mended) {
  for (int i = 0; i < 3; ++i) {
    static_cast<void>(session.gentl.DSGetInfo.Number(
        session.stream, mended ? STREAM_INFO_NUM_STARTED : STREAM_INFO_CUSTOM_ID));
  }
}

void AskTooSmall(Session& session, bool mended) {
  for (int i = 0; i < 3; ++i) {
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    std::array<char, 64> text{};
    std::size_t size = mended ? text.size() : 1;
    Call(session.gentl.TLGetInfo, session.transportLayer, TL_INFO_ID, &type, text.data(), &size);
  }
}

void LeaveSizeUnset(Session& session, bool mended) {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  std::array<char, 64> text{};
  std::size_t size = mended ? text.size() : 0xCDCDCDCD;  // as if it were that
  Call(session.gentl.TLGetInfo, session.transportLayer, TL_INFO_CUSTOM_ID, &type, text.data(),
       &size);
}

void AskOnAnotherThread(Session& session, bool mended) {
  DEV_HANDLE device = nullptr;
  Call(session.gentl.IFOpenDevice, session.interfaceHandle, "nobody", DEVICE_ACCESS_EXCLUSIVE,
       &device);
  const auto ask = [&] {
    GC_ERROR error = GC_ERR_SUCCESS;
    std::array<char, 256> text{};
    std::size_t size = text.size();
    Call(session.gentl.GCGetLastError, &error, text.data(), &size);
  };
  if (mended) {
    ask();
  } else {
    std::thread(ask).join();
  }
}

}  // namespace grab
