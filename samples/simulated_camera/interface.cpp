#include "interface.h"

#include <algorithm>
#include <utility>

namespace simcam {
namespace {

constexpr ModuleKind kInterfaceKind{"TLInterface", "InterfacePort", "InterfaceID"};

}  // namespace

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
  const bool free = !device.refuses && !HasOpenChild(id);
  return DeviceInfo(device, free ? DEVICE_ACCESS_STATUS_READWRITE : DEVICE_ACCESS_STATUS_NOACCESS,
                    command);
}

std::shared_ptr<Device> Interface::OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags,
                                              const Settings& settings, HandleTable& handles) {
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

}  // namespace simcam
