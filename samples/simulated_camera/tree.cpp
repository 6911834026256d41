// SPDX-License-Identifier: MIT
#include "tree.h"

#include <algorithm>
#include <utility>

#include "platform.h"

namespace simulated_camera {
namespace {

constexpr ModuleKind kDeviceKind{"TLDevice", "DevicePort", "DeviceID"};
constexpr ModuleKind kInterfaceKind{"TLInterface", "InterfacePort", "InterfaceID"};
constexpr uint64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr int32_t kAsciiEncoding = 0;
constexpr std::string_view kId = "VextrelSimulatedCamera";
constexpr ModuleKind kTransportLayerKind{"TLSystem", "TLPort", "TLID"};
constexpr uint32_t kInterfaces = 2;

// From this many devices on, the first refuses to open, as if in use by another process.
constexpr uint32_t kDevicesForARefusal = 3;

}  // namespace

InfoValue DeviceInfo(const DeviceEntry& device, const DeviceState& state, DEVICE_INFO_CMD command) {
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
      return InfoValue::Int32(state.status);
    case DEVICE_INFO_USER_DEFINED_NAME:
      return InfoValue::Text(state.userId);
    case DEVICE_INFO_SERIAL_NUMBER:
      return InfoValue::Text(device.serialNumber);
    case DEVICE_INFO_VERSION:
      return InfoValue::Text(kVersion);
    case DEVICE_INFO_TIMESTAMP_FREQUENCY:
      return InfoValue::UInt64(kNanosecondsPerSecond);
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
  return DeviceInfo(entry_, {status, camera_->UserId()}, command);
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

InfoValue InterfaceInfo(const InterfaceEntry& interface, INTERFACE_INFO_CMD command) {
  switch (command) {
    case INTERFACE_INFO_ID:
      return InfoValue::Text(interface.id);
    case INTERFACE_INFO_DISPLAYNAME:
      return InfoValue::Text(interface.displayName);
    case INTERFACE_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    default:
      RefuseCommand(command);
  }
}

Interface::Interface(const InterfaceEntry& entry, std::weak_ptr<Module> transportLayer)
    : Module(kInterfaceKind, entry.id, std::move(transportLayer)), entry_(entry) {}

bool Interface::UpdateDeviceList() {
  return !std::exchange(listed_, true);
}

std::span<const DeviceEntry> Interface::DeviceList() const {
  return listed_ ? std::span(entry_.devices) : std::span<const DeviceEntry>();
}

InfoValue Interface::InfoOfDevice(const std::string& id, DEVICE_INFO_CMD command) const {
  const DeviceEntry& device = Find(id);
  const auto open = std::static_pointer_cast<Device>(OpenChild(id));
  const bool free = !device.refuses && open == nullptr;
  return DeviceInfo(device,
                    {free ? DEVICE_ACCESS_STATUS_READWRITE : DEVICE_ACCESS_STATUS_NOACCESS,
                     open != nullptr ? open->Camera()->UserId() : std::string()},
                    command);
}

std::shared_ptr<Device> Interface::OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags,
                                              const Settings& settings, HandleTable& handles) {
  if (settings.quirk == Quirk::NeedsList && !listed_) {
    throw Failure(GC_ERR_INVALID_ID, "no device of the list has this ID");
  }
  const DeviceEntry& entry = Find(id);
  if (flags < DEVICE_ACCESS_READONLY || flags > DEVICE_ACCESS_EXCLUSIVE) {
    throw Failure(GC_ERR_INVALID_PARAMETER, "a device cannot be opened like this");
  }
  if (entry.refuses) {
    throw Failure(GC_ERR_ACCESS_DENIED, "somebody else uses " + id);
  }
  if (HasOpenChild(id)) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, id + " is open already");
  }
  auto device = std::make_shared<Device>(entry, weak_from_this(), flags != DEVICE_ACCESS_READONLY);
  device->Connect(settings, handles);
  Adopt(device);
  return device;
}

const DeviceEntry& Interface::Find(const std::string& id) const {
  const auto found = std::ranges::find(entry_.devices, id, &DeviceEntry::id);
  if (found == entry_.devices.end()) {
    throw Failure(GC_ERR_INVALID_ID, "no device has this ID");
  }
  return *found;
}

InfoValue TransportLayerInfo(TL_INFO_CMD command) {
  switch (command) {
    case TL_INFO_ID:
      return InfoValue::Text(kId);
    case TL_INFO_VENDOR:
      return InfoValue::Text(kVendor);
    case TL_INFO_MODEL:
    case TL_INFO_DISPLAYNAME:
      return InfoValue::Text(kModel);
    case TL_INFO_VERSION:
      return InfoValue::Text(kVersion);
    case TL_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case TL_INFO_NAME: {
      const std::string path = ModulePath();
      return InfoValue::Text(std::string_view(path).substr(path.find_last_of("/\\") + 1));
    }
    case TL_INFO_PATHNAME:
      return InfoValue::Text(ModulePath());
    case TL_INFO_CHAR_ENCODING:
      return InfoValue::Int32(kAsciiEncoding);
    case TL_INFO_GENTL_VER_MAJOR:
      return InfoValue::UInt32(kGenTLMajor);
    case TL_INFO_GENTL_VER_MINOR:
      return InfoValue::UInt32(kGenTLMinor);
    default:
      RefuseCommand(command);
  }
}

TransportLayer::TransportLayer(const Settings& settings)
    : Module(kTransportLayerKind, std::string(kId), {}) {
  for (uint32_t i = 0; i < kInterfaces; ++i) {
    const std::string number = std::to_string(i);
    interfaces_.push_back({"SimIface" + number, "Simulated Interface " + number, {}});
  }
  for (uint32_t i = 0; i < settings.devices; ++i) {
    const std::string number = std::to_string(i);
    interfaces_[i % kInterfaces].devices.push_back(
        {"SimCam" + number, std::string(kModel) + " " + number, "VSC" + std::to_string(1000 + i),
         i == 0 && settings.devices >= kDevicesForARefusal});
  }
}

bool TransportLayer::UpdateInterfaceList() {
  return !std::exchange(listed_, true);
}

std::span<const InterfaceEntry> TransportLayer::InterfaceList() const {
  return listed_ ? std::span(interfaces_) : std::span<const InterfaceEntry>();
}

InfoValue TransportLayer::InfoOfInterface(const std::string& id, INTERFACE_INFO_CMD command) const {
  return InterfaceInfo(Find(id), command);
}

std::shared_ptr<Interface> TransportLayer::OpenInterface(const std::string& id) {
  const InterfaceEntry& entry = Find(id);
  if (HasOpenChild(id)) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, id + " is open already");
  }
  auto interface = std::make_shared<Interface>(entry, weak_from_this());
  Adopt(interface);
  return interface;
}

const InterfaceEntry& TransportLayer::Find(const std::string& id) const {
  const auto found = std::ranges::find(interfaces_, id, &InterfaceEntry::id);
  if (found == interfaces_.end()) {
    throw Failure(GC_ERR_INVALID_ID, "no interface has this ID");
  }
  return *found;
}

}  // namespace simulated_camera
