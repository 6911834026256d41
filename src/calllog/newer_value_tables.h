// SPDX-License-Identifier: MIT
// The names that GenTL 1.3 to 1.6 gave to values, for the lines of the newer functions and for what
// reads a log back: the other lines show the values of older enumerations as unknown.
#ifndef VEXTREL_CALLLOG_NEWER_VALUE_TABLES_H
#define VEXTREL_CALLLOG_NEWER_VALUE_TABLES_H

#include <cstdint>
#include <span>
#include <string_view>

#include "calllog/value_tables.h"

namespace vextrel {

// Names that continue an older table.
struct NewerNames {
  std::int32_t first;                     // the value of the first name
  std::span<const std::string_view> run;  // its name and those of the values behind it
};

namespace newer {

// From -1016 downwards.
inline constexpr std::string_view kGcErrorRun[] = {
    "GC_ERR_BUFFER_TOO_SMALL",
    "GC_ERR_INVALID_INDEX",
    "GC_ERR_PARSING_CHUNK_DATA",
    "GC_ERR_INVALID_VALUE",
    "GC_ERR_RESOURCE_EXHAUSTED",
    "GC_ERR_OUT_OF_MEMORY",
    "GC_ERR_BUSY",
    "GC_ERR_AMBIGUOUS",
};
inline constexpr NewerNames kGcError = {-1016, kGcErrorRun};

inline constexpr std::string_view kInfoDatatypeRun[] = {"INFO_DATATYPE_PTRDIFF"};
inline constexpr NewerNames kInfoDatatype = {14, kInfoDatatypeRun};

inline constexpr std::string_view kTlInfoCmdRun[] = {
    "TL_INFO_CHAR_ENCODING", "TL_INFO_GENTL_VER_MAJOR", "TL_INFO_GENTL_VER_MINOR"};
inline constexpr NewerNames kTlInfoCmd = {8, kTlInfoCmdRun};

inline constexpr std::string_view kDeviceInfoCmdRun[] = {
    "DEVICE_INFO_USER_DEFINED_NAME", "DEVICE_INFO_SERIAL_NUMBER", "DEVICE_INFO_VERSION",
    "DEVICE_INFO_TIMESTAMP_FREQUENCY"};
inline constexpr NewerNames kDeviceInfoCmd = {6, kDeviceInfoCmdRun};

inline constexpr std::string_view kDeviceAccessStatusRun[] = {"DEVICE_ACCESS_STATUS_BUSY",
                                                              "DEVICE_ACCESS_STATUS_OPEN_READWRITE",
                                                              "DEVICE_ACCESS_STATUS_OPEN_READONLY"};
inline constexpr NewerNames kDeviceAccessStatus = {4, kDeviceAccessStatusRun};

inline constexpr std::string_view kStreamInfoCmdRun[] = {
    "STREAM_INFO_BUF_ALIGNMENT", "STREAM_INFO_FLOW_TABLE", "STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR"};
inline constexpr NewerNames kStreamInfoCmd = {13, kStreamInfoCmdRun};

inline constexpr std::string_view kBufferInfoCmdRun[] = {
    "BUFFER_INFO_PIXEL_ENDIANNESS",   "BUFFER_INFO_DATA_SIZE",
    "BUFFER_INFO_TIMESTAMP_NS",       "BUFFER_INFO_DATA_LARGER_THAN_BUFFER",
    "BUFFER_INFO_CONTAINS_CHUNKDATA", "BUFFER_INFO_IS_COMPOSITE"};
inline constexpr NewerNames kBufferInfoCmd = {26, kBufferInfoCmdRun};

inline constexpr std::string_view kUrlInfoCmdRun[] = {
    "URL_INFO_FILE_SHA1_HASH", "URL_INFO_FILE_REGISTER_ADDRESS", "URL_INFO_FILE_SIZE",
    "URL_INFO_SCHEME", "URL_INFO_FILENAME"};
inline constexpr NewerNames kUrlInfoCmd = {6, kUrlInfoCmdRun};

inline constexpr std::string_view kEventTypeRun[] = {"EVENT_MODULE"};
inline constexpr NewerNames kEventType = {5, kEventTypeRun};

// Enumerations that are new as a whole.

inline constexpr std::string_view kBufferPartInfoCmdRun[] = {
    "BUFFER_PART_INFO_BASE",
    "BUFFER_PART_INFO_DATA_SIZE",
    "BUFFER_PART_INFO_DATA_TYPE",
    "BUFFER_PART_INFO_DATA_FORMAT",
    "BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE",
    "BUFFER_PART_INFO_WIDTH",
    "BUFFER_PART_INFO_HEIGHT",
    "BUFFER_PART_INFO_XOFFSET",
    "BUFFER_PART_INFO_YOFFSET",
    "BUFFER_PART_INFO_XPADDING",
    "BUFFER_PART_INFO_SOURCE_ID",
    "BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT",
    "BUFFER_PART_INFO_REGION_ID",
    "BUFFER_PART_INFO_DATA_PURPOSE_ID",
};
inline constexpr ValueTable kBufferPartInfoCmd = {
    "(Unknown BUFFER_PART_INFO_CMD: ", kBufferPartInfoCmdRun, "BUFFER_PART_INFO_CUSTOM_ID"};

inline constexpr std::string_view kPartDatatypeRun[] = {
    "PART_DATATYPE_UNKNOWN",
    "PART_DATATYPE_2D_IMAGE",
    "PART_DATATYPE_2D_PLANE_BIPLANAR",
    "PART_DATATYPE_2D_PLANE_TRIPLANAR",
    "PART_DATATYPE_2D_PLANE_QUADPLANAR",
    "PART_DATATYPE_3D_IMAGE",
    "PART_DATATYPE_3D_PLANE_BIPLANAR",
    "PART_DATATYPE_3D_PLANE_TRIPLANAR",
    "PART_DATATYPE_3D_PLANE_QUADPLANAR",
    "PART_DATATYPE_CONFIDENCE_MAP",
    "PART_DATATYPE_JPEG",
    "PART_DATATYPE_JPEG2000",
};
inline constexpr ValueTable kPartDatatype = {"(Unknown PARTDATATYPE_ID: ", kPartDatatypeRun,
                                             "PART_DATATYPE_CUSTOM_ID"};

inline constexpr std::string_view kFlowInfoCmdRun[] = {"FLOW_INFO_SIZE"};
inline constexpr ValueTable kFlowInfoCmd = {"(Unknown FLOW_INFO_CMD: ", kFlowInfoCmdRun,
                                            "FLOW_INFO_CUSTOM_ID"};

inline constexpr std::string_view kSegmentInfoCmdRun[] = {
    "SEGMENT_INFO_BASE", "SEGMENT_INFO_SIZE", "SEGMENT_INFO_IS_INCOMPLETE",
    "SEGMENT_INFO_SIZE_FILLED", "SEGMENT_INFO_DATA_SIZE"};
inline constexpr ValueTable kSegmentInfoCmd = {"(Unknown SEGMENT_INFO_CMD: ", kSegmentInfoCmdRun,
                                               "SEGMENT_INFO_CUSTOM_ID"};

}  // namespace newer
}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_NEWER_VALUE_TABLES_H
