#include "device.h"

#include <utility>

namespace simcam {
namespace {

constexpr ModuleKind kDeviceKind{"TLDevice", "DevicePort", "DeviceID"};

}  // namespace

InfoValue DeviceInfo(const DeviceEntry& device, DEVICE_ACCESS_STATUS status,
                     DEVICE_INFO_CMD command) {
  switch (command) {
    case DEVICE_INFO_ID:
      return InfoValue::Text(device.id);
    case DEVICE_INFO_VENDOR:
      return InfoValue::Text(kVendor);
    case DEVICE_INFO_MODEL:
      return InfoValue::Text(kModel);
    case DEVICE_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case DEVICE_INFO_DISPLAYNAME:
      return InfoValue::Text(device.displayName);
    case DEVICE_INFO_ACCESS_STATUS:
      return InfoValue::Int32(status);
    default:
      RefuseCommand(command);
  }
}

Device::Device(const DeviceEntry& entry, std::weak_ptr<Module> interface, bool writable)
    : Module(kDeviceKind, entry.id, std::move(interface)), entry_(entry), writable_(writable) {}

void Device::Connect(const Settings& settings, HandleTable& handles) {
  camera_ = std::make_shared<RemoteDevice>(Id(), weak_from_this(), settings, writable_);
  Adopt(camera_);
  handles.Add(camera_);
}

InfoValue Device::Info(DEVICE_INFO_CMD command) const {
  const auto status = writable_ ? DEVICE_ACCESS_STATUS_READWRITE : DEVICE_ACCESS_STATUS_READONLY;
  return DeviceInfo(entry_, status, command);
}

std::shared_ptr<DataStream> Device::OpenStream(const std::string& id) {
  if (id != StreamId()) {
    throw Failure(GC_ERR_INVALID_ID, "no data stream has this ID");
  }
  if (HasOpenChild(id)) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the data stream is open already");
  }
  auto stream = std::make_shared<DataStream>(id, weak_from_this(), camera_);
  Adopt(stream);
  return stream;
}

}  // namespace simcam
