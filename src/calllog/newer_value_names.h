// SPDX-License-Identifier: MIT
// GenTL values by the names of GenTL 1.6, for the lines of the newer functions.
//
// A value that has no name prints as "(Unknown TYPE: number)". All functions are pure and
// thread-safe.
#ifndef VEXTREL_CALLLOG_NEWER_VALUE_NAMES_H
#define VEXTREL_CALLLOG_NEWER_VALUE_NAMES_H

#include "calllog/rendered_text.h"
#include "gentl/gentl_newer.h"

namespace vextrel {

[[nodiscard]] RenderedText NewerGcErrorName(GC_ERROR value);
[[nodiscard]] RenderedText NewerInfoDatatypeName(INFO_DATATYPE value);
[[nodiscard]] RenderedText NewerBufferInfoCmdName(BUFFER_INFO_CMD value);
[[nodiscard]] RenderedText BufferPartInfoCmdName(BUFFER_PART_INFO_CMD value);
[[nodiscard]] RenderedText PartDatatypeName(PARTDATATYPE_ID value);
[[nodiscard]] RenderedText FlowInfoCmdName(FLOW_INFO_CMD value);
[[nodiscard]] RenderedText SegmentInfoCmdName(SEGMENT_INFO_CMD value);

}  // namespace vextrel

#endif  // VEXTREL_CALLLOG_NEWER_VALUE_NAMES_H
