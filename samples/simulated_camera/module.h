// SPDX-License-Identifier: MIT
#ifndef VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H
#define VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "events.h"
#include "handle_table.h"
#include "info_value.h"
#include "register_map.h"

namespace simulated_camera {

inline constexpr std::string_view kVendor = "Vextrel";
inline constexpr std::string_view kModel = "Simulated Camera";
inline constexpr std::string_view kTransportType = "Custom";
inline constexpr std::string_view kVersion = "1.0.0";

// How ports describe a kind of module.
struct ModuleKind {
  std::string_view name;       // PORT_INFO_MODULE
  std::string_view portName;   // PORT_INFO_PORTNAME
  std::string_view idFeature;  // Empty for the remote device.
};

// Where a description lies in a register map.
struct Description {
  std::string fileName;
  uint64_t address = 0;
  size_t size = 0;

  [[nodiscard]] std::string Url() const;
};

struct PortRegisters {
  RegisterMap map;
  Description description;
};

// A GenTL module: a node in the tree of open modules, a port, and a source of events.
//
// Adopt, Closed, HasOpenChild, OpenChild and Close require the library's tree lock. Everything else
// is thread-safe.
class Module : public Object, public std::enable_shared_from_this<Module> {
 public:
  // Makes a port with two registers: the ID and the description.
  Module(const ModuleKind& kind, const std::string& id, std::weak_ptr<Module> parent);
  Module(const ModuleKind& kind, std::string id, std::weak_ptr<Module> parent,
         PortRegisters registers);

  [[nodiscard]] const std::string& Id() const noexcept { return id_; }
  // Throws GC_ERR_INVALID_HANDLE if the parent is gone.
  [[nodiscard]] void* ParentHandle() const;

  [[nodiscard]] InfoValue PortInfo(PORT_INFO_CMD command) const;
  [[nodiscard]] std::string Url() const { return description_.Url(); }
  [[nodiscard]] InfoValue UrlInfo(URL_INFO_CMD command) const;
  // These throw as RegisterMap does.
  virtual void Read(uint64_t address, void* buffer, size_t size) const;
  virtual void Write(uint64_t address, const void* data, size_t size);

  // Throws GC_ERR_NOT_IMPLEMENTED if the module has no such event, GC_ERR_RESOURCE_IN_USE if it is
  // registered already.
  [[nodiscard]] std::shared_ptr<EventQueue> RegisterEvent(EVENT_TYPE type);
  // Aborts all waits for the event. Throws GC_ERR_NOT_AVAILABLE if it is not registered.
  [[nodiscard]] std::shared_ptr<EventQueue> UnregisterEvent(EVENT_TYPE type);
  // Queues the event here and at all parents, wherever its type is registered.
  void Fire(EVENT_TYPE type, const Event& event);

  void Adopt(const std::shared_ptr<Module>& child);
  [[nodiscard]] bool Closed() const noexcept { return closed_; }
  [[nodiscard]] bool HasOpenChild(std::string_view id) const { return OpenChild(id) != nullptr; }
  // Returns null if no open child has this ID.
  [[nodiscard]] std::shared_ptr<Module> OpenChild(std::string_view id) const;
  // Closes the module and its children, and removes their handles.
  void Close(HandleTable& handles);

 protected:
  [[nodiscard]] virtual bool Writable() const { return false; }
  // Returns the queue for a new registration, or null if the module has no such event.
  [[nodiscard]] virtual std::shared_ptr<EventQueue> QueueFor(EVENT_TYPE type);
  // Called after a registration has ended.
  virtual void QueueClosed(EVENT_TYPE /*type*/) {}
  // Called first thing by Close.
  virtual void BeforeClose() {}

  // Returns access(registers), with the registers locked.
  template <class Access>
  auto WithRegisters(const Access& access) {
    const std::scoped_lock lock(registerMutex_);
    return access(registers_);
  }
  template <class Access>
  auto WithRegisters(const Access& access) const {
    const std::scoped_lock lock(registerMutex_);
    return access(registers_);
  }

 private:
  mutable std::mutex registerMutex_;
  RegisterMap registers_;
  const ModuleKind kind_;
  const std::string id_;
  const Description description_;
  const std::weak_ptr<Module> parent_;

  mutable std::mutex eventMutex_;
  std::map<EVENT_TYPE, std::shared_ptr<EventQueue>> events_;

  std::vector<std::weak_ptr<Module>> children_;
  bool closed_ = false;
};

}  // namespace simulated_camera

#endif  // VEXTREL_SAMPLES_SIMULATED_CAMERA_MODULE_H
