// SPDX-License-Identifier: MIT
// The names that the log gives to GenTL values, one table for each enumeration, and the text of a
// value without a name. Whatever writes a log or reads one back shares these tables.
//
// Kept: 15. They don't cover all of the current GenTL standard.
#ifndef VEXTREL_CALLLOG_VALUE_TABLES_H
#define VEXTREL_CALLLOG_VALUE_TABLES_H

#include <cstdint>
#include <span>
#include <string_view>

namespace vextrel {

// In the log, `unknown` is followed by the value as a decimal number and ")".
struct ValueTable {
  std::string_view unknown;
  std::span<const std::string_view> run;  // the names of 0, 1, 2 and so on
  std::string_view custom = {};           // the name of kCustomId, if it has one
};

inline constexpr std::int32_t kCustomId = 1000;

namespace names {

inline constexpr std::string_view kInfoDatatypeRun[] = {
    "INFO_DATATYPE_UNKNOWN", "INFO_DATATYPE_STRING", "INFO_DATATYPE_STRINGLIST",
    "INFO_DATATYPE_INT16",   "INFO_DATATYPE_UINT16", "INFO_DATATYPE_INT32",
    "INFO_DATATYPE_UINT32",  "INFO_DATATYPE_INT64",  "INFO_DATATYPE_UINT64",
    "INFO_DATATYPE_FLOAT64", "INFO_DATATYPE_PTR",    "INFO_DATATYPE_BOOL8",
    "INFO_DATATYPE_SIZET",   "INFO_DATATYPE_BUFFER",
};
inline constexpr ValueTable kInfoDatatype = {"(Unknown INFO_DATATYPE: ",
                                             kInfoDatatypeRun};  // Kept: 16.

inline constexpr std::string_view kTlInfoCmdRun[] = {
    "TL_INFO_ID",     "TL_INFO_VENDOR", "TL_INFO_MODEL",    "TL_INFO_VERSION",
    "TL_INFO_TLTYPE", "TL_INFO_NAME",   "TL_INFO_PATHNAME", "TL_INFO_DISPLAYNAME",
};
inline constexpr ValueTable kTlInfoCmd = {"(Unknown TL_INFO_CMD: ", kTlInfoCmdRun};  // Kept: 16.

inline constexpr std::string_view kInterfaceInfoCmdRun[] = {
    "INTERFACE_INFO_ID",
    "INTERFACE_INFO_DISPLAYNAME",
    "INTERFACE_INFO_TLTYPE",
};
inline constexpr ValueTable kInterfaceInfoCmd = {
    "(Unknown INTERFACE_INFO_CMD: ", kInterfaceInfoCmdRun, "INTERFACE_INFO_CUSTOM_ID"};

inline constexpr std::string_view kDeviceInfoCmdRun[] = {
    "DEVICE_INFO_ID",     "DEVICE_INFO_VENDOR",      "DEVICE_INFO_MODEL",
    "DEVICE_INFO_TLTYPE", "DEVICE_INFO_DISPLAYNAME", "DEVICE_INFO_ACCESS_STATUS",
};
inline constexpr ValueTable kDeviceInfoCmd = {"(Unknown DEVICE_INFO_CMD: ", kDeviceInfoCmdRun,
                                              "DEVICE_INFO_CUSTOM_ID"};

inline constexpr std::string_view kDeviceAccessFlagsRun[] = {
    "DEVICE_ACCESS_UNKNOWN", "DEVICE_ACCESS_NONE",      "DEVICE_ACCESS_READONLY",
    "DEVICE_ACCESS_CONTROL", "DEVICE_ACCESS_EXCLUSIVE",
};
inline constexpr ValueTable kDeviceAccessFlags = {"(Unknown DEVICE_ACCESS_FLAGS: ",
                                                  kDeviceAccessFlagsRun};  // Kept: 16.

inline constexpr std::string_view kDeviceAccessStatusRun[] = {
    "DEVICE_ACCESS_STATUS_UNKNOWN",
    "DEVICE_ACCESS_STATUS_READWRITE",
    "DEVICE_ACCESS_STATUS_READONLY",
    "DEVICE_ACCESS_STATUS_NOACCESS",
};
inline constexpr ValueTable kDeviceAccessStatus = {
    "(Unknown DEVICE_ACCESS_STATUS: ", kDeviceAccessStatusRun, "DEVICE_ACCESS_STATUS_CUSTOM_ID"};

// Kept: 17. The last name is the log's own.
inline constexpr std::string_view kStreamInfoCmdRun[] = {
    "STREAM_INFO_ID",
    "STREAM_INFO_NUM_DELIVERED",
    "STREAM_INFO_NUM_UNDERRUN",
    "STREAM_INFO_NUM_ANNOUNCED",
    "STREAM_INFO_NUM_QUEUED",
    "STREAM_INFO_NUM_AWAIT_DELIVERY",
    "STREAM_INFO_NUM_STARTED",
    "STREAM_INFO_PAYLOAD_SIZE",
    "STREAM_INFO_IS_GRABBING",
    "STREAM_INFO_DEFINES_PAYLOADSIZE",
    "STREAM_INFO_TLTYPE",
    "STREAM_INFO_NUM_CHUNKS_MAX",
    "STREAM_INFO_NUM_ANNOUNCE_MIN",
};
inline constexpr ValueTable kStreamInfoCmd = {"(Unknown STREAM_INFO_CMD: ", kStreamInfoCmdRun,
                                              "STREAM_INFO_CUSTOM_ID"};

inline constexpr std::string_view kBufferInfoCmdRun[] = {
    "BUFFER_INFO_BASE",
    "BUFFER_INFO_SIZE",
    "BUFFER_INFO_USER_PTR",
    "BUFFER_INFO_TIMESTAMP",
    "BUFFER_INFO_NEW_DATA",
    "BUFFER_INFO_IS_QUEUED",
    "BUFFER_INFO_IS_ACQUIRING",
    "BUFFER_INFO_IS_INCOMPLETE",
    "BUFFER_INFO_TLTYPE",
    "BUFFER_INFO_SIZE_FILLED",
    "BUFFER_INFO_WIDTH",
    "BUFFER_INFO_HEIGHT",
    "BUFFER_INFO_XOFFSET",
    "BUFFER_INFO_YOFFSET",
    "BUFFER_INFO_XPADDING",
    "BUFFER_INFO_YPADDING",
    "BUFFER_INFO_FRAMEID",
    "BUFFER_INFO_IMAGEPRESENT",
    "BUFFER_INFO_IMAGEOFFSET",
    "BUFFER_INFO_PAYLOADTYPE",
    "BUFFER_INFO_PIXELFORMAT",
    "BUFFER_INFO_PIXELFORMAT_NAMESPACE",
    "BUFFER_INFO_DELIVERED_IMAGEHEIGHT",
    "BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE",
    "BUFFER_INFO_CHUNKLAYOUTID",
    "BUFFER_INFO_FILENAME",
};
inline constexpr ValueTable kBufferInfoCmd = {"(Unknown BUFFER_INFO_CMD: ", kBufferInfoCmdRun,
                                              "BUFFER_INFO_CUSTOM_ID"};

inline constexpr std::string_view kAcqStartFlagsRun[] = {
    "ACQ_START_FLAGS_DEFAULT",
};
inline constexpr ValueTable kAcqStartFlags = {"(Unknown ACQ_START_FLAGS: ", kAcqStartFlagsRun,
                                              "ACQ_START_FLAGS_CUSTOM_ID"};

// Kept: 18. Three forms.
inline constexpr std::string_view kAcqStopFlagsRun[] = {
    "ACQ_STOP_FLAGS_DEFAULT",
    "ACQ_STOP_FLAG_KILL",
};
inline constexpr ValueTable kAcqStopFlags = {"(Unknown ACQ_STOP_FLAGS: ", kAcqStopFlagsRun,
                                             "ACQ_STOP_CUSTOM_ID"};

inline constexpr std::string_view kAcqQueueTypeRun[] = {
    "ACQ_QUEUE_INPUT_TO_OUTPUT",   "ACQ_QUEUE_OUTPUT_DISCARD", "ACQ_QUEUE_ALL_TO_INPUT",
    "ACQ_QUEUE_UNQUEUED_TO_INPUT", "ACQ_QUEUE_ALL_DISCARD",
};
inline constexpr ValueTable kAcqQueueType = {"(Unknown ACQ_QUEUE_TYPE: ", kAcqQueueTypeRun,
                                             "ACQ_QUEUE_CUSTOM_ID"};

inline constexpr std::string_view kUrlInfoCmdRun[] = {
    "URL_INFO_URL",
    "URL_INFO_SCHEMA_VER_MAJOR",
    "URL_INFO_SCHEMA_VER_MINOR",
    "URL_INFO_FILE_VER_MAJOR",
    "URL_INFO_FILE_VER_MINOR",
    "URL_INFO_FILE_VER_SUBMINOR",
};
inline constexpr ValueTable kUrlInfoCmd = {"(Unknown URL_INFO_CMD: ", kUrlInfoCmdRun,
                                           "URL_INFO_CUSTOM_ID"};

inline constexpr std::string_view kPortInfoCmdRun[] = {
    "PORT_INFO_ID",         "PORT_INFO_VENDOR",      "PORT_INFO_MODEL",
    "PORT_INFO_TLTYPE",     "PORT_INFO_MODULE",      "PORT_INFO_LITTLE_ENDIAN",
    "PORT_INFO_BIG_ENDIAN", "PORT_INFO_ACCESS_READ", "PORT_INFO_ACCESS_WRITE",
    "PORT_INFO_ACCESS_NA",  "PORT_INFO_ACCESS_NI",   "PORT_INFO_VERSION",
    "PORT_INFO_PORTNAME",
};
inline constexpr ValueTable kPortInfoCmd = {"(Unknown PORT_INFO_CMD: ", kPortInfoCmdRun,
                                            "PORT_INFO_CUSTOM_ID"};

inline constexpr std::string_view kEventTypeRun[] = {
    "EVENT_ERROR",          "EVENT_NEW_BUFFER",       "EVENT_FEATURE_INVALIDATE",
    "EVENT_FEATURE_CHANGE", "EVENT_FEATURE_DEVEVENT",
};
inline constexpr ValueTable kEventType = {"(Unknown EVENT_TYPE: ", kEventTypeRun,
                                          "EVENT_CUSTOM_ID"};

// Kept: 19. The names of 0 and 3 are the log's own.
inline constexpr std::string_view kEventInfoCmdRun[] = {
    "EVENT_EVENT_TYPE", "EVENT_NUM_IN_QUEUE",       "EVENT_NUM_FIRED",
    "EVENT_SIZE_MAX",   "EVENT_INFO_DATA_SIZE_MAX",
};
inline constexpr ValueTable kEventInfoCmd = {"(Unknown EVENT_INFO_CMD: ", kEventInfoCmdRun,
                                             "EVENT_INFO_CUSTOM_ID"};

inline constexpr std::string_view kEventDataInfoCmdRun[] = {
    "EVENT_DATA_ID",
    "EVENT_DATA_VALUE",
    "EVENT_DATA_NUMID",
};
inline constexpr ValueTable kEventDataInfoCmd = {
    "(Unknown EVENT_DATA_INFO_CMD: ", kEventDataInfoCmdRun, "EVENT_DATA_CUSTOM_ID"};

// Results have names at 0, from -1001 down, and at -10000.
inline constexpr std::string_view kGcErrorUnknown = "(Unknown GC_ERROR: ";
inline constexpr std::string_view kGcErrorSuccess = "GC_ERR_SUCCESS";
inline constexpr std::string_view kGcErrorCustomId = "GC_ERR_CUSTOM_ID";
inline constexpr std::string_view kGcErrorRun[] = {
    "GC_ERR_ERROR",
    "GC_ERR_NOT_INITIALIZED",
    "GC_ERR_NOT_IMPLEMENTED",
    "GC_ERR_RESOURCE_IN_USE",
    "GC_ERR_ACCESS_DENIED",
    "GC_ERR_INVALID_HANDLE",
    "GC_ERR_INVALID_ID",
    "GC_ERR_NO_DATA",
    "GC_ERR_INVALID_PARAMETER",
    "GC_ERR_IO",
    "GC_ERR_TIMEOUT",
    "GC_ERR_ABORT",
    "GC_ERR_INVALID_BUFFER",
    "GC_ERR_NOT_AVAILABLE",
    "GC_ERR_INVALID_ADDRESS",
};

}  // namespace names
}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_VALUE_TABLES_H
