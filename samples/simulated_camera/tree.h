// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_TREE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_TREE_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "data_stream.h"
#include "module.h"
#include "remote_device.h"
#include "settings.h"

namespace simulated_camera {

// A device in the list of its interface, open or not.
struct DeviceEntry {
  std::string id;
  std::string displayName;
  std::string serialNumber;
  bool refuses = false;  // Pretends that another process has it open.
};

// What changes while a device is listed.
struct DeviceState {
  DEVICE_ACCESS_STATUS status = DEVICE_ACCESS_STATUS_UNKNOWN;
  std::string userId;
};

[[nodiscard]] InfoValue DeviceInfo(const DeviceEntry& device, const DeviceState& state,
                                   DEVICE_INFO_CMD command);

// An open device. It has one data stream.
class Device : public Module {
 public:
  Device(const DeviceEntry& entry, std::weak_ptr<Module> interface, bool writable);

  // Makes the remote device. REQUIRES: called once, before other threads know the device.
  void Connect(const Settings& settings, HandleTable& handles);

  [[nodiscard]] InfoValue Info(DEVICE_INFO_CMD command) const;
  [[nodiscard]] const std::shared_ptr<RemoteDevice>& Camera() const noexcept { return camera_; }

  [[nodiscard]] std::string StreamId() const { return Id() + "-Stream0"; }
  // REQUIRES: the tree lock is held. Throws GC_ERR_INVALID_ID or GC_ERR_RESOURCE_IN_USE.
  [[nodiscard]] std::shared_ptr<DataStream> OpenStream(const std::string& id);

 private:
  const DeviceEntry entry_;
  const bool writable_;
  std::shared_ptr<RemoteDevice> camera_;
};

// An interface in the list of the transport layer, open or not.
struct InterfaceEntry {
  std::string id;
  std::string displayName;
  std::vector<DeviceEntry> devices;
};

[[nodiscard]] InfoValue InterfaceInfo(const InterfaceEntry& interface, INTERFACE_INFO_CMD command);

// An open interface. REQUIRES: the tree lock is held, except for what Module declares thread-safe.
class Interface : public Module {
 public:
  Interface(const InterfaceEntry& entry, std::weak_ptr<Module> transportLayer);

  [[nodiscard]] const InterfaceEntry& Entry() const noexcept { return entry_; }

  // Returns true iff the list has changed: it is empty until the first update.
  bool UpdateDeviceList();
  [[nodiscard]] std::span<const DeviceEntry> DeviceList() const;

  // These need no updated list, but for Quirk::NeedsList. They throw GC_ERR_INVALID_ID.
  [[nodiscard]] InfoValue InfoOfDevice(const std::string& id, DEVICE_INFO_CMD command) const;
  // Also throws GC_ERR_ACCESS_DENIED, GC_ERR_RESOURCE_IN_USE, or GC_ERR_INVALID_PARAMETER for
  // invalid flags.
  [[nodiscard]] std::shared_ptr<Device> OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags,
                                                   const Settings& settings, HandleTable& handles);

 private:
  [[nodiscard]] const DeviceEntry& Find(const std::string& id) const;

  const InterfaceEntry entry_;
  bool listed_ = false;
};

[[nodiscard]] InfoValue TransportLayerInfo(TL_INFO_CMD command);

// The open transport layer. Its two interfaces share the devices: SimCam0 is on SimIface0, SimCam1
// on SimIface1, SimCam2 on SimIface0, and so on. REQUIRES: the tree lock is held, except for what
// Module declares thread-safe.
class TransportLayer : public Module {
 public:
  explicit TransportLayer(const Settings& settings);

  // Returns true iff the list has changed: it is empty until the first update.
  bool UpdateInterfaceList();
  [[nodiscard]] std::span<const InterfaceEntry> InterfaceList() const;

  // These need no updated list. They throw GC_ERR_INVALID_ID.
  [[nodiscard]] InfoValue InfoOfInterface(const std::string& id, INTERFACE_INFO_CMD command) const;
  // Also throws GC_ERR_RESOURCE_IN_USE.
  [[nodiscard]] std::shared_ptr<Interface> OpenInterface(const std::string& id);

 private:
  [[nodiscard]] const InterfaceEntry& Find(const std::string& id) const;

  std::vector<InterfaceEntry> interfaces_;
  bool listed_ = false;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_TREE_H
