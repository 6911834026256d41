// SPDX-License-Identifier: MIT
#include "calllog/value_names.h"

#include <cstdint>

#include "calllog/always_inline.h"
#include "calllog/digits.h"
#include "calllog/value_tables.h"

namespace vextrel {
namespace {

RenderedText NameBeyondRun(std::int32_t value, const ValueTable& table) {
  if (value == kCustomId && !table.custom.empty()) {
    return RenderedText::Name(table.custom);
  }
  return {table.unknown, Digits::Decimal(value).view(), ")"};
}

VEXTREL_ALWAYS_INLINE RenderedText NameOf(std::int32_t value, const ValueTable& table) {
  if (value >= 0 && static_cast<std::size_t>(value) < table.run.size()) {
    return RenderedText::Name(table.run[static_cast<std::size_t>(value)]);
  }
  return NameBeyondRun(value, table);
}

}  // namespace

RenderedText TableName(std::int32_t value, const ValueTable& table) {
  return NameOf(value, table);
}

RenderedText GcErrorName(GC_ERROR value) {
  if (value == GC_ERR_SUCCESS) {
    return RenderedText::Name(names::kGcErrorSuccess);
  }
  if (value == GC_ERR_CUSTOM_ID) {
    return RenderedText::Name(names::kGcErrorCustomId);
  }
  if (value > GC_ERR_ERROR || value < GC_ERR_INVALID_ADDRESS) {
    return {names::kGcErrorUnknown, Digits::Decimal(value).view(), ")"};
  }
  return RenderedText::Name(names::kGcErrorRun[GC_ERR_ERROR - value]);
}

RenderedText InfoDatatypeName(INFO_DATATYPE value) {
  return NameOf(value, names::kInfoDatatype);
}

RenderedText TlInfoCmdName(TL_INFO_CMD value) {
  return NameOf(value, names::kTlInfoCmd);
}

RenderedText InterfaceInfoCmdName(INTERFACE_INFO_CMD value) {
  return NameOf(value, names::kInterfaceInfoCmd);
}

RenderedText DeviceInfoCmdName(DEVICE_INFO_CMD value) {
  return NameOf(value, names::kDeviceInfoCmd);
}

RenderedText DeviceAccessFlagsName(DEVICE_ACCESS_FLAGS value) {
  return NameOf(value, names::kDeviceAccessFlags);
}

RenderedText DeviceAccessStatusName(DEVICE_ACCESS_STATUS value) {
  return NameOf(value, names::kDeviceAccessStatus);
}

RenderedText StreamInfoCmdName(STREAM_INFO_CMD value) {
  return NameOf(value, names::kStreamInfoCmd);
}

RenderedText BufferInfoCmdName(BUFFER_INFO_CMD value) {
  return NameOf(value, names::kBufferInfoCmd);
}

RenderedText AcqStartFlagsName(ACQ_START_FLAGS value) {
  return NameOf(value, names::kAcqStartFlags);
}

RenderedText AcqStopFlagsName(ACQ_STOP_FLAGS value) {
  return NameOf(value, names::kAcqStopFlags);
}

RenderedText AcqQueueTypeName(ACQ_QUEUE_TYPE value) {
  return NameOf(value, names::kAcqQueueType);
}

RenderedText UrlInfoCmdName(URL_INFO_CMD value) {
  return NameOf(value, names::kUrlInfoCmd);
}

RenderedText PortInfoCmdName(PORT_INFO_CMD value) {
  return NameOf(value, names::kPortInfoCmd);
}

RenderedText EventTypeName(EVENT_TYPE value) {
  return NameOf(value, names::kEventType);
}

RenderedText EventInfoCmdName(EVENT_INFO_CMD value) {
  return NameOf(value, names::kEventInfoCmd);
}

RenderedText EventDataInfoCmdName(EVENT_DATA_INFO_CMD value) {
  return NameOf(value, names::kEventDataInfoCmd);
}

}  // namespace vextrel
