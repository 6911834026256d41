// SPDX-License-Identifier: MIT
#include "registry/device_node.h"

#include "calllog/line_log.h"
#include "calllog/log_text.h"
#include "calllog/value_names.h"

namespace vextrel {

bool DeviceNode::AddDataStream(DS_HANDLE dsHandle) {
  if (!AddRecord(dataStreams, dsHandle, logger)) {
    ReportError(*logger, report::kDataStreamAddedTwice, dsHandle, handle);
  }
  return true;
}

bool DeviceNode::RemoveDataStream(DS_HANDLE dsHandle) {
  const auto dataStream = TakeRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    ReportError(*logger, report::kDataStreamNotDefined, dsHandle, handle);
    return false;
  }
  dataStream->ReportBuffers();
  dataStream->ReportEvents();
  return true;
}

void DeviceNode::ReportDataStreams() const {
  for (const DataStreamNode* dataStream : dataStreams) {
    ReportError(*logger, report::kDataStreamLeftOpen, dataStream->handle, handle);
  }
}

bool DeviceNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  DataStreamNode* dataStream = FindRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    ReportError(*logger, report::kBufferNotAddedOnDevice, bufferHandle, dsHandle, handle);
    return false;
  }
  return dataStream->AddBuffer(bufferHandle);
}

bool DeviceNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  DataStreamNode* dataStream = FindRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    // Kept: 60.
    ReportError(*logger, report::kBufferNotRemovedOnDevice, bufferHandle, handle);
    return false;
  }
  return dataStream->RemoveBuffer(bufferHandle);
}

bool DeviceNode::SetBufferQueued(BUFFER_HANDLE bufferHandle, bool queued) {
  return OfferInOrder(dataStreams, [&](DataStreamNode& dataStream) {
    return dataStream.SetBufferQueued(bufferHandle, queued);
  });
}

void DeviceNode::OnFlushQueue(DS_HANDLE dsHandle, ACQ_QUEUE_TYPE operation) {
  DataStreamNode* dataStream = FindRecord(dataStreams, dsHandle);
  if (dataStream != nullptr) {
    dataStream->OnFlushQueue(operation);
  }
}

void DeviceNode::ReportDuplicateEvent(EVENT_TYPE eventType) const {
  ReportError(*logger, report::kEventAddedTwiceOnDevice, EventTypeName(eventType), handle);
}

void DeviceNode::ReportEvent(const EventRegistration& registration) const {
  ReportWarn(*logger, report::kEventLeftOnDevice, EventTypeName(registration.eventType),
             registration.eventHandle, handle);
}

}  // namespace vextrel
