#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_DEVICE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_DEVICE_H

#include <memory>
#include <string>

#include "data_stream.h"
#include "module.h"
#include "remote_device.h"
#include "settings.h"

namespace simcam {

// A device as its interface lists it, open or not.
struct DeviceEntry {
  std::string id;
  std::string displayName;
  bool refuses = false;  // pretends that somebody else has it
};

[[nodiscard]] InfoValue DeviceInfo(const DeviceEntry& device, DEVICE_ACCESS_STATUS status,
                                   DEVICE_INFO_CMD command);

// An open device: the local end of a camera with one data stream.
class Device : public Module {
 public:
  Device(const DeviceEntry& entry, std::weak_ptr<Module> interface, bool writable);

  // To be called once, before anybody else knows the device: gives it its camera.
  void Connect(const Settings& settings, HandleTable& handles);

  [[nodiscard]] InfoValue Info(DEVICE_INFO_CMD command) const;
  [[nodiscard]] const std::shared_ptr<RemoteDevice>& Camera() const noexcept { return camera_; }

  [[nodiscard]] std::string StreamId() const { return Id() + "-Stream0"; }
  // With the library's tree lock held. Throws GC_ERR_INVALID_ID or GC_ERR_RESOURCE_IN_USE.
  [[nodiscard]] std::shared_ptr<DataStream> OpenStream(const std::string& id);

 private:
  const DeviceEntry entry_;
  const bool writable_;
  std::shared_ptr<RemoteDevice> camera_;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_DEVICE_H
