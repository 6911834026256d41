#include "session.h"

#include <array>
#include <chrono>
#include <iomanip>
#include <iostream>
#include <optional>
#include <utility>
#include <vector>

#include "buffers.h"
#include "close_badly.h"
#include "error.h"
#include "event.h"
#include "handle.h"
#include "info.h"
#include "pgm.h"
#include "port.h"
#include "stream.h"
#include "text.h"

namespace grab {
namespace {

constexpr std::uint64_t kUpdateTimeoutMs = 1000;
constexpr DEVICE_ACCESS_FLAGS kAccess = DEVICE_ACCESS_EXCLUSIVE;
constexpr int kPixelFormatDigits = 8;

[[nodiscard]] Handle OpenTransportLayer(const GenTl& gentl) {
  const auto libraryText = [&](TL_INFO_CMD command) {
    return OrDash(TextInfo(gentl, gentl.GCGetInfo, command));
  };
  std::cout << "Producer " << libraryText(TL_INFO_VENDOR) << ' ' << libraryText(TL_INFO_MODEL)
            << ", version " << libraryText(TL_INFO_VERSION) << ", type "
            << libraryText(TL_INFO_TLTYPE) << '\n';
  Handle transportLayer = Open(gentl, gentl.TLOpen, gentl.TLClose);
  const auto text = [&](TL_INFO_CMD command) {
    return OrDash(TextInfo(gentl, gentl.TLGetInfo, transportLayer.Get(), command));
  };
  std::cout << "Transport layer " << text(TL_INFO_ID) << " (" << text(TL_INFO_DISPLAYNAME)
            << "), file " << text(TL_INFO_NAME) << '\n';
  return transportLayer;
}

[[nodiscard]] std::vector<std::string> InterfaceIds(const GenTl& gentl, TL_HANDLE transportLayer) {
  gentl.Do(gentl.TLUpdateInterfaceList, transportLayer, nullptr, kUpdateTimeoutMs);
  std::uint32_t count = 0;
  gentl.Do(gentl.TLGetNumInterfaces, transportLayer, &count);
  std::vector<std::string> ids;
  for (std::uint32_t index = 0; index < count; ++index) {
    ids.push_back(RequiredText(gentl, gentl.TLGetInterfaceID, transportLayer, index));
    const auto text = [&](INTERFACE_INFO_CMD command) {
      return OrDash(
          TextInfo(gentl, gentl.TLGetInterfaceInfo, transportLayer, ids.back().c_str(), command));
    };
    std::cout << "Interface " << ids.back() << " (" << text(INTERFACE_INFO_DISPLAYNAME)
              << "), type " << text(INTERFACE_INFO_TLTYPE) << '\n';
  }
  return ids;
}

[[nodiscard]] std::vector<std::string> DeviceIds(const GenTl& gentl, IF_HANDLE interfaceHandle) {
  gentl.Do(gentl.IFUpdateDeviceList, interfaceHandle, nullptr, kUpdateTimeoutMs);
  std::uint32_t count = 0;
  gentl.Do(gentl.IFGetNumDevices, interfaceHandle, &count);
  const auto name = TextInfo(gentl, gentl.IFGetInfo, interfaceHandle, INTERFACE_INFO_DISPLAYNAME);
  std::cout << "Devices on " << OrDash(name) << ": " << count << '\n';
  std::vector<std::string> ids;
  for (std::uint32_t index = 0; index < count; ++index) {
    ids.push_back(RequiredText(gentl, gentl.IFGetDeviceID, interfaceHandle, index));
    const char* const id = ids.back().c_str();
    const auto text = [&](DEVICE_INFO_CMD command) {
      return OrDash(TextInfo(gentl, gentl.IFGetDeviceInfo, interfaceHandle, id, command));
    };
    const auto status =
        NumberInfo(gentl, gentl.IFGetDeviceInfo, interfaceHandle, id, DEVICE_INFO_ACCESS_STATUS);
    std::cout << "  Device " << id << " (" << text(DEVICE_INFO_VENDOR) << ' '
              << text(DEVICE_INFO_MODEL) << ", " << text(DEVICE_INFO_DISPLAYNAME) << "), access "
              << (status ? AccessStatusText(*status) : "-") << '\n';
  }
  return ids;
}

// Opens the device unless the producer refuses; says so then.
[[nodiscard]] std::optional<Handle> TryOpenDevice(const GenTl& gentl, IF_HANDLE interfaceHandle,
                                                  const std::string& id) {
  DEV_HANDLE device = nullptr;
  const GC_ERROR result = gentl.IFOpenDevice(interfaceHandle, id.c_str(), kAccess, &device);
  if (result != GC_ERR_SUCCESS) {
    std::cout << "Device " << id
              << " cannot be opened: " << gentl.Describe(gentl.IFOpenDevice.Name(), result) << '\n';
    return std::nullopt;
  }
  std::cout << "Device " << id << " opened\n";
  return TakeHandle(gentl, gentl.DevClose, gentl.IFOpenDevice.Name(), device);
}

// Interfaces without such a device are closed again.
[[nodiscard]] OpenSession OpenFirstDevice(const GenTl& gentl) {
  OpenSession session;
  session.transportLayer = OpenTransportLayer(gentl);
  for (const std::string& interfaceId : InterfaceIds(gentl, session.transportLayer.Get())) {
    Handle interfaceHandle = Open(gentl, gentl.TLOpenInterface, gentl.IFClose,
                                  session.transportLayer.Get(), interfaceId.c_str());
    for (const std::string& deviceId : DeviceIds(gentl, interfaceHandle.Get())) {
      if (auto device = TryOpenDevice(gentl, interfaceHandle.Get(), deviceId)) {
        session.interfaceHandle = std::move(interfaceHandle);
        session.interfaceId = interfaceId;
        session.device = std::move(*device);
        session.deviceId = deviceId;
        return session;
      }
    }
    interfaceHandle.Close();
  }
  throw Error("No device can be opened.");
}

void OpenFirstStream(const GenTl& gentl, OpenSession& session) {
  std::uint32_t count = 0;
  gentl.Do(gentl.DevGetNumDataStreams, session.device.Get(), &count);
  if (count == 0) {
    throw Error("The device has no data stream.");
  }
  constexpr std::uint32_t kFirst = 0;
  session.streamId = RequiredText(gentl, gentl.DevGetDataStreamID, session.device.Get(), kFirst);
  session.stream = Open(gentl, gentl.DevOpenDataStream, gentl.DSClose, session.device.Get(),
                        session.streamId.c_str());
  std::cout << "Data stream " << session.streamId << " opened, the first of " << count << '\n';
}

// Reads the image size one register at a time and in one stacked call, and writes the width back.
void ReadAndWriteRegisters(const Port& port, const std::string& description) {
  const auto width = FindRegister(description, "Width");
  const auto height = FindRegister(description, "Height");
  if (!width || !height) {
    std::cout << "Registers - (the description names none for Width and Height)\n";
    return;
  }
  const std::uint64_t widthValue = port.Read(*width);
  std::cout << "Register " << Hex(width->address) << ": Width " << widthValue << '\n';
  std::cout << "Register " << Hex(height->address) << ": Height " << port.Read(*height) << '\n';
  const std::array both{*width, *height};
  const std::vector<std::uint64_t> values = port.ReadStacked(both);
  std::cout << "Registers in one call: " << values[0] << " x " << values[1] << '\n';
  port.Write(*width, widthValue);
  std::cout << "Register " << Hex(width->address) << ": Width " << widthValue << " written back\n";
}

void PrintFrame(std::uint64_t number, const Frame& frame) {
  std::cout << "Frame " << number << ": ID " << OrDash(frame.frameId) << ", " << OrDash(frame.width)
            << " x " << OrDash(frame.height) << ", " << OrDash(frame.sizeFilled)
            << " bytes, pixel format "
            << (frame.pixelFormat ? Hex(*frame.pixelFormat, kPixelFormatDigits) : "-")
            << ", time stamp " << OrDash(frame.timestamp)
            << (frame.incomplete ? ", incomplete" : "") << std::endl;
}

// Grabs while the acquisition runs; the image is empty unless wanted.
[[nodiscard]] Image GrabLoop(const GenTl& gentl, DS_HANDLE stream, const Event& newBuffer,
                             const Options& options) {
  using Clock = std::chrono::steady_clock;
  Image lastImage;
  const Clock::time_point start = Clock::now();
  for (std::uint64_t number = 1; number <= options.frames; ++number) {
    BUFFER_HANDLE buffer = WaitForBuffer(gentl, newBuffer, options.timeoutMs);
    const Frame frame = DescribeFrame(gentl, stream, buffer);
    PrintFrame(number, frame);
    if (options.image && number == options.frames) {
      lastImage = CopyImage(frame);
    }
    gentl.Do(gentl.DSQueueBuffer, stream, buffer);
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::cout << std::fixed << std::setprecision(2) << options.frames << " frames in " << seconds
            << " s, " << static_cast<double>(options.frames) / seconds << " frames/s\n";
  return lastImage;
}

void CloseProperly(OpenSession& session, Buffers& buffers, Event& newBuffer) {
  buffers.RevokeAll();
  newBuffer.Unregister();
  session.stream.Close();
  session.device.Close();
  session.interfaceHandle.Close();
  session.transportLayer.Close();
  std::cout << "Everything closed\n";
}

}  // namespace

void ListDevices(const GenTl& gentl) {
  Handle transportLayer = OpenTransportLayer(gentl);
  for (const std::string& id : InterfaceIds(gentl, transportLayer.Get())) {
    Handle interfaceHandle =
        Open(gentl, gentl.TLOpenInterface, gentl.IFClose, transportLayer.Get(), id.c_str());
    static_cast<void>(DeviceIds(gentl, interfaceHandle.Get()));
    interfaceHandle.Close();
  }
  transportLayer.Close();
}

void GrabFrames(const GenTl& gentl, const Options& options) {
  OpenSession session = OpenFirstDevice(gentl);
  PORT_HANDLE remotePort = nullptr;
  gentl.Do(gentl.DevGetPort, session.device.Get(), &remotePort);
  const Port port(gentl, remotePort);
  port.PrintInfo();
  const std::string description = port.ReadDescription();
  ReadAndWriteRegisters(port, description);

  OpenFirstStream(gentl, session);
  DS_HANDLE stream = session.stream.Get();
  const StreamNeeds needs = QueryNeeds(gentl, stream, port, description);
  Buffers buffers(gentl, stream);
  buffers.Announce(needs.bufferCount, needs.bufferSize);
  Event newBuffer(gentl, stream, EVENT_NEW_BUFFER);
  buffers.QueueAll();
  Acquisition acquisition(gentl, stream, port, description);
  const Image lastImage = GrabLoop(gentl, stream, newBuffer, options);
  acquisition.Stop();
  gentl.Do(gentl.DSFlushQueue, stream, ACQ_QUEUE_ALL_DISCARD);

  if (options.misuse) {
    CloseBadly(gentl, session, buffers, newBuffer);
  } else {
    CloseProperly(session, buffers, newBuffer);
  }
  if (options.image) {
    WritePgm(*options.image, lastImage);
    std::cout << "Image " << lastImage.width << " x " << lastImage.height << " written to "
              << PathText(*options.image) << '\n';
  }
}

}  // namespace grab
