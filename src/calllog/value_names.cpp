#include "calllog/value_names.h"

#include <cstdint>
#include <span>
#include <string_view>

#include "calllog/always_inline.h"
#include "calllog/digits.h"

namespace vextrel {
namespace {

using namespace std::string_view_literals;
using Names = std::span<const std::string_view>;

constexpr std::int32_t kCustomId = 1000;
constexpr std::string_view kNoCustomName;

// The name of a value that is not in the run.
RenderedText OtherNameOf(std::int32_t value, std::string_view custom, std::string_view unknown) {
  if (value == kCustomId && !custom.empty()) {
    return RenderedText::Name(custom);
  }
  return {unknown, Digits::Decimal(value).view(), ")"};
}

// `run` names the values from 0 on, `custom` the value 1000 alone: vendors' values above it have no
// names.
VEXTREL_ALWAYS_INLINE RenderedText NameOf(std::int32_t value, Names run, std::string_view custom,
                                          std::string_view unknown) {
  if (value >= 0 && static_cast<std::size_t>(value) < run.size()) {
    return RenderedText::Name(run[static_cast<std::size_t>(value)]);
  }
  return OtherNameOf(value, custom, unknown);
}

constexpr std::string_view kInfoDatatypeNames[] = {
    "INFO_DATATYPE_UNKNOWN"sv, "INFO_DATATYPE_STRING"sv, "INFO_DATATYPE_STRINGLIST"sv,
    "INFO_DATATYPE_INT16"sv,   "INFO_DATATYPE_UINT16"sv, "INFO_DATATYPE_INT32"sv,
    "INFO_DATATYPE_UINT32"sv,  "INFO_DATATYPE_INT64"sv,  "INFO_DATATYPE_UINT64"sv,
    "INFO_DATATYPE_FLOAT64"sv, "INFO_DATATYPE_PTR"sv,    "INFO_DATATYPE_BOOL8"sv,
    "INFO_DATATYPE_SIZET"sv,   "INFO_DATATYPE_BUFFER"sv,
};

constexpr std::string_view kTlInfoCmdNames[] = {
    "TL_INFO_ID"sv,     "TL_INFO_VENDOR"sv, "TL_INFO_MODEL"sv,    "TL_INFO_VERSION"sv,
    "TL_INFO_TLTYPE"sv, "TL_INFO_NAME"sv,   "TL_INFO_PATHNAME"sv, "TL_INFO_DISPLAYNAME"sv,
};

constexpr std::string_view kInterfaceInfoCmdNames[] = {
    "INTERFACE_INFO_ID"sv,
    "INTERFACE_INFO_DISPLAYNAME"sv,
    "INTERFACE_INFO_TLTYPE"sv,
};

constexpr std::string_view kDeviceInfoCmdNames[] = {
    "DEVICE_INFO_ID"sv,     "DEVICE_INFO_VENDOR"sv,      "DEVICE_INFO_MODEL"sv,
    "DEVICE_INFO_TLTYPE"sv, "DEVICE_INFO_DISPLAYNAME"sv, "DEVICE_INFO_ACCESS_STATUS"sv,
};

constexpr std::string_view kDeviceAccessFlagsNames[] = {
    "DEVICE_ACCESS_UNKNOWN"sv, "DEVICE_ACCESS_NONE"sv,      "DEVICE_ACCESS_READONLY"sv,
    "DEVICE_ACCESS_CONTROL"sv, "DEVICE_ACCESS_EXCLUSIVE"sv,
};

constexpr std::string_view kDeviceAccessStatusNames[] = {
    "DEVICE_ACCESS_STATUS_UNKNOWN"sv,
    "DEVICE_ACCESS_STATUS_READWRITE"sv,
    "DEVICE_ACCESS_STATUS_READONLY"sv,
    "DEVICE_ACCESS_STATUS_NOACCESS"sv,
};

// The last name is the log's own word for this value, kept on purpose.
constexpr std::string_view kStreamInfoCmdNames[] = {
    "STREAM_INFO_ID"sv,
    "STREAM_INFO_NUM_DELIVERED"sv,
    "STREAM_INFO_NUM_UNDERRUN"sv,
    "STREAM_INFO_NUM_ANNOUNCED"sv,
    "STREAM_INFO_NUM_QUEUED"sv,
    "STREAM_INFO_NUM_AWAIT_DELIVERY"sv,
    "STREAM_INFO_NUM_STARTED"sv,
    "STREAM_INFO_PAYLOAD_SIZE"sv,
    "STREAM_INFO_IS_GRABBING"sv,
    "STREAM_INFO_DEFINES_PAYLOADSIZE"sv,
    "STREAM_INFO_TLTYPE"sv,
    "STREAM_INFO_NUM_CHUNKS_MAX"sv,
    "STREAM_INFO_NUM_ANNOUNCE_MIN"sv,
};

constexpr std::string_view kBufferInfoCmdNames[] = {
    "BUFFER_INFO_BASE"sv,
    "BUFFER_INFO_SIZE"sv,
    "BUFFER_INFO_USER_PTR"sv,
    "BUFFER_INFO_TIMESTAMP"sv,
    "BUFFER_INFO_NEW_DATA"sv,
    "BUFFER_INFO_IS_QUEUED"sv,
    "BUFFER_INFO_IS_ACQUIRING"sv,
    "BUFFER_INFO_IS_INCOMPLETE"sv,
    "BUFFER_INFO_TLTYPE"sv,
    "BUFFER_INFO_SIZE_FILLED"sv,
    "BUFFER_INFO_WIDTH"sv,
    "BUFFER_INFO_HEIGHT"sv,
    "BUFFER_INFO_XOFFSET"sv,
    "BUFFER_INFO_YOFFSET"sv,
    "BUFFER_INFO_XPADDING"sv,
    "BUFFER_INFO_YPADDING"sv,
    "BUFFER_INFO_FRAMEID"sv,
    "BUFFER_INFO_IMAGEPRESENT"sv,
    "BUFFER_INFO_IMAGEOFFSET"sv,
    "BUFFER_INFO_PAYLOADTYPE"sv,
    "BUFFER_INFO_PIXELFORMAT"sv,
    "BUFFER_INFO_PIXELFORMAT_NAMESPACE"sv,
    "BUFFER_INFO_DELIVERED_IMAGEHEIGHT"sv,
    "BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE"sv,
    "BUFFER_INFO_CHUNKLAYOUTID"sv,
    "BUFFER_INFO_FILENAME"sv,
};

constexpr std::string_view kAcqStartFlagsNames[] = {
    "ACQ_START_FLAGS_DEFAULT"sv,
};

// Three forms, "FLAGS", "FLAG" and neither, kept on purpose.
constexpr std::string_view kAcqStopFlagsNames[] = {
    "ACQ_STOP_FLAGS_DEFAULT"sv,
    "ACQ_STOP_FLAG_KILL"sv,
};

constexpr std::string_view kAcqQueueTypeNames[] = {
    "ACQ_QUEUE_INPUT_TO_OUTPUT"sv,   "ACQ_QUEUE_OUTPUT_DISCARD"sv, "ACQ_QUEUE_ALL_TO_INPUT"sv,
    "ACQ_QUEUE_UNQUEUED_TO_INPUT"sv, "ACQ_QUEUE_ALL_DISCARD"sv,
};

constexpr std::string_view kUrlInfoCmdNames[] = {
    "URL_INFO_URL"sv,
    "URL_INFO_SCHEMA_VER_MAJOR"sv,
    "URL_INFO_SCHEMA_VER_MINOR"sv,
    "URL_INFO_FILE_VER_MAJOR"sv,
    "URL_INFO_FILE_VER_MINOR"sv,
    "URL_INFO_FILE_VER_SUBMINOR"sv,
};

constexpr std::string_view kPortInfoCmdNames[] = {
    "PORT_INFO_ID"sv,         "PORT_INFO_VENDOR"sv,      "PORT_INFO_MODEL"sv,
    "PORT_INFO_TLTYPE"sv,     "PORT_INFO_MODULE"sv,      "PORT_INFO_LITTLE_ENDIAN"sv,
    "PORT_INFO_BIG_ENDIAN"sv, "PORT_INFO_ACCESS_READ"sv, "PORT_INFO_ACCESS_WRITE"sv,
    "PORT_INFO_ACCESS_NA"sv,  "PORT_INFO_ACCESS_NI"sv,   "PORT_INFO_VERSION"sv,
    "PORT_INFO_PORTNAME"sv,
};

constexpr std::string_view kEventTypeNames[] = {
    "EVENT_ERROR"sv,          "EVENT_NEW_BUFFER"sv,       "EVENT_FEATURE_INVALIDATE"sv,
    "EVENT_FEATURE_CHANGE"sv, "EVENT_FEATURE_DEVEVENT"sv,
};

// The names of 0 and 3 and the "INFO" of 4 are the log's own, kept on purpose.
constexpr std::string_view kEventInfoCmdNames[] = {
    "EVENT_EVENT_TYPE"sv, "EVENT_NUM_IN_QUEUE"sv,       "EVENT_NUM_FIRED"sv,
    "EVENT_SIZE_MAX"sv,   "EVENT_INFO_DATA_SIZE_MAX"sv,
};

constexpr std::string_view kEventDataInfoCmdNames[] = {
    "EVENT_DATA_ID"sv,
    "EVENT_DATA_VALUE"sv,
    "EVENT_DATA_NUMID"sv,
};

// From -1001 downwards.
constexpr std::string_view kGcErrorNames[] = {
    "GC_ERR_ERROR"sv,
    "GC_ERR_NOT_INITIALIZED"sv,
    "GC_ERR_NOT_IMPLEMENTED"sv,
    "GC_ERR_RESOURCE_IN_USE"sv,
    "GC_ERR_ACCESS_DENIED"sv,
    "GC_ERR_INVALID_HANDLE"sv,
    "GC_ERR_INVALID_ID"sv,
    "GC_ERR_NO_DATA"sv,
    "GC_ERR_INVALID_PARAMETER"sv,
    "GC_ERR_IO"sv,
    "GC_ERR_TIMEOUT"sv,
    "GC_ERR_ABORT"sv,
    "GC_ERR_INVALID_BUFFER"sv,
    "GC_ERR_NOT_AVAILABLE"sv,
    "GC_ERR_INVALID_ADDRESS"sv,
};

}  // namespace

RenderedText GcErrorName(GC_ERROR value) {
  if (value == GC_ERR_SUCCESS) {
    return RenderedText::Name("GC_ERR_SUCCESS");
  }
  if (value == GC_ERR_CUSTOM_ID) {
    return RenderedText::Name("GC_ERR_CUSTOM_ID");
  }
  // The rest are the names from GC_ERR_ERROR downwards: none of them is a custom one.
  if (value > GC_ERR_ERROR || value < GC_ERR_INVALID_ADDRESS) {
    return {"(Unknown GC_ERROR: ", Digits::Decimal(value).view(), ")"};
  }
  return RenderedText::Name(kGcErrorNames[GC_ERR_ERROR - value]);
}

RenderedText InfoDatatypeName(INFO_DATATYPE value) {
  return NameOf(value, kInfoDatatypeNames, kNoCustomName, "(Unknown INFO_DATATYPE: ");
}

RenderedText TlInfoCmdName(TL_INFO_CMD value) {
  // 1000 has no name here, unlike in the other tables.
  return NameOf(value, kTlInfoCmdNames, kNoCustomName, "(Unknown TL_INFO_CMD: ");
}

RenderedText InterfaceInfoCmdName(INTERFACE_INFO_CMD value) {
  return NameOf(value, kInterfaceInfoCmdNames, "INTERFACE_INFO_CUSTOM_ID",
                "(Unknown INTERFACE_INFO_CMD: ");
}

RenderedText DeviceInfoCmdName(DEVICE_INFO_CMD value) {
  return NameOf(value, kDeviceInfoCmdNames, "DEVICE_INFO_CUSTOM_ID", "(Unknown DEVICE_INFO_CMD: ");
}

RenderedText DeviceAccessFlagsName(DEVICE_ACCESS_FLAGS value) {
  return NameOf(value, kDeviceAccessFlagsNames, kNoCustomName, "(Unknown DEVICE_ACCESS_FLAGS: ");
}

RenderedText DeviceAccessStatusName(DEVICE_ACCESS_STATUS value) {
  return NameOf(value, kDeviceAccessStatusNames, "DEVICE_ACCESS_STATUS_CUSTOM_ID",
                "(Unknown DEVICE_ACCESS_STATUS: ");
}

RenderedText StreamInfoCmdName(STREAM_INFO_CMD value) {
  return NameOf(value, kStreamInfoCmdNames, "STREAM_INFO_CUSTOM_ID", "(Unknown STREAM_INFO_CMD: ");
}

RenderedText BufferInfoCmdName(BUFFER_INFO_CMD value) {
  return NameOf(value, kBufferInfoCmdNames, "BUFFER_INFO_CUSTOM_ID", "(Unknown BUFFER_INFO_CMD: ");
}

RenderedText AcqStartFlagsName(ACQ_START_FLAGS value) {
  return NameOf(value, kAcqStartFlagsNames, "ACQ_START_FLAGS_CUSTOM_ID",
                "(Unknown ACQ_START_FLAGS: ");
}

RenderedText AcqStopFlagsName(ACQ_STOP_FLAGS value) {
  return NameOf(value, kAcqStopFlagsNames, "ACQ_STOP_CUSTOM_ID", "(Unknown ACQ_STOP_FLAGS: ");
}

RenderedText AcqQueueTypeName(ACQ_QUEUE_TYPE value) {
  return NameOf(value, kAcqQueueTypeNames, "ACQ_QUEUE_CUSTOM_ID", "(Unknown ACQ_QUEUE_TYPE: ");
}

RenderedText UrlInfoCmdName(URL_INFO_CMD value) {
  return NameOf(value, kUrlInfoCmdNames, "URL_INFO_CUSTOM_ID", "(Unknown URL_INFO_CMD: ");
}

RenderedText PortInfoCmdName(PORT_INFO_CMD value) {
  return NameOf(value, kPortInfoCmdNames, "PORT_INFO_CUSTOM_ID", "(Unknown PORT_INFO_CMD: ");
}

RenderedText EventTypeName(EVENT_TYPE value) {
  return NameOf(value, kEventTypeNames, "EVENT_CUSTOM_ID", "(Unknown EVENT_TYPE: ");
}

RenderedText EventInfoCmdName(EVENT_INFO_CMD value) {
  return NameOf(value, kEventInfoCmdNames, "EVENT_INFO_CUSTOM_ID", "(Unknown EVENT_INFO_CMD: ");
}

RenderedText EventDataInfoCmdName(EVENT_DATA_INFO_CMD value) {
  return NameOf(value, kEventDataInfoCmdNames, "EVENT_DATA_CUSTOM_ID",
                "(Unknown EVENT_DATA_INFO_CMD: ");
}

}  // namespace vextrel
