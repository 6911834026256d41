// The tree of handles that a proxy has seen opened, as one kind of record on five levels.
#ifndef VEXTREL_TESTS_SESSION_REFERENCE_REGISTRY_H
#define VEXTREL_TESTS_SESSION_REFERENCE_REGISTRY_H

#include <cstdint>
#include <list>
#include <optional>
#include <string>

#include "session/expected_log.h"
#include "session/misuse_messages.h"

namespace vextrel_test::session {

struct Registration {
  std::int32_t type;
  void* event;
};

struct Record {
  void* handle;
  std::list<Record> children;
  std::list<Registration> events;
};

// The marks of queued buffers show in no line, so there are none here.
class ReferenceRegistry {
 public:
  explicit ReferenceRegistry(ExpectedLog& log) : log_(log) {}

  [[nodiscard]] bool IsOpen() const { return root_.has_value(); }
  // Replaces an open one without a word.
  void Open(void* hTL) { root_ = Record{hTL, {}, {}}; }
  // Reports what is left on the root, and forgets everything.
  void Close();

  void AddInterface(void* hIface);
  bool RemoveInterface(void* hIface);
  void AddDevice(void* hIface, void* hDevice);
  bool RemoveDevice(void* hDevice);
  void AddDataStream(void* hDevice, void* hDataStream);
  bool RemoveDataStream(void* hDataStream);
  void AddBuffer(void* hDataStream, void* hBuffer);
  bool RemoveBuffer(void* hDataStream, void* hBuffer);

  void AddEvent(void* source, std::int32_t type, void* event);
  bool RemoveEvent(void* source, std::int32_t type);
  // Nothing without a root.
  void ReleaseEvents(void* handle);

 private:
  enum Level { TransportLayer, Interface, Device, DataStream, Buffer };

  void AddChild(Level level, Record& record, void* child);
  bool RemoveChild(Level level, Record& record, void* child);
  void ReportChildren(Level level, const Record& record);
  void ReportEvents(Level level, const Record& record);
  bool AddEventBelow(Level level, Record& record, void* source, std::int32_t type, void* event);
  bool ReleaseEventsBelow(Level level, Record& record, void* handle);

  bool AddBufferToDevice(Record& device, void* hDataStream, void* hBuffer);
  bool AddBufferToInterface(Record& interface, void* hDataStream, void* hBuffer);
  bool RemoveDataStreamFromInterface(Record& interface, void* hDataStream);
  bool RemoveBufferFromDevice(Record& device, void* hDataStream, void* hBuffer);
  bool RemoveBufferFromInterface(Record& interface, void* hDataStream, void* hBuffer);

  ExpectedLog& log_;
  std::optional<Record> root_;
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_REFERENCE_REGISTRY_H
