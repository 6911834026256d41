// SPDX-License-Identifier: MIT
#include "module.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "xml.h"

namespace simulated_camera {
namespace {

constexpr size_t kIdSize = 64;
constexpr uint64_t kModuleXmlAddress = 0x1000;

constexpr int32_t kUrlSchemeLocal = 0;

PortRegisters OwnRegisters(const ModuleKind& kind, std::string_view id) {
  const std::string xml = ModuleXml(kind.name, kind.portName, kind.idFeature, kIdSize);
  PortRegisters registers;
  registers.map.AddText(kind.idFeature, 0, kIdSize, id);
  registers.map.AddText("the description", kModuleXmlAddress, xml.size(), xml);
  registers.description = {std::string(kind.name) + ".xml", kModuleXmlAddress, xml.size()};
  return registers;
}

}  // namespace

std::string Description::Url() const {
  const auto hex = [](uint64_t number) {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number, 16).ptr;
    return std::string(digits, end);
  };
  return "local:" + fileName + ";" + hex(address) + ";" + hex(size);
}

Module::Module(const ModuleKind& kind, const std::string& id, std::weak_ptr<Module> parent)
    : Module(kind, id, std::move(parent), OwnRegisters(kind, id)) {}

Module::Module(const ModuleKind& kind, std::string id, std::weak_ptr<Module> parent,
               PortRegisters registers)
    : registers_(std::move(registers.map)),
      kind_(kind),
      id_(std::move(id)),
      description_(std::move(registers.description)),
      parent_(std::move(parent)) {}

InfoValue Module::PortInfo(PORT_INFO_CMD command) const {
  switch (command) {
    case PORT_INFO_ID:
      return InfoValue::Text(id_);
    case PORT_INFO_VENDOR:
      return InfoValue::Text(kVendor);
    case PORT_INFO_MODEL:
      return InfoValue::Text(kModel);
    case PORT_INFO_TLTYPE:
      return InfoValue::Text(kTransportType);
    case PORT_INFO_MODULE:
      return InfoValue::Text(kind_.name);
    case PORT_INFO_LITTLE_ENDIAN:
    case PORT_INFO_ACCESS_READ:
      return InfoValue::Bool(true);
    case PORT_INFO_ACCESS_WRITE:
      return InfoValue::Bool(Writable());
    case PORT_INFO_BIG_ENDIAN:
    case PORT_INFO_ACCESS_NA:
    case PORT_INFO_ACCESS_NI:
      return InfoValue::Bool(false);
    case PORT_INFO_VERSION:
      return InfoValue::Text(kVersion);
    case PORT_INFO_PORTNAME:
      return InfoValue::Text(kind_.portName);
    default:
      RefuseCommand(command);
  }
}

InfoValue Module::UrlInfo(URL_INFO_CMD command) const {
  switch (command) {
    case URL_INFO_URL:
      return InfoValue::Text(Url());
    case URL_INFO_SCHEMA_VER_MAJOR:
    case URL_INFO_SCHEMA_VER_MINOR:
    case URL_INFO_FILE_VER_MAJOR:
      return InfoValue::Int32(1);
    case URL_INFO_FILE_VER_MINOR:
    case URL_INFO_FILE_VER_SUBMINOR:
      return InfoValue::Int32(0);
    case URL_INFO_FILE_SHA1_HASH:
      NothingToTell(command);
    case URL_INFO_FILE_REGISTER_ADDRESS:
      return InfoValue::UInt64(description_.address);
    case URL_INFO_FILE_SIZE:
      return InfoValue::UInt64(description_.size);
    case URL_INFO_SCHEME:
      return InfoValue::Int32(kUrlSchemeLocal);
    case URL_INFO_FILENAME:
      return InfoValue::Text(description_.fileName);
    default:
      RefuseCommand(command);
  }
}

void Module::Read(uint64_t address, void* buffer, size_t size) const {
  const std::scoped_lock lock(registerMutex_);
  registers_.Read(address, buffer, size);
}

void Module::Write(uint64_t address, const void* data, size_t size) {
  const std::scoped_lock lock(registerMutex_);
  static_cast<void>(registers_.WriteTarget(address, size));
  registers_.Store(address, data, size);
}

std::shared_ptr<EventQueue> Module::RegisterEvent(EVENT_TYPE type) {
  const std::scoped_lock lock(eventMutex_);
  if (events_.contains(type)) {
    throw Failure(GC_ERR_RESOURCE_IN_USE, "the event is registered already");
  }
  auto queue = QueueFor(type);
  if (queue == nullptr) {
    throw Failure(GC_ERR_NOT_IMPLEMENTED, "a " + std::string(kind_.name) + " has no such event");
  }
  events_.emplace(type, queue);
  return queue;
}

std::shared_ptr<EventQueue> Module::UnregisterEvent(EVENT_TYPE type) {
  const std::scoped_lock lock(eventMutex_);
  const auto found = events_.find(type);
  if (found == events_.end()) {
    throw Failure(GC_ERR_NOT_AVAILABLE, "the event is not registered");
  }
  auto queue = found->second;
  events_.erase(found);
  queue->Close();
  QueueClosed(type);
  return queue;
}

void Module::Fire(EVENT_TYPE type, const Event& event) {
  {
    const std::scoped_lock lock(eventMutex_);
    if (const auto found = events_.find(type); found != events_.end()) {
      found->second->Push(event);
    }
  }
  if (const auto parent = parent_.lock()) {
    parent->Fire(type, event);
  }
}

std::shared_ptr<EventQueue> Module::QueueFor(EVENT_TYPE type) {
  switch (type) {
    case EVENT_ERROR:
    case EVENT_FEATURE_INVALIDATE:
    case EVENT_FEATURE_CHANGE:
      return std::make_shared<EventQueue>(type);
    default:
      return nullptr;
  }
}

void Module::Adopt(const std::shared_ptr<Module>& child) {
  std::erase_if(children_, [](const auto& former) { return former.expired(); });
  children_.push_back(child);
}

std::shared_ptr<Module> Module::OpenChild(std::string_view id) const {
  for (const std::weak_ptr<Module>& weak : children_) {
    auto child = weak.lock();
    if (child != nullptr && !child->Closed() && child->id_ == id) {
      return child;
    }
  }
  return nullptr;
}

void* Module::ParentHandle() const {
  const auto parent = parent_.lock();
  if (parent == nullptr) {
    throw Failure(GC_ERR_INVALID_HANDLE, "the parent has been closed");
  }
  return parent->Handle();
}

void Module::Close(HandleTable& handles) {
  if (std::exchange(closed_, true)) {
    return;
  }
  BeforeClose();
  for (const std::weak_ptr<Module>& weak : children_) {
    if (const auto child = weak.lock()) {
      child->Close(handles);
    }
  }
  std::map<EVENT_TYPE, std::shared_ptr<EventQueue>> events;
  {
    const std::scoped_lock lock(eventMutex_);
    events.swap(events_);
  }
  for (const auto& [type, queue] : events) {
    queue->Close();
    handles.Remove(queue->Handle());
  }
  handles.Remove(Handle());
}

}  // namespace simulated_camera
