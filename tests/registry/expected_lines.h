// The lines that the handle registry is to write, each with its priority in front.
//
// Their texts are typed here once; the values come in the order of the text.
#ifndef VEXTREL_TESTS_REGISTRY_EXPECTED_LINES_H
#define VEXTREL_TESTS_REGISTRY_EXPECTED_LINES_H

#include <string>

namespace vextrel {
class BufferNode;
class DataStreamNode;
class DeviceNode;
class InterfaceNode;
class TransportLayerNode;
}  // namespace vextrel

// --- Events -------------------------------------------------------------------------------------

// A type that is registered on that record already.
template <typename Node>
[[nodiscard]] std::string DuplicateEvent(const char* type, const void* handle);

// A registration left behind. The data stream's line has no type; the argument is ignored there.
template <typename Node>
[[nodiscard]] std::string LeftEvent(const char* type, const void* eventHandle, const void* handle);

template <>
std::string DuplicateEvent<vextrel::BufferNode>(const char* type, const void* handle);
template <>
std::string DuplicateEvent<vextrel::DataStreamNode>(const char* type, const void* handle);
template <>
std::string DuplicateEvent<vextrel::DeviceNode>(const char* type, const void* handle);
template <>
std::string DuplicateEvent<vextrel::InterfaceNode>(const char* type, const void* handle);
template <>
std::string DuplicateEvent<vextrel::TransportLayerNode>(const char* type, const void* handle);

template <>
std::string LeftEvent<vextrel::BufferNode>(const char* type, const void* eventHandle,
                                           const void* handle);
template <>
std::string LeftEvent<vextrel::DataStreamNode>(const char* type, const void* eventHandle,
                                               const void* handle);
template <>
std::string LeftEvent<vextrel::DeviceNode>(const char* type, const void* eventHandle,
                                           const void* handle);
template <>
std::string LeftEvent<vextrel::InterfaceNode>(const char* type, const void* eventHandle,
                                              const void* handle);
template <>
std::string LeftEvent<vextrel::TransportLayerNode>(const char* type, const void* eventHandle,
                                                   const void* handle);

[[nodiscard]] std::string EventSourceNotFound(const char* type, const void* source);
[[nodiscard]] std::string EventNotOnTl(const char* type, const void* tl);
[[nodiscard]] std::string EventNotOnAnyInterface(const char* type, const void* source);

// --- Data stream --------------------------------------------------------------------------------

[[nodiscard]] std::string BufferAlreadyAdded(const void* buffer, const void* dataStream);
[[nodiscard]] std::string BufferNotDefined(const void* buffer, const void* dataStream);
[[nodiscard]] std::string BufferNotRevoked(const void* buffer, const void* dataStream);

// --- Device -------------------------------------------------------------------------------------

[[nodiscard]] std::string DataStreamAlreadyAdded(const void* dataStream, const void* device);
[[nodiscard]] std::string DataStreamNotDefined(const void* dataStream, const void* device);
[[nodiscard]] std::string DataStreamNotClosed(const void* dataStream, const void* device);
[[nodiscard]] std::string DeviceCannotAddBuffer(const void* buffer, const void* dataStream,
                                                const void* device);
[[nodiscard]] std::string DeviceCannotRemoveBuffer(const void* buffer, const void* device);

// --- Interface ----------------------------------------------------------------------------------

[[nodiscard]] std::string DeviceAlreadyAdded(const void* device, const void* iface);
[[nodiscard]] std::string DeviceNotDefined(const void* device, const void* iface);
[[nodiscard]] std::string DeviceNotClosed(const void* device, const void* iface);
[[nodiscard]] std::string InterfaceCannotAddDataStream(const void* dataStream, const void* device,
                                                       const void* iface);
[[nodiscard]] std::string InterfaceCannotRemoveDataStream(const void* dataStream,
                                                          const void* iface);
[[nodiscard]] std::string InterfaceCannotAddBuffer(const void* buffer, const void* dataStream,
                                                   const void* iface);
[[nodiscard]] std::string InterfaceCannotRemoveBuffer(const void* buffer, const void* iface);

// --- Transport layer ----------------------------------------------------------------------------

[[nodiscard]] std::string InterfaceAlreadyAdded(const void* iface, const void* tl);
[[nodiscard]] std::string InterfaceNotDefined(const void* iface, const void* tl);
[[nodiscard]] std::string InterfaceNotClosed(const void* iface, const void* tl);
[[nodiscard]] std::string TlCannotAddDevice(const void* device, const void* iface, const void* tl);
[[nodiscard]] std::string TlCannotRemoveDevice(const void* device, const void* tl);
[[nodiscard]] std::string TlCannotAddDataStream(const void* dataStream, const void* device,
                                                const void* tl);
[[nodiscard]] std::string TlCannotRemoveDataStream(const void* dataStream, const void* tl);
[[nodiscard]] std::string TlCannotAddBuffer(const void* buffer, const void* dataStream,
                                            const void* tl);
[[nodiscard]] std::string TlCannotRemoveBuffer(const void* buffer, const void* tl);

#endif  // VEXTREL_TESTS_REGISTRY_EXPECTED_LINES_H
