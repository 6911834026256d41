#include "transport_layer.h"

#include <algorithm>
#include <utility>

#include "platform.h"

namespace simcam {
namespace {

constexpr std::string_view kId = "VextrelSimulatedCamera";
constexpr ModuleKind kTransportLayerKind{"TLSystem", "TLPort", "TLID"};
constexpr uint32_t kInterfaces = 2;

// A consumer that tries all devices then meets one that refuses, and still finds others.
constexpr uint32_t kDevicesForARefusal = 3;

}  // namespace

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
        {"SimCam" + number, std::string(kModel) + " " + number,
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

}  // namespace simcam
