// SPDX-License-Identifier: MIT
#include "remote_device.h"

#include <cstring>
#include <utility>

#include "events.h"
#include "xml.h"

namespace simulated_camera {
namespace {

constexpr ModuleKind kRemoteDeviceKind{"Device", "Device", {}};

constexpr uint64_t kVendorName = 0x0;
constexpr uint64_t kModelName = 0x20;
constexpr uint64_t kDeviceId = 0x40;
constexpr uint64_t kUserId = 0x60;
constexpr size_t kUserIdSize = 64;
constexpr uint64_t kWidth = 0x100;
constexpr uint64_t kHeight = 0x104;
constexpr uint64_t kPixelFormat = 0x108;
constexpr uint64_t kParamsLocked = 0x10C;
constexpr uint64_t kPayloadSize = 0x110;
constexpr uint64_t kFrameRate = 0x118;
constexpr uint64_t kAcquisitionStart = 0x120;
constexpr uint64_t kAcquisitionStop = 0x124;
constexpr uint64_t kCameraXmlAddress = 0x10000;

PortRegisters CameraRegisters(const std::string& deviceId, const Settings& settings) {
  constexpr auto writable = Register::Access::ReadWrite;
  const Geometry geometry{settings.width, settings.height};
  PortRegisters registers;
  RegisterMap& map = registers.map;
  map.AddText("DeviceVendorName", kVendorName, 32, kVendor);
  map.AddText("DeviceModelName", kModelName, 32, kModel);
  map.AddText("DeviceID", kDeviceId, 32, deviceId);
  map.AddText("DeviceUserID", kUserId, kUserIdSize, "", writable);
  map.AddNumber("Width", kWidth, geometry.width, writable);
  map.AddNumber("Height", kHeight, geometry.height, writable);
  map.AddNumber("PixelFormat", kPixelFormat, kMono8);
  map.AddNumber("TLParamsLocked", kParamsLocked, uint32_t{0}, writable);
  map.AddNumber("PayloadSize", kPayloadSize, uint64_t{geometry.PayloadSize()});
  map.AddNumber("AcquisitionFrameRate", kFrameRate, settings.rate, writable);
  map.AddNumber("AcquisitionStart", kAcquisitionStart, uint32_t{0}, writable);
  map.AddNumber("AcquisitionStop", kAcquisitionStop, uint32_t{0}, writable);
  map.AddText("the description", kCameraXmlAddress, CameraXml().size(), CameraXml());
  const size_t tooMuch = settings.quirk == Quirk::LongDescription ? 1 : 0;
  registers.description = {"SimulatedCamera.xml", kCameraXmlAddress, CameraXml().size() + tooMuch};
  return registers;
}

template <class T>
T As(const void* data) {
  T value;
  std::memcpy(&value, data, sizeof(value));
  return value;
}

template <class T>
void RequireRange(T value, T lowest, T highest) {
  // Rejects NaN, too.
  if (!(value >= lowest && value <= highest)) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "the value is out of range");
  }
}

// Returns the value for EVENT_FEATURE_CHANGE.
std::string TextOf(const Register& target) {
  if (target.kind == Register::Kind::Text) {
    return target.content.substr(0, target.content.find('\0'));
  }
  if (target.address == kFrameRate) {
    return std::to_string(As<double>(target.content.data()));
  }
  return std::to_string(As<uint32_t>(target.content.data()));
}

Geometry GeometryIn(const RegisterMap& registers) {
  return {registers.Number<uint32_t>(kWidth), registers.Number<uint32_t>(kHeight)};
}

void CheckValue(const RegisterMap& registers, uint64_t address, const void* data) {
  switch (address) {
    case kWidth:
    case kHeight:
      if (registers.Number<uint32_t>(kParamsLocked) != 0) {
        throw Failure(GC_ERR_ACCESS_DENIED, "the picture size is locked");
      }
      RequireRange<uint32_t>(As<uint32_t>(data), 1, kLargestSide);
      break;
    case kParamsLocked:
      RequireRange<uint32_t>(As<uint32_t>(data), 0, 1);
      break;
    case kFrameRate:
      RequireRange(As<double>(data), kLowestRate, kHighestRate);
      break;
    case kAcquisitionStart:
    case kAcquisitionStop:
      RequireRange<uint32_t>(As<uint32_t>(data), 1, 1);
      break;
    default:
      break;
  }
}

}  // namespace

RemoteDevice::RemoteDevice(const std::string& deviceId, std::weak_ptr<Module> device,
                           const Settings& settings, bool writable)
    : Module(kRemoteDeviceKind, deviceId, std::move(device), CameraRegisters(deviceId, settings)),
      writable_(writable),
      lose_(settings.lose),
      incomplete_(settings.incomplete),
      stall_(settings.stall),
      slow_(settings.slow),
      quirk_(settings.quirk) {}

void RemoteDevice::RequirePlug() const {
  if (gone_) {
    throw Failure(GC_ERR_IO, "the camera does not answer");
  }
}

void RemoteDevice::ReachFrame(uint64_t number) noexcept {
  constexpr uint64_t framesOfUnplugged = 10;
  if (Has(Quirk::Unplugged) && number >= framesOfUnplugged) {
    gone_ = true;
  }
}

std::chrono::milliseconds RemoteDevice::StallBefore(uint64_t number) const noexcept {
  constexpr uint64_t framesToStall = 12;
  return number % framesToStall == framesToStall - 1 ? stall_ : std::chrono::milliseconds(0);
}

void RemoteDevice::Read(uint64_t address, void* buffer, size_t size) const {
  RequirePlug();
  Module::Read(address, buffer, size);
}

void RemoteDevice::Write(uint64_t address, const void* data, size_t size) {
  RequirePlug();
  if (!writable_) {
    throw Failure(GC_ERR_ACCESS_DENIED, "the device is open for reading only");
  }
  const Register written = WithRegisters([&](RegisterMap& registers) {
    const Register& target = registers.WriteTarget(address, size);
    CheckValue(registers, address, data);
    if (address == kAcquisitionStart || address == kAcquisitionStop) {
      // A command completes at once, so its register stays zero.
      framesFlow_ = address == kAcquisitionStart;
    } else {
      registers.Store(address, data, size);
      const uint64_t payload = GeometryIn(registers).PayloadSize();
      registers.Store(kPayloadSize, &payload, sizeof(payload));
    }
    return target;
  });
  Fire(EVENT_FEATURE_CHANGE, FeatureEvent(written.feature, TextOf(written)));
  if (written.address == kWidth || written.address == kHeight) {
    Fire(EVENT_FEATURE_INVALIDATE, FeatureEvent("PayloadSize"));
  }
}

Geometry RemoteDevice::CurrentGeometry() const {
  return WithRegisters(GeometryIn);
}

std::string RemoteDevice::UserId() const {
  std::string id(kUserIdSize, '\0');
  Read(kUserId, id.data(), id.size());
  return id.substr(0, id.find('\0'));
}

double RemoteDevice::FrameRate() const {
  return WithRegisters(
      [](const RegisterMap& registers) { return registers.Number<double>(kFrameRate); });
}

}  // namespace simulated_camera
