#include "registry/device_node.h"

#include "calllog/line_log.h"
#include "calllog/value_names.h"

namespace vextrel {

bool DeviceNode::AddDataStream(DS_HANDLE dsHandle) {
  if (!AddRecord(dataStreams, dsHandle, logger)) {
    LogError(*logger,
             "DataStream object with the handle 0x%p has already been added on Device with handle "
             "0x%p",
             dsHandle, handle);
  }
  return true;
}

bool DeviceNode::RemoveDataStream(DS_HANDLE dsHandle) {
  const auto dataStream = TakeRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    LogError(*logger,
             "DataStream object with the handle 0x%p is not defined on Device with handle 0x%p",
             dsHandle, handle);
    return false;
  }
  dataStream->ReportBuffers();
  dataStream->ReportEvents();
  return true;
}

void DeviceNode::ReportDataStreams() const {
  for (const DataStreamNode* dataStream : dataStreams) {
    LogError(*logger,
             "DataStream with handle 0x%p on Device 0x%p was not closed properly using DSClose()",
             dataStream->handle, handle);
  }
}

bool DeviceNode::AddBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  DataStreamNode* dataStream = FindRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    LogError(*logger,
             "Unable to add Buffer with handle 0x%p! DataStream with handle 0x%p on Device 0x%p "
             "was not found!",
             bufferHandle, dsHandle, handle);
    return false;
  }
  return dataStream->AddBuffer(bufferHandle);
}

bool DeviceNode::RemoveBuffer(DS_HANDLE dsHandle, BUFFER_HANDLE bufferHandle) {
  DataStreamNode* dataStream = FindRecord(dataStreams, dsHandle);
  if (dataStream == nullptr) {
    // "any DataStream" is the line's wording; only the one named was looked for.
    LogError(*logger, "Unable to remove Buffer with handle 0x%p on any DataStream on Device 0x%p!",
             bufferHandle, handle);
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
  LogError(*logger, "The event type %s has already been registered on device with handle 0x%p",
           EventTypeName(eventType), handle);
}

void DeviceNode::ReportEvent(const EventRegistration& registration) const {
  LogWarn(*logger,
          "Event type %s with handle 0x%p on device 0x%p was not unregistered directly using "
          "GCUnregisterEvent()",
          EventTypeName(registration.eventType), registration.eventHandle, handle);
}

}  // namespace vextrel
