#include "remote_device.h"

#include <cstring>
#include <utility>

#include "event_data.h"
#include "xml.h"

namespace simcam {
namespace {

constexpr ModuleKind kRemoteDeviceKind{"Device", "Device", {}};

constexpr uint64_t kVendorName = 0x0;
constexpr uint64_t kModelName = 0x20;
constexpr uint64_t kDeviceId = 0x40;
constexpr uint64_t kUserId = 0x60;
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
  constexpr auto kWritable = Register::Access::kReadWrite;
  const Geometry geometry{settings.width, settings.height};
  PortRegisters registers;
  RegisterMap& map = registers.map;
  map.AddText("DeviceVendorName", kVendorName, 32, kVendor);
  map.AddText("DeviceModelName", kModelName, 32, kModel);
  map.AddText("DeviceID", kDeviceId, 32, deviceId);
  map.AddText("DeviceUserID", kUserId, 64, "", kWritable);
  map.AddNumber("Width", kWidth, geometry.width, kWritable);
  map.AddNumber("Height", kHeight, geometry.height, kWritable);
  map.AddNumber("PixelFormat", kPixelFormat, kMono8);
  map.AddNumber("TLParamsLocked", kParamsLocked, uint32_t{0}, kWritable);
  map.AddNumber("PayloadSize", kPayloadSize, uint64_t{geometry.PayloadSize()});
  map.AddNumber("AcquisitionFrameRate", kFrameRate, settings.rate, kWritable);
  map.AddNumber("AcquisitionStart", kAcquisitionStart, uint32_t{0}, kWritable);
  map.AddNumber("AcquisitionStop", kAcquisitionStop, uint32_t{0}, kWritable);
  map.AddText("the description", kCameraXmlAddress, CameraXml().size(), CameraXml());
  registers.url = LocalUrl("SimulatedCamera", kCameraXmlAddress, CameraXml().size());
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
  // Written so that not-a-number fails as well.
  if (!(value >= lowest && value <= highest)) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "the value is out of range");
  }
}

// The written value as EVENT_FEATURE_CHANGE tells it.
std::string TextOf(const Register& target) {
  if (target.kind == Register::Kind::kText) {
    return target.content.substr(0, target.content.find('\0'));
  }
  if (target.address == kFrameRate) {
    return std::to_string(As<double>(target.content.data()));
  }
  return std::to_string(As<uint32_t>(target.content.data()));
}

}  // namespace

RemoteDevice::RemoteDevice(const std::string& deviceId, std::weak_ptr<Module> device,
                           const Settings& settings, bool writable)
    : Module(kRemoteDeviceKind, deviceId, std::move(device), CameraRegisters(deviceId, settings)),
      writable_(writable) {}

void RemoteDevice::Write(uint64_t address, const void* data, size_t size) {
  std::string feature;
  std::string value;
  bool resized = false;
  {
    const std::scoped_lock lock(registerMutex_);
    if (!writable_) {
      throw Failure(GC_ERR_ACCESS_DENIED, "the device is open for reading only");
    }
    const Register& target = registers_.WriteTarget(address, size);
    CheckValue(address, data);
    Apply(address, data, size);
    feature = target.feature;
    value = TextOf(target);
    resized = target.address == kWidth || target.address == kHeight;
  }
  Fire(EVENT_FEATURE_CHANGE, FeatureEvent(feature, value));
  if (resized) {
    Fire(EVENT_FEATURE_INVALIDATE, FeatureEvent("PayloadSize"));
  }
}

void RemoteDevice::CheckValue(uint64_t address, const void* data) const {
  switch (address) {
    case kWidth:
    case kHeight:
      if (registers_.Number<uint32_t>(kParamsLocked) != 0) {
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

void RemoteDevice::Apply(uint64_t address, const void* data, size_t size) {
  switch (address) {
    case kAcquisitionStart:
    case kAcquisitionStop:
      // A command is done at once, so its register keeps its zero.
      framesFlow_ = address == kAcquisitionStart;
      break;
    default:
      registers_.Store(address, data, size);
      const auto payload =
          uint64_t{registers_.Number<uint32_t>(kWidth)} * registers_.Number<uint32_t>(kHeight);
      registers_.Store(kPayloadSize, &payload, sizeof(payload));
      break;
  }
}

Geometry RemoteDevice::CurrentGeometry() const {
  const std::scoped_lock lock(registerMutex_);
  return {registers_.Number<uint32_t>(kWidth), registers_.Number<uint32_t>(kHeight)};
}

double RemoteDevice::FrameRate() const {
  const std::scoped_lock lock(registerMutex_);
  return registers_.Number<double>(kFrameRate);
}

bool RemoteDevice::FramesFlow() const {
  const std::scoped_lock lock(registerMutex_);
  return framesFlow_;
}

}  // namespace simcam
