#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "event_queue.h"
#include "handle_table.h"
#include "info_value.h"
#include "register_map.h"

namespace simcam {

inline constexpr std::string_view kVendor = "Vextrel";
inline constexpr std::string_view kModel = "Simulated Camera";
inline constexpr std::string_view kTransportType = "Custom";
inline constexpr std::string_view kVersion = "1.0.0";

// What a kind of module is called where ports are described.
struct ModuleKind {
  std::string_view name;       // PORT_INFO_MODULE
  std::string_view portName;   // PORT_INFO_PORTNAME
  std::string_view idFeature;  // the feature that holds the ID of one of our own modules
};

struct PortRegisters {
  RegisterMap map;
  std::string url;  // where the description lies in the map
};

// The URL of a description of `size` bytes that lies at `address` of a register map.
[[nodiscard]] std::string LocalUrl(std::string_view name, uint64_t address, size_t size);

// A module of the producer: a node in the tree of what is open, a port and a source of events.
//
// The tree (Adopt, Closed, HasOpenChild, Close) is guarded by the lock of the library, which the
// caller holds. Everything else is thread-safe.
class Module : public Object, public std::enable_shared_from_this<Module> {
 public:
  // A module whose registers hold its ID and its description.
  Module(const ModuleKind& kind, const std::string& id, std::weak_ptr<Module> parent);
  Module(const ModuleKind& kind, std::string id, std::weak_ptr<Module> parent,
         PortRegisters registers);

  [[nodiscard]] const std::string& Id() const noexcept { return id_; }

  [[nodiscard]] InfoValue PortInfo(PORT_INFO_CMD command) const;
  [[nodiscard]] const std::string& Url() const noexcept { return url_; }
  [[nodiscard]] InfoValue UrlInfo(URL_INFO_CMD command) const;
  // Throw as RegisterMap does.
  void Read(uint64_t address, void* buffer, size_t size) const;
  virtual void Write(uint64_t address, const void* data, size_t size);

  // Throws GC_ERR_NOT_IMPLEMENTED for events that this module never has, GC_ERR_RESOURCE_IN_USE
  // for one registered before.
  [[nodiscard]] std::shared_ptr<EventQueue> RegisterEvent(EVENT_TYPE type);
  // Ends every wait for it. Throws GC_ERR_NOT_AVAILABLE if it is not registered.
  [[nodiscard]] std::shared_ptr<EventQueue> UnregisterEvent(EVENT_TYPE type);
  // Hands an event to who registered it, here and at the modules above.
  void Fire(EVENT_TYPE type, const Event& event);

  void Adopt(const std::shared_ptr<Module>& child);
  [[nodiscard]] bool Closed() const noexcept { return closed_; }
  [[nodiscard]] bool HasOpenChild(std::string_view id) const;
  // Closes the children first, then ends what runs here and takes the handles back.
  void Close(HandleTable& handles);

 protected:
  [[nodiscard]] virtual bool Writable() const { return false; }
  // The queue for a new registration, null if this module has no such event.
  [[nodiscard]] virtual std::shared_ptr<EventQueue> QueueFor(EVENT_TYPE type);
  // Called when a registration has ended.
  virtual void QueueClosed(EVENT_TYPE /*type*/) {}
  // Called by Close before anything else happens.
  virtual void BeforeClose() {}

  mutable std::mutex registerMutex_;
  RegisterMap registers_;

 private:
  const ModuleKind kind_;
  const std::string id_;
  const std::string url_;
  const std::weak_ptr<Module> parent_;

  mutable std::mutex eventMutex_;
  std::map<EVENT_TYPE, std::shared_ptr<EventQueue>> events_;

  std::vector<std::weak_ptr<Module>> children_;
  bool closed_ = false;
};

}  // namespace simcam

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H
