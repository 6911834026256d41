// SPDX-License-Identifier: MIT
#include "session.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <utility>

#include "faults.h"
#include "gentl_1_5.h"

namespace grab {
namespace {

constexpr std::uint64_t kUpdateTimeoutMs = 1000;

[[nodiscard]] const char* AccessText(const std::optional<std::uint64_t>& status) {
  if (!status) {
    return "-";
  }
  switch (*status) {
    case DEVICE_ACCESS_STATUS_READWRITE:
      return "read and write";
    case DEVICE_ACCESS_STATUS_READONLY:
      return "read only";
    case DEVICE_ACCESS_STATUS_NOACCESS:
      return "no access";
    default:
      return "unknown";
  }
}

void PrintFrame(std::uint64_t number, const Frame& frame) {
  constexpr int formatDigits = 8;
  std::cout << "Frame " << number << ": ID " << OrDash(frame.frameId) << ", " << OrDash(frame.width)
            << " x " << OrDash(frame.height) << ", " << OrDash(frame.sizeFilled)
            << " bytes, pixel format "
            << (frame.pixelFormat ? Hex(*frame.pixelFormat, formatDigits) : "-") << ", time stamp "
            << OrDash(frame.timestamp) << (frame.incomplete ? ", incomplete" : "") << std::endl;
}

// Eight bits a pixel, rows from top to bottom without gaps.
struct Image {
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  std::vector<std::uint8_t> pixels;
};

[[nodiscard]] Image CopyImage(const Frame& frame) {
  // A pixel format's number holds the bits per pixel. Without a format, assume eight.
  constexpr std::uint64_t mono8 = 0x01080001;
  const std::uint64_t bitsPerPixel = frame.pixelFormat.value_or(mono8) >> 16U & 0xFFU;
  if (bitsPerPixel != 8) {
    throw Error("The last frame is no 8-bit image: its pixels have " +
                std::to_string(bitsPerPixel) + " bits.");
  }
  constexpr std::uint64_t maxSide = 1U << 20U;
  const std::uint64_t width = frame.width.value_or(0);
  const std::uint64_t height = frame.height.value_or(0);
  if (frame.base == nullptr || width == 0 || height == 0 || width > maxSide || height > maxSide ||
      frame.sizeFilled.value_or(width * height) < width * height) {
    throw Error("The last frame is no complete image.");
  }
  return {width, height, {frame.base, frame.base + width * height}};
}

void WritePgm(const std::filesystem::path& file, const Image& image) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << "P5\n" << image.width << ' ' << image.height << "\n255\n";
  out.write(reinterpret_cast<const char*>(image.pixels.data()),
            static_cast<std::streamsize>(image.pixels.size()));
  out.close();
  if (!out) {
    throw Error("Cannot write the image file " + PathText(file) + ".");
  }
  std::cout << "Image " << image.width << " x " << image.height << " written to " << PathText(file)
            << '\n';
}

}  // namespace

void Session::OpenTransportLayer() {
  const auto library = [&](TL_INFO_CMD command) { return OrDash(gentl.GCGetInfo.Text(command)); };
  std::cout << "Producer " << library(TL_INFO_VENDOR) << ' ' << library(TL_INFO_MODEL)
            << ", version " << library(TL_INFO_VERSION) << ", type " << library(TL_INFO_TLTYPE)
            << '\n';
  transportLayer = gentl.TLOpen.Open();
  const auto text = [&](TL_INFO_CMD command) {
    return OrDash(gentl.TLGetInfo.Text(transportLayer, command));
  };
  std::cout << "Transport layer " << text(TL_INFO_ID) << " (" << text(TL_INFO_DISPLAYNAME)
            << "), file " << text(TL_INFO_NAME) << '\n';
}

std::vector<std::string> Session::FindInterfaces() const {
  gentl.TLUpdateInterfaceList(transportLayer, nullptr, kUpdateTimeoutMs);
  std::uint32_t count = 0;
  gentl.TLGetNumInterfaces(transportLayer, &count);
  std::vector<std::string> ids;
  for (std::uint32_t index = 0; index < count; ++index) {
    const std::string& id = ids.emplace_back(gentl.TLGetInterfaceID.Id(transportLayer, index));
    const auto text = [&](INTERFACE_INFO_CMD command) {
      return OrDash(gentl.TLGetInterfaceInfo.Text(transportLayer, id.c_str(), command));
    };
    std::cout << "Interface " << id << " (" << text(INTERFACE_INFO_DISPLAYNAME) << "), type "
              << text(INTERFACE_INFO_TLTYPE) << '\n';
  }
  return ids;
}

void Session::OpenInterface(const std::string& id) {
  interfaceHandle = gentl.TLOpenInterface.Open(transportLayer, id.c_str());
  interfaceId = id;
}

std::vector<std::string> Session::FindDevices() const {
  gentl.IFUpdateDeviceList(interfaceHandle, nullptr, kUpdateTimeoutMs);
  std::uint32_t count = 0;
  gentl.IFGetNumDevices(interfaceHandle, &count);
  std::cout << "Devices on "
            << OrDash(gentl.IFGetInfo.Text(interfaceHandle, INTERFACE_INFO_DISPLAYNAME)) << ": "
            << count << '\n';
  std::vector<std::string> ids;
  for (std::uint32_t index = 0; index < count; ++index) {
    const std::string& id = ids.emplace_back(gentl.IFGetDeviceID.Id(interfaceHandle, index));
    const auto text = [&](DEVICE_INFO_CMD command) {
      return OrDash(gentl.IFGetDeviceInfo.Text(interfaceHandle, id.c_str(), command));
    };
    const auto status =
        gentl.IFGetDeviceInfo.Number(interfaceHandle, id.c_str(), DEVICE_INFO_ACCESS_STATUS);
    std::cout << "  Device " << id << " (" << text(DEVICE_INFO_VENDOR) << ' '
              << text(DEVICE_INFO_MODEL) << ", " << text(DEVICE_INFO_DISPLAYNAME) << "), access "
              << AccessText(status) << '\n';
  }
  return ids;
}

bool Session::OpenDevice(const std::string& id) {
  DEV_HANDLE opened = nullptr;
  const GC_ERROR result =
      gentl.IFOpenDevice.Try(interfaceHandle, id.c_str(), DEVICE_ACCESS_EXCLUSIVE, &opened);
  if (result != GC_ERR_SUCCESS) {
    std::cout << "Device " << id << " cannot be opened: " << gentl.IFOpenDevice.Describe(result)
              << '\n';
    return false;
  }
  std::cout << "Device " << id << " opened\n";
  device = gentl.IFOpenDevice.CheckHandle(opened);
  deviceId = id;
  return true;
}

void Session::OpenFirstDevice() {
  for (const std::string& interface : FindInterfaces()) {
    OpenInterface(interface);
    for (const std::string& id : FindDevices()) {
      if (OpenDevice(id)) {
        return;
      }
    }
    gentl.IFClose(std::exchange(interfaceHandle, nullptr));
  }
  throw Error("No device can be opened.");
}

void Session::OpenCamera() {
  PORT_HANDLE port = nullptr;
  gentl.DevGetPort(device, &port);
  camera.emplace(gentl, port);
}

void Session::OpenFirstStream() {
  std::uint32_t count = 0;
  gentl.DevGetNumDataStreams(device, &count);
  if (count == 0) {
    throw Error("The device has no data stream.");
  }
  streamId = gentl.DevGetDataStreamID.Id(device, 0U);
  stream = gentl.DevOpenDataStream.Open(device, streamId.c_str());
  std::cout << "Data stream " << streamId << " opened, the first of " << count << '\n';
}

void Session::AnnounceBuffers(bool mix) {
  std::size_t count = 4;
  const std::size_t size = FindPayloadSize(&count);
  while (buffers.size() + 1 < count) {
    AnnounceOwnBuffer(size);
  }
  if (!mix || !AnnounceProducersBuffer(size)) {
    AnnounceOwnBuffer(size);
  }
}

bool Session::AnnounceProducersBuffer(std::size_t size) {
  BUFFER_HANDLE buffer = nullptr;
  if (!gentl.DSAllocAndAnnounceBuffer.IfOffered(stream, size, this, &buffer)) {
    return false;
  }
  buffers.push_back(buffer);
  return true;
}

void Session::AnnounceOwnBuffer(std::size_t size) {
  std::vector<std::uint8_t>& bytes = memory.emplace_back(size);
  BUFFER_HANDLE buffer = nullptr;
  gentl.DSAnnounceBuffer(stream, bytes.data(), size, this, &buffer);
  buffers.push_back(buffer);
}

// Asks the stream, or the camera if the stream leaves the size of a frame to it. Raises
// *bufferCount to what the producer needs.
std::size_t Session::FindPayloadSize(std::size_t* bufferCount) const {
  const auto defines = gentl.DSGetInfo.Number(stream, STREAM_INFO_DEFINES_PAYLOADSIZE);
  auto payload = gentl.DSGetInfo.Number(stream, STREAM_INFO_PAYLOAD_SIZE);
  const auto least = gentl.DSGetInfo.Number(stream, STREAM_INFO_NUM_ANNOUNCE_MIN);
  if (defines.value_or(0) == 0 || payload.value_or(0) == 0) {
    if (const auto ofCamera = camera->Read("PayloadSize")) {
      payload = ofCamera;
    }
  }
  std::cout << "Stream payload size " << OrDash(payload) << ", defined by the stream "
            << OrDash(defines) << ", buffers needed at least " << OrDash(least) << '\n';
  if (payload.value_or(0) == 0) {
    throw Error("Neither the data stream nor the camera tells the size of a frame.");
  }
  *bufferCount = std::max(*bufferCount, static_cast<std::size_t>(least.value_or(0)));
  return static_cast<std::size_t>(*payload);
}

void Session::StartAcquisition() {
  gentl.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer);
  for (BUFFER_HANDLE buffer : buffers) {
    gentl.DSQueueBuffer(stream, buffer);
  }
  constexpr std::uint64_t untilStopped = ~std::uint64_t{0};
  camera->Write("TLParamsLocked", 1);
  gentl.DSStartAcquisition(stream, ACQ_START_FLAGS_DEFAULT, untilStopped);
  try {
    camera->Execute("AcquisitionStart");
  } catch (...) {
    gentl.DSStopAcquisition.Quietly(stream, ACQ_STOP_FLAGS_DEFAULT);
    throw;
  }
  acquiring = true;
}

BUFFER_HANDLE Session::WaitForBuffer(std::uint64_t timeoutMs) const {
  // What a new-buffer event delivers: the buffer, and the pointer announced with it.
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  const GC_ERROR result = gentl.EventGetData.Try(newBuffer, data.data(), &size, timeoutMs);
  if (result == GC_ERR_TIMEOUT) {
    throw Error("No frame arrived within " + std::to_string(timeoutMs) + " ms.");
  }
  if (result != GC_ERR_SUCCESS) {
    throw Error(gentl.EventGetData.Describe(result) + ".");
  }
  return data.front();
}

Frame Session::DescribeFrame(BUFFER_HANDLE buffer) const {
  const auto number = [&](BUFFER_INFO_CMD command) {
    return gentl.DSGetBufferInfo.Number(stream, buffer, command);
  };
  Frame frame;
  frame.base = reinterpret_cast<const std::uint8_t*>(
      static_cast<std::uintptr_t>(number(BUFFER_INFO_BASE).value_or(0)));
  frame.sizeFilled = number(BUFFER_INFO_SIZE_FILLED);
  frame.width = number(BUFFER_INFO_WIDTH);
  frame.height = number(BUFFER_INFO_HEIGHT);
  frame.frameId = number(BUFFER_INFO_FRAMEID);
  frame.timestamp = number(BUFFER_INFO_TIMESTAMP);
  frame.incomplete = number(BUFFER_INFO_IS_INCOMPLETE).value_or(0) != 0;
  frame.pixelFormat = number(BUFFER_INFO_PIXELFORMAT);
  return frame;
}

void Session::StopAcquisition() {
  acquiring = false;
  try {
    camera->Execute("AcquisitionStop");
  } catch (...) {
    // A camera that's gone must not keep the stream running.
    gentl.DSStopAcquisition.Quietly(stream, ACQ_STOP_FLAGS_DEFAULT);
    throw;
  }
  gentl.DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT);
  camera->Write("TLParamsLocked", 0);
}

void Session::Close() {
  while (!buffers.empty()) {
    BUFFER_HANDLE buffer = buffers.back();
    buffers.pop_back();
    void* bytes = nullptr;
    void* userPointer = nullptr;
    gentl.DSRevokeBuffer(stream, buffer, &bytes, &userPointer);
  }
  static_cast<void>(gentl.EventKill.IfOffered(newBuffer));  // Wakes whoever still waits.
  newBuffer = nullptr;
  gentl.GCUnregisterEvent(stream, EVENT_NEW_BUFFER);
  gentl.DSClose(std::exchange(stream, nullptr));
  gentl.DevClose(std::exchange(device, nullptr));
  gentl.IFClose(std::exchange(interfaceHandle, nullptr));
  gentl.TLClose(std::exchange(transportLayer, nullptr));
  std::cout << "Everything closed\n";
}

Session::~Session() {
  if (acquiring) {
    try {
      StopAcquisition();
    } catch (const Error&) {
      // The first error is on its way to the user already.
    }
  }
  if (newBuffer != nullptr) {
    gentl.GCUnregisterEvent.Quietly(stream, EVENT_NEW_BUFFER);
  }
  if (!buffers.empty()) {
    gentl.DSFlushQueue.Quietly(stream, ACQ_QUEUE_ALL_DISCARD);  // Queued buffers cannot be revoked.
    for (BUFFER_HANDLE buffer : buffers) {
      gentl.DSRevokeBuffer.Quietly(stream, buffer, nullptr, nullptr);
    }
  }
  if (stream != nullptr) {
    gentl.DSClose.Quietly(stream);
  }
  if (device != nullptr) {
    gentl.DevClose.Quietly(device);
  }
  if (interfaceHandle != nullptr) {
    gentl.IFClose.Quietly(interfaceHandle);
  }
  if (transportLayer != nullptr) {
    gentl.TLClose.Quietly(transportLayer);
  }
}

void ListDevices(const Producer& producer) {
  Session session(producer);
  session.OpenTransportLayer();
  for (const std::string& id : session.FindInterfaces()) {
    session.OpenInterface(id);
    static_cast<void>(session.FindDevices());
    producer.IFClose(std::exchange(session.interfaceHandle, nullptr));
  }
  producer.TLClose(std::exchange(session.transportLayer, nullptr));
}

void GrabFrames(const Producer& producer, const Options& options) {
  Session session(producer);
  session.OpenTransportLayer();
  session.OpenFirstDevice();
  session.OpenCamera();
  session.camera->ReadAndWriteSize();
  session.OpenFirstStream();
  std::optional<GenTL15> newer;
  if (options.genTL15) {
    newer.emplace(session);
    newer->PrintParents();
  }
  session.AnnounceBuffers(options.mixBuffers || options.misuse);
  session.StartAcquisition();

  using Clock = std::chrono::steady_clock;
  std::optional<Image> lastImage;
  const Clock::time_point start = Clock::now();
  for (std::uint64_t number = 1; number <= options.frames; ++number) {
    BUFFER_HANDLE buffer = session.WaitForBuffer(options.timeoutMs);
    const Frame frame = session.DescribeFrame(buffer);
    PrintFrame(number, frame);
    if (newer) {
      newer->PrintParts(buffer, frame);
      newer->PrintChunks(buffer);
    }
    if (options.image && number == options.frames) {
      lastImage = CopyImage(frame);
    }
    producer.DSQueueBuffer(session.stream, buffer);
  }
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  std::cout << std::fixed << std::setprecision(2) << options.frames << " frames in " << seconds
            << " s, " << static_cast<double>(options.frames) / seconds << " frames/s\n";

  const Fault* const fault = FindFault(options.fault);
  if (fault != nullptr && fault->time == Fault::Time::Running) {
    fault->make(session, options.mended);
  }
  if (session.acquiring) {
    session.StopAcquisition();
    producer.DSFlushQueue(session.stream, ACQ_QUEUE_ALL_DISCARD);
  }
  if (fault != nullptr && fault->time == Fault::Time::Stopped) {
    fault->make(session, options.mended);
  }
  if (options.misuse) {
    CloseBadly(session);
  } else if (session.stream != nullptr) {
    session.Close();
  }  // Otherwise the fault has closed it, and the session closes the rest.
  if (lastImage) {
    WritePgm(*options.image, *lastImage);
  }
}

std::string Hex(std::uint64_t value, int digits) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << std::setw(digits) << std::setfill('0') << value;
  return text.str();
}

}  // namespace grab
