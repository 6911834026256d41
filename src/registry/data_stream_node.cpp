#include "registry/data_stream_node.h"

#include <cstring>

#include "calllog/line_log.h"
#include "calllog/value_names.h"

namespace vextrel {

bool DataStreamNode::AddBuffer(BUFFER_HANDLE bufferHandle) {
  if (!AddRecord(buffers, bufferHandle, logger)) {
    LogError(*logger,
             "Buffer object with the handle 0x%p has already been added on DataStream with handle "
             "0x%p",
             bufferHandle, handle);
  }
  return true;
}

bool DataStreamNode::RemoveBuffer(BUFFER_HANDLE bufferHandle) {
  const auto buffer = TakeRecord(buffers, bufferHandle);
  if (buffer == nullptr) {
    LogError(*logger,
             "Buffer object with the handle 0x%p is not defined on DataStream with handle 0x%p",
             bufferHandle, handle);
    return false;
  }
  buffer->ReportEvents();
  return true;
}

void DataStreamNode::ReportBuffers() const {
  for (const BufferNode* buffer : buffers) {
    LogError(*logger,
             "Buffer with handle 0x%p on DataStream 0x%p was not revoked properly using "
             "DSRevokeBuffer()",
             buffer->handle, handle);
  }
}

bool DataStreamNode::SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued) {
  BufferNode* buffer = FindRecord(buffers, bufferHandle);
  if (buffer == nullptr) {
    return false;
  }
  buffer->SetQueued(queued);
  return true;
}

void DataStreamNode::OnEventData(EVENT_HANDLE eventHandle, const void* data, std::size_t size) {
  BUFFER_HANDLE delivered = nullptr;
  // Exactly one buffer handle: a longer delivery deliberately leaves the mark alone.
  if (eventHandle != lastEventHandle || size != sizeof delivered || data == nullptr) {
    return;
  }
  std::memcpy(&delivered, data, sizeof delivered);
  SetBufferQueued(delivered, false);
}

void DataStreamNode::OnFlushQueue(ACQ_QUEUE_TYPE operation) {
  if (operation != ACQ_QUEUE_ALL_DISCARD) {
    return;
  }
  for (BufferNode* buffer : buffers) {
    buffer->SetQueued(false);
  }
}

bool DataStreamNode::AddEvent(EVENTSRC_HANDLE source, EVENT_TYPE eventType,
                              EVENT_HANDLE eventHandle) {
  if (!EventOperations::AddEvent(source, eventType, eventHandle)) {
    return false;
  }
  if (source == handle) {
    lastEventHandle = eventHandle;
  }
  return true;
}

void DataStreamNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  LogError(*logger, "The event type %s has already been registered on datastream with handle 0x%p",
           EventTypeName(eventType), handle);
}

void DataStreamNode::ReportEvent(const EventRegistration& registration) const {
  // Without the type, unlike the other levels, on purpose.
  LogWarn(*logger,
          "Event with handle 0x%p on DataStream 0x%p was not unregistered directly using "
          "GCUnregisterEvent()",
          registration.eventHandle, handle);
}

}  // namespace vextrel
