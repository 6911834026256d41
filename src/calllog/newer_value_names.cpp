// SPDX-License-Identifier: MIT
#include "calllog/newer_value_names.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "calllog/newer_value_tables.h"
#include "calllog/value_names.h"

namespace vextrel {
namespace {

// The name of the value that is `distance` behind the first, or nothing.
std::string_view NewerName(const NewerNames& names, std::int64_t distance) {
  return distance >= 0 && distance < std::ssize(names.run)
             ? names.run[static_cast<std::size_t>(distance)]
             : std::string_view();
}

}  // namespace

RenderedText NewerGcErrorName(GC_ERROR value) {
  const std::string_view name =
      NewerName(newer::kGcError, std::int64_t{newer::kGcError.first} - value);
  return name.empty() ? GcErrorName(value) : RenderedText::Name(name);
}

RenderedText NewerInfoDatatypeName(INFO_DATATYPE value) {
  const std::string_view name =
      NewerName(newer::kInfoDatatype, std::int64_t{value} - newer::kInfoDatatype.first);
  return name.empty() ? InfoDatatypeName(value) : RenderedText::Name(name);
}

RenderedText NewerBufferInfoCmdName(BUFFER_INFO_CMD value) {
  const std::string_view name =
      NewerName(newer::kBufferInfoCmd, std::int64_t{value} - newer::kBufferInfoCmd.first);
  return name.empty() ? BufferInfoCmdName(value) : RenderedText::Name(name);
}

RenderedText BufferPartInfoCmdName(BUFFER_PART_INFO_CMD value) {
  return TableName(value, newer::kBufferPartInfoCmd);
}

RenderedText PartDatatypeName(PARTDATATYPE_ID value) {
  return TableName(value, newer::kPartDatatype);
}

RenderedText FlowInfoCmdName(FLOW_INFO_CMD value) {
  return TableName(value, newer::kFlowInfoCmd);
}

RenderedText SegmentInfoCmdName(SEGMENT_INFO_CMD value) {
  return TableName(value, newer::kSegmentInfoCmd);
}

}  // namespace vextrel
