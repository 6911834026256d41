#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_INTERFACE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_INTERFACE_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "device.h"
#include "module.h"
#include "settings.h"

namespace simcam {

// An interface as the transport layer lists it, open or not.
struct InterfaceEntry {
  std::string id;
  std::string displayName;
  std::vector<DeviceEntry> devices;
};

[[nodiscard]] InfoValue InterfaceInfo(const InterfaceEntry& interface, INTERFACE_INFO_CMD command);

// An open interface. To be used with the library's tree lock held, as far as Module does not say
// otherwise.
class Interface : public Module {
 public:
  Interface(const InterfaceEntry& entry, std::weak_ptr<Module> transportLayer);

  [[nodiscard]] const InterfaceEntry& Entry() const noexcept { return entry_; }

  // Returns true if the list has changed, as it does the first time: it is empty until then.
  bool UpdateDeviceList();
  [[nodiscard]] std::span<const DeviceEntry> DeviceList() const;

  // These need no list. They throw GC_ERR_INVALID_ID.
  [[nodiscard]] InfoValue InfoOfDevice(const std::string& id, DEVICE_INFO_CMD command) const;
  // Throws GC_ERR_ACCESS_DENIED, GC_ERR_RESOURCE_IN_USE or, for impossible flags,
  // GC_ERR_INVALID_PARAMETER, too.
  [[nodiscard]] std::shared_ptr<Device> OpenDevice(const std::string& id, DEVICE_ACCESS_FLAGS flags,
                                                   const Settings& settings, HandleTable& handles);

 private:
  [[nodiscard]] const DeviceEntry& Find(const std::string& id) const;

  const InterfaceEntry entry_;
  bool listed_ = false;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_INTERFACE_H
