#include "expected_lines.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

namespace {

// A value of a line: a text for %s, or a handle for %p.
class Value {
 public:
  Value(const char* text) : text_(text) {}  // NOLINT(google-explicit-constructor)
  Value(const void* handle) {               // NOLINT(google-explicit-constructor)
    const auto bits = std::uint64_t{reinterpret_cast<std::uintptr_t>(handle)};
    for (int shift = 60; shift >= 0; shift -= 4) {
      text_ += "0123456789ABCDEF"[(bits >> shift) & 0xF];
    }
  }

  [[nodiscard]] const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// Every % with the letter behind it stands for the next value.
std::string Line(std::string_view priority, std::string_view text,
                 std::initializer_list<Value> values) {
  std::string line(priority);
  line += ' ';
  const auto* value = values.begin();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%') {
      line += (value++)->text();
      ++i;
    } else {
      line += text[i];
    }
  }
  return line;
}

std::string Error(std::string_view text, std::initializer_list<Value> values) {
  return Line("ERROR", text, values);
}

std::string Warn(std::string_view text, std::initializer_list<Value> values) {
  return Line("WARN", text, values);
}

}  // namespace

// Each text stands on one line, as it is written.
// clang-format off

// --- Events -------------------------------------------------------------------------------------

template <>
std::string DuplicateEvent<vextrel::BufferNode>(const char* type, const void* handle) {
  return Error("The event type %s has already been registered on buffer with handle 0x%p", {type, handle});
}

template <>
std::string DuplicateEvent<vextrel::DataStreamNode>(const char* type, const void* handle) {
  return Error("The event type %s has already been registered on datastream with handle 0x%p", {type, handle});
}

template <>
std::string DuplicateEvent<vextrel::DeviceNode>(const char* type, const void* handle) {
  return Error("The event type %s has already been registered on device with handle 0x%p", {type, handle});
}

template <>
std::string DuplicateEvent<vextrel::InterfaceNode>(const char* type, const void* handle) {
  return Error("The Event type %s has already been registered on Interface with handle 0x%p", {type, handle});
}

template <>
std::string DuplicateEvent<vextrel::TransportLayerNode>(const char* type, const void* handle) {
  return Error("The Event type %s has already been registered on TL with handle 0x%p", {type, handle});
}

template <>
std::string LeftEvent<vextrel::BufferNode>(const char* type, const void* eventHandle, const void* handle) {
  return Warn("Event type %s with handle 0x%p on Buffer 0x%p was not unregistered directly using GCUnregisterEvent()", {type, eventHandle, handle});
}

template <>
std::string LeftEvent<vextrel::DataStreamNode>(const char* /*type*/, const void* eventHandle, const void* handle) {
  return Warn("Event with handle 0x%p on DataStream 0x%p was not unregistered directly using GCUnregisterEvent()", {eventHandle, handle});
}

template <>
std::string LeftEvent<vextrel::DeviceNode>(const char* type, const void* eventHandle, const void* handle) {
  return Warn("Event type %s with handle 0x%p on device 0x%p was not unregistered directly using GCUnregisterEvent()", {type, eventHandle, handle});
}

template <>
std::string LeftEvent<vextrel::InterfaceNode>(const char* type, const void* eventHandle, const void* handle) {
  return Warn("Event type %s with handle 0x%p on interface 0x%p was not unregistered directly using GCUnregisterEvent()", {type, eventHandle, handle});
}

template <>
std::string LeftEvent<vextrel::TransportLayerNode>(const char* type, const void* eventHandle, const void* handle) {
  return Warn("Event type %s with handle 0x%p on Transport Layer 0x%p was not unregistered directly using GCUnregisterEvent()", {type, eventHandle, handle});
}

std::string EventSourceNotFound(const char* type, const void* source) {
  return Error("The Event type %s has not been registered since the handle 0x%p has not been found on any Interface", {type, source});
}

std::string EventNotOnTl(const char* type, const void* tl) {
  return Error("Unable to remove Event type %s on TL 0x%p! Event was not added or already removed!", {type, tl});
}

std::string EventNotOnAnyInterface(const char* type, const void* source) {
  return Error("Unable to remove Event type %s on TL 0x%p! Event was not found on any Interface!", {type, source});
}

// --- Data stream --------------------------------------------------------------------------------

std::string BufferAlreadyAdded(const void* buffer, const void* dataStream) {
  return Error("Buffer object with the handle 0x%p has already been added on DataStream with handle 0x%p", {buffer, dataStream});
}

std::string BufferNotDefined(const void* buffer, const void* dataStream) {
  return Error("Buffer object with the handle 0x%p is not defined on DataStream with handle 0x%p", {buffer, dataStream});
}

std::string BufferNotRevoked(const void* buffer, const void* dataStream) {
  return Error("Buffer with handle 0x%p on DataStream 0x%p was not revoked properly using DSRevokeBuffer()", {buffer, dataStream});
}

// --- Device -------------------------------------------------------------------------------------

std::string DataStreamAlreadyAdded(const void* dataStream, const void* device) {
  return Error("DataStream object with the handle 0x%p has already been added on Device with handle 0x%p", {dataStream, device});
}

std::string DataStreamNotDefined(const void* dataStream, const void* device) {
  return Error("DataStream object with the handle 0x%p is not defined on Device with handle 0x%p", {dataStream, device});
}

std::string DataStreamNotClosed(const void* dataStream, const void* device) {
  return Error("DataStream with handle 0x%p on Device 0x%p was not closed properly using DSClose()", {dataStream, device});
}

std::string DeviceCannotAddBuffer(const void* buffer, const void* dataStream, const void* device) {
  return Error("Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Device 0x%p was not found!", {buffer, dataStream, device});
}

std::string DeviceCannotRemoveBuffer(const void* buffer, const void* device) {
  return Error("Unable to remove Buffer with handle 0x%p on any DataStream on Device 0x%p!", {buffer, device});
}

// --- Interface ----------------------------------------------------------------------------------

std::string DeviceAlreadyAdded(const void* device, const void* iface) {
  return Error("Device object with the handle 0x%p has already been added on Interface with handle 0x%p", {device, iface});
}

std::string DeviceNotDefined(const void* device, const void* iface) {
  return Error("Device object with the handle 0x%p is not defined on Interface with handle 0x%p", {device, iface});
}

std::string DeviceNotClosed(const void* device, const void* iface) {
  return Error("Device with handle 0x%p on interface 0x%p was not closed properly using DevClose()", {device, iface});
}

std::string InterfaceCannotAddDataStream(const void* dataStream, const void* device, const void* iface) {
  return Error("Unable to add DataStream with handle 0x%p! Device with handle 0x%p on Interface 0x%p was not found!", {dataStream, device, iface});
}

std::string InterfaceCannotRemoveDataStream(const void* dataStream, const void* iface) {
  return Error("Unable to remove DataStream with handle 0x%p on any Device on Interface 0x%p!", {dataStream, iface});
}

std::string InterfaceCannotAddBuffer(const void* buffer, const void* dataStream, const void* iface) {
  return Error("Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Interface 0x%p was not found!", {buffer, dataStream, iface});
}

std::string InterfaceCannotRemoveBuffer(const void* buffer, const void* iface) {
  return Error("Unable to remove Buffer with handle 0x%p on any Device on Interface 0x%p!", {buffer, iface});
}

// --- Transport layer ----------------------------------------------------------------------------

std::string InterfaceAlreadyAdded(const void* iface, const void* tl) {
  return Error("Interface object with the handle 0x%p has already been added on TL with handle 0x%p", {iface, tl});
}

std::string InterfaceNotDefined(const void* iface, const void* tl) {
  return Error("Interface object with the handle 0x%p is not defined on TL with handle 0x%p", {iface, tl});
}

std::string InterfaceNotClosed(const void* iface, const void* tl) {
  return Error("Interface with handle 0x%p on TL 0x%p was not closed properly using IFClose()", {iface, tl});
}

std::string TlCannotAddDevice(const void* device, const void* iface, const void* tl) {
  return Error("Unable to add Device with handle 0x%p! Interface with handle 0x%p on TL 0x%p was not found!", {device, iface, tl});
}

std::string TlCannotRemoveDevice(const void* device, const void* tl) {
  return Error("Unable to remove Device with handle 0x%p on any Interface on TL 0x%p!", {device, tl});
}

std::string TlCannotAddDataStream(const void* dataStream, const void* device, const void* tl) {
  return Error("Unable to add DataStream with handle 0x%p! Device with handle 0x%p on TL 0x%p was not found!", {dataStream, device, tl});
}

std::string TlCannotRemoveDataStream(const void* dataStream, const void* tl) {
  return Error("Unable to remove DataStream with handle 0x%p on any Interface on TL 0x%p!", {dataStream, tl});
}

std::string TlCannotAddBuffer(const void* buffer, const void* dataStream, const void* tl) {
  return Error("Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on TL 0x%p was not found!", {buffer, dataStream, tl});
}

std::string TlCannotRemoveBuffer(const void* buffer, const void* tl) {
  return Error("Unable to remove Buffer with handle 0x%p on any Interface on TL 0x%p!", {buffer, tl});
}

// clang-format on
