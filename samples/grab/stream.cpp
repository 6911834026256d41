#include "stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iostream>

#include "error.h"
#include "info.h"
#include "text.h"

namespace grab {
namespace {

constexpr std::size_t kUsualBufferCount = 4;

[[nodiscard]] std::optional<std::uint64_t> ReadFeature(const Port& port,
                                                       const std::string& description,
                                                       const char* feature) {
  const auto source = FindRegister(description, feature);
  return source ? std::optional(port.Read(*source)) : std::nullopt;
}

// The bits that a pixel takes are part of its format's number. Without a format, eight are taken
// for granted.
[[nodiscard]] std::uint64_t BitsPerPixel(const Frame& frame) {
  constexpr std::uint64_t kByte = 8;
  constexpr std::uint64_t kBitsShift = 16;
  constexpr std::uint64_t kBitsMask = 0xFF;
  return frame.pixelFormat ? (*frame.pixelFormat >> kBitsShift) & kBitsMask : kByte;
}

}  // namespace

StreamNeeds QueryNeeds(const GenTl& gentl, DS_HANDLE stream, const Port& port,
                       const std::string& description) {
  const auto number = [&](STREAM_INFO_CMD command) {
    return NumberInfo(gentl, gentl.DSGetInfo, stream, command);
  };
  const auto defines = number(STREAM_INFO_DEFINES_PAYLOADSIZE);
  auto payload = number(STREAM_INFO_PAYLOAD_SIZE);
  const auto least = number(STREAM_INFO_NUM_ANNOUNCE_MIN);
  if (defines.value_or(0) == 0 || payload.value_or(0) == 0) {
    const auto cameras = ReadFeature(port, description, "PayloadSize");
    payload = cameras ? cameras : payload;
  }
  std::cout << "Stream payload size " << OrDash(payload) << ", defined by the stream "
            << OrDash(defines) << ", buffers needed at least " << OrDash(least) << '\n';
  if (payload.value_or(0) == 0) {
    throw Error("Neither the data stream nor the camera tells the size of a frame.");
  }
  return {static_cast<std::size_t>(*payload),
          std::max(kUsualBufferCount, static_cast<std::size_t>(least.value_or(0)))};
}

Acquisition::Acquisition(const GenTl& functions, DS_HANDLE dataStream, const Port& cameraPort,
                         const std::string& cameraDescription)
    : gentl(functions), stream(dataStream), port(cameraPort), description(cameraDescription) {
  constexpr std::uint64_t kEndless = ~std::uint64_t{0};
  WriteIfPresent("TLParamsLocked", 1);
  gentl.Do(gentl.DSStartAcquisition, stream, ACQ_START_FLAGS_DEFAULT, kEndless);
  running = true;
  try {
    RunCommand("AcquisitionStart");
  } catch (...) {
    gentl.DSStopAcquisition(stream, ACQ_STOP_FLAGS_DEFAULT);
    throw;
  }
}

Acquisition::~Acquisition() {
  if (running) {
    try {
      Stop();
    } catch (const Error&) {
      // Another error is on its way to the user already.
    }
  }
}

void Acquisition::Stop() {
  running = false;
  RunCommand("AcquisitionStop");
  gentl.Do(gentl.DSStopAcquisition, stream, ACQ_STOP_FLAGS_DEFAULT);
  WriteIfPresent("TLParamsLocked", 0);
}

void Acquisition::RunCommand(const char* feature) const {
  WriteIfPresent(feature, FindCommandValue(description, feature));
}

void Acquisition::WriteIfPresent(const char* feature, std::uint64_t value) const {
  if (const auto target = FindRegister(description, feature)) {
    port.Write(*target, value);
  }
}

BUFFER_HANDLE WaitForBuffer(const GenTl& gentl, const Event& newBuffer, std::uint64_t timeoutMs) {
  // What a new-buffer event delivers: the buffer and the value announced with it.
  std::array<void*, 2> data{};
  std::size_t size = sizeof data;
  const GC_ERROR result = gentl.EventGetData(newBuffer.Get(), data.data(), &size, timeoutMs);
  if (result == GC_ERR_TIMEOUT) {
    throw Error("No frame arrived within " + std::to_string(timeoutMs) + " ms.");
  }
  if (result != GC_ERR_SUCCESS) {
    throw Error(gentl.Describe(gentl.EventGetData.Name(), result) + ".");
  }
  return data.front();
}

Frame DescribeFrame(const GenTl& gentl, DS_HANDLE stream, BUFFER_HANDLE buffer) {
  const auto number = [&](BUFFER_INFO_CMD command) {
    return NumberInfo(gentl, gentl.DSGetBufferInfo, stream, buffer, command);
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

Image CopyImage(const Frame& frame) {
  constexpr std::uint64_t kByte = 8;
  constexpr std::uint64_t kMaxSide = 1U << 20U;
  if (BitsPerPixel(frame) != kByte) {
    throw Error("The last frame is no 8-bit image: its pixels have " +
                std::to_string(BitsPerPixel(frame)) + " bits.");
  }
  const std::uint64_t width = frame.width.value_or(0);
  const std::uint64_t height = frame.height.value_or(0);
  if (frame.base == nullptr || width == 0 || height == 0 || width > kMaxSide || height > kMaxSide ||
      frame.sizeFilled.value_or(width * height) < width * height) {
    throw Error("The last frame is no complete image.");
  }
  Image image{static_cast<std::size_t>(width), static_cast<std::size_t>(height), {}};
  image.pixels.assign(frame.base, frame.base + image.width * image.height);
  return image;
}

}  // namespace grab
