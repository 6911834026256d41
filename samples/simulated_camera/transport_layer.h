#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_TRANSPORT_LAYER_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_TRANSPORT_LAYER_H

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "interface.h"
#include "module.h"
#include "settings.h"

namespace simcam {

[[nodiscard]] InfoValue TransportLayerInfo(TL_INFO_CMD command);

// The open transport layer, with two interfaces that share the devices: SimCam0 is on SimIface0,
// SimCam1 on SimIface1, SimCam2 on SimIface0 and so on. To be used with the library's tree lock
// held, as far as Module does not say otherwise.
class TransportLayer : public Module {
 public:
  explicit TransportLayer(const Settings& settings);

  // Returns true if the list has changed, as it does the first time: it is empty until then.
  bool UpdateInterfaceList();
  [[nodiscard]] std::span<const InterfaceEntry> InterfaceList() const;

  // These need no list. They throw GC_ERR_INVALID_ID.
  [[nodiscard]] InfoValue InfoOfInterface(const std::string& id, INTERFACE_INFO_CMD command) const;
  // Throws GC_ERR_RESOURCE_IN_USE, too.
  [[nodiscard]] std::shared_ptr<Interface> OpenInterface(const std::string& id);

 private:
  [[nodiscard]] const InterfaceEntry& Find(const std::string& id) const;

  std::vector<InterfaceEntry> interfaces_;
  bool listed_ = false;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_TRANSPORT_LAYER_H
