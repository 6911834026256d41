// SPDX-License-Identifier: MIT
#include "calllog/newer_value_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace vextrel_test {
namespace {

template <auto function>
std::string Name(std::int32_t value) {
  return std::string(function(value).Shown());
}

TEST(NewerValueNames, NameTheNewerResultsAndTheOlder) {
  constexpr auto name = &Name<vextrel::NewerGcErrorName>;
  EXPECT_EQ(name(0), "GC_ERR_SUCCESS");
  EXPECT_EQ(name(-1001), "GC_ERR_ERROR");
  EXPECT_EQ(name(-1015), "GC_ERR_INVALID_ADDRESS");
  EXPECT_EQ(name(-1016), "GC_ERR_BUFFER_TOO_SMALL");
  EXPECT_EQ(name(-1017), "GC_ERR_INVALID_INDEX");
  EXPECT_EQ(name(-1018), "GC_ERR_PARSING_CHUNK_DATA");
  EXPECT_EQ(name(-1019), "GC_ERR_INVALID_VALUE");
  EXPECT_EQ(name(-1020), "GC_ERR_RESOURCE_EXHAUSTED");
  EXPECT_EQ(name(-1021), "GC_ERR_OUT_OF_MEMORY");
  EXPECT_EQ(name(-1022), "GC_ERR_BUSY");
  EXPECT_EQ(name(-1023), "GC_ERR_AMBIGUOUS");
  EXPECT_EQ(name(-1024), "(Unknown GC_ERROR: -1024)");
  EXPECT_EQ(name(-10000), "GC_ERR_CUSTOM_ID");
  EXPECT_EQ(name(std::numeric_limits<std::int32_t>::min()), "(Unknown GC_ERROR: -2147483648)");
  EXPECT_EQ(name(std::numeric_limits<std::int32_t>::max()), "(Unknown GC_ERROR: 2147483647)");
}

TEST(NewerValueNames, NameTheNewerDataType) {
  constexpr auto name = &Name<vextrel::NewerInfoDatatypeName>;
  EXPECT_EQ(name(13), "INFO_DATATYPE_BUFFER");
  EXPECT_EQ(name(14), "INFO_DATATYPE_PTRDIFF");
  EXPECT_EQ(name(15), "(Unknown INFO_DATATYPE: 15)");
  EXPECT_EQ(name(-1), "(Unknown INFO_DATATYPE: -1)");
}

TEST(NewerValueNames, NameTheNewerBufferInfos) {
  constexpr auto name = &Name<vextrel::NewerBufferInfoCmdName>;
  EXPECT_EQ(name(25), "BUFFER_INFO_FILENAME");
  EXPECT_EQ(name(26), "BUFFER_INFO_PIXEL_ENDIANNESS");
  EXPECT_EQ(name(27), "BUFFER_INFO_DATA_SIZE");
  EXPECT_EQ(name(28), "BUFFER_INFO_TIMESTAMP_NS");
  EXPECT_EQ(name(29), "BUFFER_INFO_DATA_LARGER_THAN_BUFFER");
  EXPECT_EQ(name(30), "BUFFER_INFO_CONTAINS_CHUNKDATA");
  EXPECT_EQ(name(31), "BUFFER_INFO_IS_COMPOSITE");
  EXPECT_EQ(name(32), "(Unknown BUFFER_INFO_CMD: 32)");
  EXPECT_EQ(name(1000), "BUFFER_INFO_CUSTOM_ID");
}

TEST(NewerValueNames, NamePartInfos) {
  constexpr auto name = &Name<vextrel::BufferPartInfoCmdName>;
  EXPECT_EQ(name(0), "BUFFER_PART_INFO_BASE");
  EXPECT_EQ(name(1), "BUFFER_PART_INFO_DATA_SIZE");
  EXPECT_EQ(name(2), "BUFFER_PART_INFO_DATA_TYPE");
  EXPECT_EQ(name(3), "BUFFER_PART_INFO_DATA_FORMAT");
  EXPECT_EQ(name(4), "BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE");
  EXPECT_EQ(name(5), "BUFFER_PART_INFO_WIDTH");
  EXPECT_EQ(name(6), "BUFFER_PART_INFO_HEIGHT");
  EXPECT_EQ(name(7), "BUFFER_PART_INFO_XOFFSET");
  EXPECT_EQ(name(8), "BUFFER_PART_INFO_YOFFSET");
  EXPECT_EQ(name(9), "BUFFER_PART_INFO_XPADDING");
  EXPECT_EQ(name(10), "BUFFER_PART_INFO_SOURCE_ID");
  EXPECT_EQ(name(11), "BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT");
  EXPECT_EQ(name(12), "BUFFER_PART_INFO_REGION_ID");
  EXPECT_EQ(name(13), "BUFFER_PART_INFO_DATA_PURPOSE_ID");
  EXPECT_EQ(name(14), "(Unknown BUFFER_PART_INFO_CMD: 14)");
  EXPECT_EQ(name(1000), "BUFFER_PART_INFO_CUSTOM_ID");
  EXPECT_EQ(name(-1), "(Unknown BUFFER_PART_INFO_CMD: -1)");
}

TEST(NewerValueNames, NamePartDataTypes) {
  constexpr auto name = &Name<vextrel::PartDatatypeName>;
  EXPECT_EQ(name(0), "PART_DATATYPE_UNKNOWN");
  EXPECT_EQ(name(1), "PART_DATATYPE_2D_IMAGE");
  EXPECT_EQ(name(2), "PART_DATATYPE_2D_PLANE_BIPLANAR");
  EXPECT_EQ(name(3), "PART_DATATYPE_2D_PLANE_TRIPLANAR");
  EXPECT_EQ(name(4), "PART_DATATYPE_2D_PLANE_QUADPLANAR");
  EXPECT_EQ(name(5), "PART_DATATYPE_3D_IMAGE");
  EXPECT_EQ(name(6), "PART_DATATYPE_3D_PLANE_BIPLANAR");
  EXPECT_EQ(name(7), "PART_DATATYPE_3D_PLANE_TRIPLANAR");
  EXPECT_EQ(name(8), "PART_DATATYPE_3D_PLANE_QUADPLANAR");
  EXPECT_EQ(name(9), "PART_DATATYPE_CONFIDENCE_MAP");
  EXPECT_EQ(name(10), "PART_DATATYPE_JPEG");
  EXPECT_EQ(name(11), "PART_DATATYPE_JPEG2000");
  EXPECT_EQ(name(12), "(Unknown PARTDATATYPE_ID: 12)");
  EXPECT_EQ(name(1000), "PART_DATATYPE_CUSTOM_ID");
}

TEST(NewerValueNames, NameFlowAndSegmentInfos) {
  EXPECT_EQ(Name<vextrel::FlowInfoCmdName>(0), "FLOW_INFO_SIZE");
  EXPECT_EQ(Name<vextrel::FlowInfoCmdName>(1), "(Unknown FLOW_INFO_CMD: 1)");
  EXPECT_EQ(Name<vextrel::FlowInfoCmdName>(1000), "FLOW_INFO_CUSTOM_ID");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(0), "SEGMENT_INFO_BASE");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(1), "SEGMENT_INFO_SIZE");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(2), "SEGMENT_INFO_IS_INCOMPLETE");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(3), "SEGMENT_INFO_SIZE_FILLED");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(4), "SEGMENT_INFO_DATA_SIZE");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(5), "(Unknown SEGMENT_INFO_CMD: 5)");
  EXPECT_EQ(Name<vextrel::SegmentInfoCmdName>(1000), "SEGMENT_INFO_CUSTOM_ID");
}

}  // namespace
}  // namespace vextrel_test
