// SPDX-License-Identifier: MIT
#include "model/value_names.h"

namespace vextrel_test::model {
namespace {

constexpr ValueName kGcErrorsNames[] = {{0, "GC_ERR_SUCCESS"},
                                        {-1001, "GC_ERR_ERROR"},
                                        {-1002, "GC_ERR_NOT_INITIALIZED"},
                                        {-1003, "GC_ERR_NOT_IMPLEMENTED"},
                                        {-1004, "GC_ERR_RESOURCE_IN_USE"},
                                        {-1005, "GC_ERR_ACCESS_DENIED"},
                                        {-1006, "GC_ERR_INVALID_HANDLE"},
                                        {-1007, "GC_ERR_INVALID_ID"},
                                        {-1008, "GC_ERR_NO_DATA"},
                                        {-1009, "GC_ERR_INVALID_PARAMETER"},
                                        {-1010, "GC_ERR_IO"},
                                        {-1011, "GC_ERR_TIMEOUT"},
                                        {-1012, "GC_ERR_ABORT"},
                                        {-1013, "GC_ERR_INVALID_BUFFER"},
                                        {-1014, "GC_ERR_NOT_AVAILABLE"},
                                        {-1015, "GC_ERR_INVALID_ADDRESS"},
                                        {-10000, "GC_ERR_CUSTOM_ID"}};

constexpr ValueName kInfoDatatypesNames[] = {
    {0, "INFO_DATATYPE_UNKNOWN"}, {1, "INFO_DATATYPE_STRING"}, {2, "INFO_DATATYPE_STRINGLIST"},
    {3, "INFO_DATATYPE_INT16"},   {4, "INFO_DATATYPE_UINT16"}, {5, "INFO_DATATYPE_INT32"},
    {6, "INFO_DATATYPE_UINT32"},  {7, "INFO_DATATYPE_INT64"},  {8, "INFO_DATATYPE_UINT64"},
    {9, "INFO_DATATYPE_FLOAT64"}, {10, "INFO_DATATYPE_PTR"},   {11, "INFO_DATATYPE_BOOL8"},
    {12, "INFO_DATATYPE_SIZET"},  {13, "INFO_DATATYPE_BUFFER"}};

constexpr ValueName kTlInfoCmdsNames[] = {{0, "TL_INFO_ID"},       {1, "TL_INFO_VENDOR"},
                                          {2, "TL_INFO_MODEL"},    {3, "TL_INFO_VERSION"},
                                          {4, "TL_INFO_TLTYPE"},   {5, "TL_INFO_NAME"},
                                          {6, "TL_INFO_PATHNAME"}, {7, "TL_INFO_DISPLAYNAME"}};

constexpr ValueName kInterfaceInfoCmdsNames[] = {{0, "INTERFACE_INFO_ID"},
                                                 {1, "INTERFACE_INFO_DISPLAYNAME"},
                                                 {2, "INTERFACE_INFO_TLTYPE"},
                                                 {1000, "INTERFACE_INFO_CUSTOM_ID"}};

constexpr ValueName kDeviceInfoCmdsNames[] = {
    {0, "DEVICE_INFO_ID"},          {1, "DEVICE_INFO_VENDOR"},
    {2, "DEVICE_INFO_MODEL"},       {3, "DEVICE_INFO_TLTYPE"},
    {4, "DEVICE_INFO_DISPLAYNAME"}, {5, "DEVICE_INFO_ACCESS_STATUS"},
    {1000, "DEVICE_INFO_CUSTOM_ID"}};

constexpr ValueName kDeviceAccessFlagsNames[] = {{0, "DEVICE_ACCESS_UNKNOWN"},
                                                 {1, "DEVICE_ACCESS_NONE"},
                                                 {2, "DEVICE_ACCESS_READONLY"},
                                                 {3, "DEVICE_ACCESS_CONTROL"},
                                                 {4, "DEVICE_ACCESS_EXCLUSIVE"}};

constexpr ValueName kDeviceAccessStatusesNames[] = {{0, "DEVICE_ACCESS_STATUS_UNKNOWN"},
                                                    {1, "DEVICE_ACCESS_STATUS_READWRITE"},
                                                    {2, "DEVICE_ACCESS_STATUS_READONLY"},
                                                    {3, "DEVICE_ACCESS_STATUS_NOACCESS"},
                                                    {1000, "DEVICE_ACCESS_STATUS_CUSTOM_ID"}};

constexpr ValueName kStreamInfoCmdsNames[] = {{0, "STREAM_INFO_ID"},
                                              {1, "STREAM_INFO_NUM_DELIVERED"},
                                              {2, "STREAM_INFO_NUM_UNDERRUN"},
                                              {3, "STREAM_INFO_NUM_ANNOUNCED"},
                                              {4, "STREAM_INFO_NUM_QUEUED"},
                                              {5, "STREAM_INFO_NUM_AWAIT_DELIVERY"},
                                              {6, "STREAM_INFO_NUM_STARTED"},
                                              {7, "STREAM_INFO_PAYLOAD_SIZE"},
                                              {8, "STREAM_INFO_IS_GRABBING"},
                                              {9, "STREAM_INFO_DEFINES_PAYLOADSIZE"},
                                              {10, "STREAM_INFO_TLTYPE"},
                                              {11, "STREAM_INFO_NUM_CHUNKS_MAX"},
                                              {12, "STREAM_INFO_NUM_ANNOUNCE_MIN"},
                                              {1000, "STREAM_INFO_CUSTOM_ID"}};

constexpr ValueName kBufferInfoCmdsNames[] = {{0, "BUFFER_INFO_BASE"},
                                              {1, "BUFFER_INFO_SIZE"},
                                              {2, "BUFFER_INFO_USER_PTR"},
                                              {3, "BUFFER_INFO_TIMESTAMP"},
                                              {4, "BUFFER_INFO_NEW_DATA"},
                                              {5, "BUFFER_INFO_IS_QUEUED"},
                                              {6, "BUFFER_INFO_IS_ACQUIRING"},
                                              {7, "BUFFER_INFO_IS_INCOMPLETE"},
                                              {8, "BUFFER_INFO_TLTYPE"},
                                              {9, "BUFFER_INFO_SIZE_FILLED"},
                                              {10, "BUFFER_INFO_WIDTH"},
                                              {11, "BUFFER_INFO_HEIGHT"},
                                              {12, "BUFFER_INFO_XOFFSET"},
                                              {13, "BUFFER_INFO_YOFFSET"},
                                              {14, "BUFFER_INFO_XPADDING"},
                                              {15, "BUFFER_INFO_YPADDING"},
                                              {16, "BUFFER_INFO_FRAMEID"},
                                              {17, "BUFFER_INFO_IMAGEPRESENT"},
                                              {18, "BUFFER_INFO_IMAGEOFFSET"},
                                              {19, "BUFFER_INFO_PAYLOADTYPE"},
                                              {20, "BUFFER_INFO_PIXELFORMAT"},
                                              {21, "BUFFER_INFO_PIXELFORMAT_NAMESPACE"},
                                              {22, "BUFFER_INFO_DELIVERED_IMAGEHEIGHT"},
                                              {23, "BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE"},
                                              {24, "BUFFER_INFO_CHUNKLAYOUTID"},
                                              {25, "BUFFER_INFO_FILENAME"},
                                              {1000, "BUFFER_INFO_CUSTOM_ID"}};

constexpr ValueName kAcqStartFlagsNames[] = {{0, "ACQ_START_FLAGS_DEFAULT"},
                                             {1000, "ACQ_START_FLAGS_CUSTOM_ID"}};

constexpr ValueName kAcqStopFlagsNames[] = {
    {0, "ACQ_STOP_FLAGS_DEFAULT"}, {1, "ACQ_STOP_FLAG_KILL"}, {1000, "ACQ_STOP_CUSTOM_ID"}};

constexpr ValueName kAcqQueueTypesNames[] = {
    {0, "ACQ_QUEUE_INPUT_TO_OUTPUT"}, {1, "ACQ_QUEUE_OUTPUT_DISCARD"},
    {2, "ACQ_QUEUE_ALL_TO_INPUT"},    {3, "ACQ_QUEUE_UNQUEUED_TO_INPUT"},
    {4, "ACQ_QUEUE_ALL_DISCARD"},     {1000, "ACQ_QUEUE_CUSTOM_ID"}};

constexpr ValueName kUrlInfoCmdsNames[] = {{0, "URL_INFO_URL"},
                                           {1, "URL_INFO_SCHEMA_VER_MAJOR"},
                                           {2, "URL_INFO_SCHEMA_VER_MINOR"},
                                           {3, "URL_INFO_FILE_VER_MAJOR"},
                                           {4, "URL_INFO_FILE_VER_MINOR"},
                                           {5, "URL_INFO_FILE_VER_SUBMINOR"},
                                           {1000, "URL_INFO_CUSTOM_ID"}};

constexpr ValueName kPortInfoCmdsNames[] = {
    {0, "PORT_INFO_ID"},         {1, "PORT_INFO_VENDOR"},      {2, "PORT_INFO_MODEL"},
    {3, "PORT_INFO_TLTYPE"},     {4, "PORT_INFO_MODULE"},      {5, "PORT_INFO_LITTLE_ENDIAN"},
    {6, "PORT_INFO_BIG_ENDIAN"}, {7, "PORT_INFO_ACCESS_READ"}, {8, "PORT_INFO_ACCESS_WRITE"},
    {9, "PORT_INFO_ACCESS_NA"},  {10, "PORT_INFO_ACCESS_NI"},  {11, "PORT_INFO_VERSION"},
    {12, "PORT_INFO_PORTNAME"},  {1000, "PORT_INFO_CUSTOM_ID"}};

constexpr ValueName kEventTypesNames[] = {
    {0, "EVENT_ERROR"},          {1, "EVENT_NEW_BUFFER"},       {2, "EVENT_FEATURE_INVALIDATE"},
    {3, "EVENT_FEATURE_CHANGE"}, {4, "EVENT_FEATURE_DEVEVENT"}, {1000, "EVENT_CUSTOM_ID"}};

constexpr ValueName kEventInfoCmdsNames[] = {
    {0, "EVENT_EVENT_TYPE"}, {1, "EVENT_NUM_IN_QUEUE"},       {2, "EVENT_NUM_FIRED"},
    {3, "EVENT_SIZE_MAX"},   {4, "EVENT_INFO_DATA_SIZE_MAX"}, {1000, "EVENT_INFO_CUSTOM_ID"}};

constexpr ValueName kEventDataInfoCmdsNames[] = {{0, "EVENT_DATA_ID"},
                                                 {1, "EVENT_DATA_VALUE"},
                                                 {2, "EVENT_DATA_NUMID"},
                                                 {1000, "EVENT_DATA_CUSTOM_ID"}};

constexpr ValueName kNewerGcErrorsNames[] = {{-1016, "GC_ERR_BUFFER_TOO_SMALL"},
                                             {-1017, "GC_ERR_INVALID_INDEX"},
                                             {-1018, "GC_ERR_PARSING_CHUNK_DATA"},
                                             {-1019, "GC_ERR_INVALID_VALUE"},
                                             {-1020, "GC_ERR_RESOURCE_EXHAUSTED"},
                                             {-1021, "GC_ERR_OUT_OF_MEMORY"},
                                             {-1022, "GC_ERR_BUSY"},
                                             {-1023, "GC_ERR_AMBIGUOUS"}};

constexpr ValueName kNewerInfoDatatypesNames[] = {{14, "INFO_DATATYPE_PTRDIFF"}};

constexpr ValueName kNewerBufferInfoCmdsNames[] = {
    {26, "BUFFER_INFO_PIXEL_ENDIANNESS"},   {27, "BUFFER_INFO_DATA_SIZE"},
    {28, "BUFFER_INFO_TIMESTAMP_NS"},       {29, "BUFFER_INFO_DATA_LARGER_THAN_BUFFER"},
    {30, "BUFFER_INFO_CONTAINS_CHUNKDATA"}, {31, "BUFFER_INFO_IS_COMPOSITE"}};

constexpr ValueName kBufferPartInfoCmdsNames[] = {{0, "BUFFER_PART_INFO_BASE"},
                                                  {1, "BUFFER_PART_INFO_DATA_SIZE"},
                                                  {2, "BUFFER_PART_INFO_DATA_TYPE"},
                                                  {3, "BUFFER_PART_INFO_DATA_FORMAT"},
                                                  {4, "BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE"},
                                                  {5, "BUFFER_PART_INFO_WIDTH"},
                                                  {6, "BUFFER_PART_INFO_HEIGHT"},
                                                  {7, "BUFFER_PART_INFO_XOFFSET"},
                                                  {8, "BUFFER_PART_INFO_YOFFSET"},
                                                  {9, "BUFFER_PART_INFO_XPADDING"},
                                                  {10, "BUFFER_PART_INFO_SOURCE_ID"},
                                                  {11, "BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT"},
                                                  {12, "BUFFER_PART_INFO_REGION_ID"},
                                                  {13, "BUFFER_PART_INFO_DATA_PURPOSE_ID"},
                                                  {1000, "BUFFER_PART_INFO_CUSTOM_ID"}};

constexpr ValueName kPartDatatypesNames[] = {{0, "PART_DATATYPE_UNKNOWN"},
                                             {1, "PART_DATATYPE_2D_IMAGE"},
                                             {2, "PART_DATATYPE_2D_PLANE_BIPLANAR"},
                                             {3, "PART_DATATYPE_2D_PLANE_TRIPLANAR"},
                                             {4, "PART_DATATYPE_2D_PLANE_QUADPLANAR"},
                                             {5, "PART_DATATYPE_3D_IMAGE"},
                                             {6, "PART_DATATYPE_3D_PLANE_BIPLANAR"},
                                             {7, "PART_DATATYPE_3D_PLANE_TRIPLANAR"},
                                             {8, "PART_DATATYPE_3D_PLANE_QUADPLANAR"},
                                             {9, "PART_DATATYPE_CONFIDENCE_MAP"},
                                             {10, "PART_DATATYPE_JPEG"},
                                             {11, "PART_DATATYPE_JPEG2000"},
                                             {1000, "PART_DATATYPE_CUSTOM_ID"}};

constexpr ValueName kFlowInfoCmdsNames[] = {{0, "FLOW_INFO_SIZE"}, {1000, "FLOW_INFO_CUSTOM_ID"}};

constexpr ValueName kSegmentInfoCmdsNames[] = {
    {0, "SEGMENT_INFO_BASE"},          {1, "SEGMENT_INFO_SIZE"},
    {2, "SEGMENT_INFO_IS_INCOMPLETE"}, {3, "SEGMENT_INFO_SIZE_FILLED"},
    {4, "SEGMENT_INFO_DATA_SIZE"},     {1000, "SEGMENT_INFO_CUSTOM_ID"}};

}  // namespace

const char* NameTable::Find(std::int32_t value) const {
  for (const ValueName& each : names) {
    if (each.value == value) {
      return each.name;
    }
  }
  return older != nullptr ? older->Find(value) : nullptr;
}

std::string NameTable::NameOf(std::int32_t value) const {
  const char* name = Find(value);
  return name != nullptr ? name
                         : std::string("(Unknown ") + type + ": " + std::to_string(value) + ")";
}

constinit const NameTable kGcErrors = {"GC_ERROR", kGcErrorsNames};
constinit const NameTable kInfoDatatypes = {"INFO_DATATYPE", kInfoDatatypesNames};
constinit const NameTable kTlInfoCmds = {"TL_INFO_CMD", kTlInfoCmdsNames};
constinit const NameTable kInterfaceInfoCmds = {"INTERFACE_INFO_CMD", kInterfaceInfoCmdsNames};
constinit const NameTable kDeviceInfoCmds = {"DEVICE_INFO_CMD", kDeviceInfoCmdsNames};
constinit const NameTable kDeviceAccessFlags = {"DEVICE_ACCESS_FLAGS", kDeviceAccessFlagsNames};
constinit const NameTable kDeviceAccessStatuses = {"DEVICE_ACCESS_STATUS",
                                                   kDeviceAccessStatusesNames};
constinit const NameTable kStreamInfoCmds = {"STREAM_INFO_CMD", kStreamInfoCmdsNames};
constinit const NameTable kBufferInfoCmds = {"BUFFER_INFO_CMD", kBufferInfoCmdsNames};
constinit const NameTable kAcqStartFlags = {"ACQ_START_FLAGS", kAcqStartFlagsNames};
constinit const NameTable kAcqStopFlags = {"ACQ_STOP_FLAGS", kAcqStopFlagsNames};
constinit const NameTable kAcqQueueTypes = {"ACQ_QUEUE_TYPE", kAcqQueueTypesNames};
constinit const NameTable kUrlInfoCmds = {"URL_INFO_CMD", kUrlInfoCmdsNames};
constinit const NameTable kPortInfoCmds = {"PORT_INFO_CMD", kPortInfoCmdsNames};
constinit const NameTable kEventTypes = {"EVENT_TYPE", kEventTypesNames};
constinit const NameTable kEventInfoCmds = {"EVENT_INFO_CMD", kEventInfoCmdsNames};
constinit const NameTable kEventDataInfoCmds = {"EVENT_DATA_INFO_CMD", kEventDataInfoCmdsNames};

constinit const NameTable kNewerGcErrors = {"GC_ERROR", kNewerGcErrorsNames, &kGcErrors};
constinit const NameTable kNewerInfoDatatypes = {"INFO_DATATYPE", kNewerInfoDatatypesNames,
                                                 &kInfoDatatypes};
constinit const NameTable kNewerBufferInfoCmds = {"BUFFER_INFO_CMD", kNewerBufferInfoCmdsNames,
                                                  &kBufferInfoCmds};
constinit const NameTable kBufferPartInfoCmds = {"BUFFER_PART_INFO_CMD", kBufferPartInfoCmdsNames};
constinit const NameTable kPartDatatypes = {"PARTDATATYPE_ID", kPartDatatypesNames};
constinit const NameTable kFlowInfoCmds = {"FLOW_INFO_CMD", kFlowInfoCmdsNames};
constinit const NameTable kSegmentInfoCmds = {"SEGMENT_INFO_CMD", kSegmentInfoCmdsNames};

}  // namespace vextrel_test::model
