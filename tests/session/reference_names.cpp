#include "session/reference_names.h"

#include <map>

namespace vextrel_test::session {
namespace {

using Names = std::map<std::int32_t, const char*>;

std::string Find(const Names& names, const char* type, std::int32_t value) {
  const auto found = names.find(value);
  if (found != names.end()) {
    return found->second;
  }
  return std::string("(Unknown ") + type + ": " + std::to_string(value) + ")";
}

}  // namespace

std::string NameOfGcError(std::int32_t value) {
  static const Names names = {{0, "GC_ERR_SUCCESS"},
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
  return Find(names, "GC_ERROR", value);
}

std::string NameOfInfoDatatype(std::int32_t value) {
  static const Names names = {
      {0, "INFO_DATATYPE_UNKNOWN"}, {1, "INFO_DATATYPE_STRING"}, {2, "INFO_DATATYPE_STRINGLIST"},
      {3, "INFO_DATATYPE_INT16"},   {4, "INFO_DATATYPE_UINT16"}, {5, "INFO_DATATYPE_INT32"},
      {6, "INFO_DATATYPE_UINT32"},  {7, "INFO_DATATYPE_INT64"},  {8, "INFO_DATATYPE_UINT64"},
      {9, "INFO_DATATYPE_FLOAT64"}, {10, "INFO_DATATYPE_PTR"},   {11, "INFO_DATATYPE_BOOL8"},
      {12, "INFO_DATATYPE_SIZET"},  {13, "INFO_DATATYPE_BUFFER"}};
  return Find(names, "INFO_DATATYPE", value);
}

std::string NameOfTlInfoCmd(std::int32_t value) {
  static const Names names = {{0, "TL_INFO_ID"},       {1, "TL_INFO_VENDOR"},
                              {2, "TL_INFO_MODEL"},    {3, "TL_INFO_VERSION"},
                              {4, "TL_INFO_TLTYPE"},   {5, "TL_INFO_NAME"},
                              {6, "TL_INFO_PATHNAME"}, {7, "TL_INFO_DISPLAYNAME"}};
  return Find(names, "TL_INFO_CMD", value);
}

std::string NameOfInterfaceInfoCmd(std::int32_t value) {
  static const Names names = {{0, "INTERFACE_INFO_ID"},
                              {1, "INTERFACE_INFO_DISPLAYNAME"},
                              {2, "INTERFACE_INFO_TLTYPE"},
                              {1000, "INTERFACE_INFO_CUSTOM_ID"}};
  return Find(names, "INTERFACE_INFO_CMD", value);
}

std::string NameOfDeviceInfoCmd(std::int32_t value) {
  static const Names names = {{0, "DEVICE_INFO_ID"},          {1, "DEVICE_INFO_VENDOR"},
                              {2, "DEVICE_INFO_MODEL"},       {3, "DEVICE_INFO_TLTYPE"},
                              {4, "DEVICE_INFO_DISPLAYNAME"}, {5, "DEVICE_INFO_ACCESS_STATUS"},
                              {1000, "DEVICE_INFO_CUSTOM_ID"}};
  return Find(names, "DEVICE_INFO_CMD", value);
}

std::string NameOfDeviceAccessFlags(std::int32_t value) {
  static const Names names = {{0, "DEVICE_ACCESS_UNKNOWN"},
                              {1, "DEVICE_ACCESS_NONE"},
                              {2, "DEVICE_ACCESS_READONLY"},
                              {3, "DEVICE_ACCESS_CONTROL"},
                              {4, "DEVICE_ACCESS_EXCLUSIVE"}};
  return Find(names, "DEVICE_ACCESS_FLAGS", value);
}

std::string NameOfStreamInfoCmd(std::int32_t value) {
  static const Names names = {{0, "STREAM_INFO_ID"},
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
  return Find(names, "STREAM_INFO_CMD", value);
}

std::string NameOfBufferInfoCmd(std::int32_t value) {
  static const Names names = {{0, "BUFFER_INFO_BASE"},
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
  return Find(names, "BUFFER_INFO_CMD", value);
}

std::string NameOfAcqStartFlags(std::int32_t value) {
  static const Names names = {{0, "ACQ_START_FLAGS_DEFAULT"}, {1000, "ACQ_START_FLAGS_CUSTOM_ID"}};
  return Find(names, "ACQ_START_FLAGS", value);
}

std::string NameOfAcqStopFlags(std::int32_t value) {
  static const Names names = {
      {0, "ACQ_STOP_FLAGS_DEFAULT"}, {1, "ACQ_STOP_FLAG_KILL"}, {1000, "ACQ_STOP_CUSTOM_ID"}};
  return Find(names, "ACQ_STOP_FLAGS", value);
}

std::string NameOfAcqQueueType(std::int32_t value) {
  static const Names names = {{0, "ACQ_QUEUE_INPUT_TO_OUTPUT"}, {1, "ACQ_QUEUE_OUTPUT_DISCARD"},
                              {2, "ACQ_QUEUE_ALL_TO_INPUT"},    {3, "ACQ_QUEUE_UNQUEUED_TO_INPUT"},
                              {4, "ACQ_QUEUE_ALL_DISCARD"},     {1000, "ACQ_QUEUE_CUSTOM_ID"}};
  return Find(names, "ACQ_QUEUE_TYPE", value);
}

std::string NameOfUrlInfoCmd(std::int32_t value) {
  static const Names names = {{0, "URL_INFO_URL"},
                              {1, "URL_INFO_SCHEMA_VER_MAJOR"},
                              {2, "URL_INFO_SCHEMA_VER_MINOR"},
                              {3, "URL_INFO_FILE_VER_MAJOR"},
                              {4, "URL_INFO_FILE_VER_MINOR"},
                              {5, "URL_INFO_FILE_VER_SUBMINOR"},
                              {1000, "URL_INFO_CUSTOM_ID"}};
  return Find(names, "URL_INFO_CMD", value);
}

std::string NameOfPortInfoCmd(std::int32_t value) {
  static const Names names = {
      {0, "PORT_INFO_ID"},         {1, "PORT_INFO_VENDOR"},      {2, "PORT_INFO_MODEL"},
      {3, "PORT_INFO_TLTYPE"},     {4, "PORT_INFO_MODULE"},      {5, "PORT_INFO_LITTLE_ENDIAN"},
      {6, "PORT_INFO_BIG_ENDIAN"}, {7, "PORT_INFO_ACCESS_READ"}, {8, "PORT_INFO_ACCESS_WRITE"},
      {9, "PORT_INFO_ACCESS_NA"},  {10, "PORT_INFO_ACCESS_NI"},  {11, "PORT_INFO_VERSION"},
      {12, "PORT_INFO_PORTNAME"},  {1000, "PORT_INFO_CUSTOM_ID"}};
  return Find(names, "PORT_INFO_CMD", value);
}

std::string NameOfEventType(std::int32_t value) {
  static const Names names = {
      {0, "EVENT_ERROR"},          {1, "EVENT_NEW_BUFFER"},       {2, "EVENT_FEATURE_INVALIDATE"},
      {3, "EVENT_FEATURE_CHANGE"}, {4, "EVENT_FEATURE_DEVEVENT"}, {1000, "EVENT_CUSTOM_ID"}};
  return Find(names, "EVENT_TYPE", value);
}

std::string NameOfEventInfoCmd(std::int32_t value) {
  static const Names names = {{0, "EVENT_EVENT_TYPE"},         {1, "EVENT_NUM_IN_QUEUE"},
                              {2, "EVENT_NUM_FIRED"},          {3, "EVENT_SIZE_MAX"},
                              {4, "EVENT_INFO_DATA_SIZE_MAX"}, {1000, "EVENT_INFO_CUSTOM_ID"}};
  return Find(names, "EVENT_INFO_CMD", value);
}

std::string NameOfEventDataInfoCmd(std::int32_t value) {
  static const Names names = {{0, "EVENT_DATA_ID"},
                              {1, "EVENT_DATA_VALUE"},
                              {2, "EVENT_DATA_NUMID"},
                              {1000, "EVENT_DATA_CUSTOM_ID"}};
  return Find(names, "EVENT_DATA_INFO_CMD", value);
}

}  // namespace vextrel_test::session
