// SPDX-License-Identifier: MIT
// The symbolic names of GenTL values.
//
// A value that its table (value_tables.h) lacks prints as "(Unknown TYPE: number)". All functions
// are pure and thread-safe.
#ifndef VEXTREL_CALLLOG_VALUE_NAMES_H
#define VEXTREL_CALLLOG_VALUE_NAMES_H

#include <cstdint>

#include "calllog/rendered_text.h"
#include "calllog/value_tables.h"
#include "gentl/gentl.h"

namespace vextrel {

[[nodiscard]] RenderedText GcErrorName(GC_ERROR value);
[[nodiscard]] RenderedText InfoDatatypeName(INFO_DATATYPE value);
[[nodiscard]] RenderedText TlInfoCmdName(TL_INFO_CMD value);
[[nodiscard]] RenderedText InterfaceInfoCmdName(INTERFACE_INFO_CMD value);
[[nodiscard]] RenderedText DeviceInfoCmdName(DEVICE_INFO_CMD value);
[[nodiscard]] RenderedText DeviceAccessFlagsName(DEVICE_ACCESS_FLAGS value);
[[nodiscard]] RenderedText DeviceAccessStatusName(DEVICE_ACCESS_STATUS value);  // Kept: 20.
[[nodiscard]] RenderedText StreamInfoCmdName(STREAM_INFO_CMD value);
[[nodiscard]] RenderedText BufferInfoCmdName(BUFFER_INFO_CMD value);
[[nodiscard]] RenderedText AcqStartFlagsName(ACQ_START_FLAGS value);
[[nodiscard]] RenderedText AcqStopFlagsName(ACQ_STOP_FLAGS value);
[[nodiscard]] RenderedText AcqQueueTypeName(ACQ_QUEUE_TYPE value);
[[nodiscard]] RenderedText UrlInfoCmdName(URL_INFO_CMD value);
[[nodiscard]] RenderedText PortInfoCmdName(PORT_INFO_CMD value);
[[nodiscard]] RenderedText EventTypeName(EVENT_TYPE value);
[[nodiscard]] RenderedText EventInfoCmdName(EVENT_INFO_CMD value);
[[nodiscard]] RenderedText EventDataInfoCmdName(EVENT_DATA_INFO_CMD value);

// The name that `table` has for the value.
[[nodiscard]] RenderedText TableName(std::int32_t value, const ValueTable& table);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_VALUE_NAMES_H
