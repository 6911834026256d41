// SPDX-License-Identifier: MIT
#include "registry/data_stream_node.h"

#include <cstring>

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"

namespace vextrel {

bool DataStreamNode::AddBuffer(BUFFER_HANDLE bufferHandle) {
  if (!AddRecord(buffers, bufferHandle, logger)) {
    ReportError(*logger, report::kBufferAddedTwice, bufferHandle, handle);
  }
  return true;
}

bool DataStreamNode::RemoveBuffer(BUFFER_HANDLE bufferHandle) {
  const auto buffer = TakeRecord(buffers, bufferHandle);
  if (buffer == nullptr) {
    ReportError(*logger, report::kBufferNotDefined, bufferHandle, handle);
    return false;
  }
  buffer->ReportEvents();
  return true;
}

void DataStreamNode::ReportBuffers() const {
  for (const BufferNode* buffer : buffers) {
    ReportError(*logger, report::kBufferLeftAnnounced, buffer->handle, handle);
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
  // Kept: 62. Only data of exactly one buffer handle.
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
  ReportError(*logger, report::kEventAddedTwiceOnDataStream, EventTypeName(eventType), handle);
}

void DataStreamNode::ReportEvent(const EventRegistration& registration) const {
  // Kept: 58.
  ReportWarn(*logger, report::kEventLeftOnDataStream, registration.eventHandle, handle);
}

}  // namespace vextrel
