// SPDX-License-Identifier: MIT
#include "calllog/newer_rendering.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

using ::vextrel::kMostBelieved;
using ::vextrel::kMostShown;
using ::vextrel::OfferedBuffers;
using ::vextrel::RenderWholeValue;

// The value as the bytes of a buffer of exactly its size.
template <typename Value>
std::string Whole(INFO_DATATYPE type, const Value& value) {
  std::vector<std::byte> bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return RenderWholeValue(type, bytes.data(), bytes.size());
}

std::string WholeText(INFO_DATATYPE type, std::string_view text) {
  const std::vector<char> bytes(text.begin(), text.end());
  return RenderWholeValue(type, bytes.data(), bytes.size());
}

TEST(RenderWholeValue, ShowsNumbersWhole) {
  EXPECT_EQ(Whole(INFO_DATATYPE_INT16, std::int16_t{-32768}), "-32768");
  EXPECT_EQ(Whole(INFO_DATATYPE_UINT16, std::uint16_t{65535}), "65535");
  EXPECT_EQ(Whole(INFO_DATATYPE_INT32, std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(Whole(INFO_DATATYPE_UINT32, 0xFFFFFFFFU), "4294967295");
  EXPECT_EQ(Whole(INFO_DATATYPE_INT64, std::int64_t{-4294967297}), "-4294967297");
  EXPECT_EQ(Whole(INFO_DATATYPE_UINT64, ~std::uint64_t{0}), "18446744073709551615");
  EXPECT_EQ(Whole(INFO_DATATYPE_SIZET, std::uint64_t{0x100000005}), "4294967301");
  EXPECT_EQ(Whole(INFO_DATATYPE_PTRDIFF, std::int64_t{-8}), "-8");
  EXPECT_EQ(Whole(INFO_DATATYPE_FLOAT64, 2.5), "2.5");
  EXPECT_EQ(Whole(INFO_DATATYPE_BOOL8, std::uint8_t{7}), "1");
  EXPECT_EQ(Whole(INFO_DATATYPE_BOOL8, std::uint8_t{0}), "0");
}

TEST(RenderWholeValue, ShowsThePointerThatTheBufferHolds) {
  EXPECT_EQ(Whole(INFO_DATATYPE_PTR, std::uint64_t{0xABCDEF}), "0x0000000000ABCDEF");
}

TEST(RenderWholeValue, ShowsTexts) {
  EXPECT_EQ(WholeText(INFO_DATATYPE_STRING, std::string_view("Mono8\0rest", 10)), "'Mono8'");
  EXPECT_EQ(WholeText(INFO_DATATYPE_STRINGLIST, std::string_view("one\0two\0\0more", 13)),
            "'one','two'");
  EXPECT_EQ(WholeText(INFO_DATATYPE_BUFFER, std::string_view("\x0a\xff", 2)), "0x0a,0xff");
}

TEST(RenderWholeValue, EndsTextsAtTheSize) {
  EXPECT_EQ(WholeText(INFO_DATATYPE_STRING, "Mono8"), "'Mono8'");
  EXPECT_EQ(WholeText(INFO_DATATYPE_STRINGLIST, std::string_view("one\0two", 7)), "'one','two'");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_STRINGLIST, "more", 0), "");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_STRING, "more", 0), "''");
}

TEST(RenderWholeValue, IsNullForAValueThatNeedsMoreBytes) {
  const std::uint64_t value = 5;
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_UINT64, &value, 7), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_INT64, &value, 4), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_UINT32, &value, 3), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_INT16, &value, 1), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_FLOAT64, &value, 7), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_PTR, &value, 7), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_BOOL8, &value, 0), "NULL");
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_UINT64, nullptr, 8), "NULL");
}

TEST(RenderWholeValue, ShowsWhereABufferOfAnUnknownTypeLies) {
  const int value = 0;
  EXPECT_EQ(RenderWholeValue(INFO_DATATYPE_UNKNOWN, &value, 4), "0x" + Hex16(&value));
  EXPECT_EQ(RenderWholeValue(1000, &value, 4), "0x" + Hex16(&value));
}

TEST(RenderOutputs, ShowWhatAPointerPointsToOrNull) {
  const void* const handle = Handle(0x1234);
  const std::uint32_t number = 4294967295;
  const std::size_t size = 0x100000000;
  const INFO_DATATYPE type = 14;
  EXPECT_EQ(vextrel::RenderHandleAt(&handle).Shown(), "0x0000000000001234");
  EXPECT_EQ(vextrel::RenderNumberAt(&number).Shown(), "4294967295");
  EXPECT_EQ(vextrel::RenderSizeAt(&size).Shown(), "4294967296");
  EXPECT_EQ(vextrel::RenderTypeAt(&type).Shown(), "INFO_DATATYPE_PTRDIFF");
  EXPECT_EQ(vextrel::RenderHandleAt(nullptr).Shown(), "NULL");
  EXPECT_EQ(vextrel::RenderNumberAt(nullptr).Shown(), "NULL");
  EXPECT_EQ(vextrel::RenderSizeAt(nullptr).Shown(), "NULL");
  EXPECT_EQ(vextrel::RenderTypeAt(nullptr).Shown(), "NULL");
  EXPECT_EQ(vextrel::OfferedSize(&size), 0x100000000U);
  EXPECT_EQ(vextrel::OfferedSize(nullptr), 0U);
}

TEST(RenderAnswer, NeedsSuccessAndAllPointers) {
  const INFO_DATATYPE type = INFO_DATATYPE_UINT32;
  const std::uint32_t value = 640;
  const std::size_t size = sizeof value;
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, &type, &value, 4, &size), "640");
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_NO_DATA, &type, &value, 4, &size), "NULL");
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, nullptr, &value, 4, &size), "NULL");
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, &type, nullptr, 4, &size), "NULL");
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, &type, &value, 4, nullptr), "NULL");
}

TEST(RenderAnswer, ReadsNoMoreThanWasOfferedAndDelivered) {
  const INFO_DATATYPE type = INFO_DATATYPE_STRING;
  const char* text = "abcdef";
  const std::size_t absurd = std::numeric_limits<std::size_t>::max();
  const std::size_t three = 3;
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, &type, text, 2, &absurd), "'ab'");
  EXPECT_EQ(vextrel::RenderAnswer(GC_ERR_SUCCESS, &type, text, 6, &three), "'abc'");
}

TEST(RenderPartAnswer, NamesTheDataTypeOfAPart) {
  const auto shown = [](BUFFER_PART_INFO_CMD command, INFO_DATATYPE type, std::uint64_t value) {
    const std::size_t size = sizeof value;
    return vextrel::RenderPartAnswer(GC_ERR_SUCCESS, command, &type, &value, sizeof value, &size);
  };
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_TYPE, INFO_DATATYPE_SIZET, 1), "PART_DATATYPE_2D_IMAGE");
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_TYPE, INFO_DATATYPE_UINT64, 9),
            "PART_DATATYPE_CONFIDENCE_MAP");
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_TYPE, INFO_DATATYPE_INT32, 1000),
            "PART_DATATYPE_CUSTOM_ID");
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_TYPE, INFO_DATATYPE_UINT16, 12),
            "(Unknown PARTDATATYPE_ID: 12)");
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_TYPE, INFO_DATATYPE_UINT64, 0x100000001), "4294967297");
  EXPECT_EQ(shown(BUFFER_PART_INFO_DATA_SIZE, INFO_DATATYPE_SIZET, 1), "1");
}

TEST(RenderChunks, ShowsEachChunk) {
  const std::array<SINGLE_CHUNK_DATA, 2> chunks = {
      {{0xABCDEF0123456789, 307200, 24}, {5, -16, 0x100000000}}};
  const std::size_t count = 2;
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_SUCCESS, chunks.data(), 2, &count),
            "Chunk[0]=(ChunkID=0xabcdef0123456789, ChunkOffset=307200, ChunkLength=24);"
            "Chunk[1]=(ChunkID=0x5, ChunkOffset=-16, ChunkLength=4294967296);");
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_NO_DATA, chunks.data(), 2, &count), "NULL");
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_SUCCESS, nullptr, 2, &count), "NULL");
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_SUCCESS, chunks.data(), 2, nullptr), "NULL");
}

TEST(RenderChunks, ReadsNoMoreThanTheConsumerHasRoomFor) {
  const SINGLE_CHUNK_DATA chunk = {1, 2, 3};
  const std::size_t three = 3;
  const std::size_t absurd = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_SUCCESS, &chunk, 1, &three),
            "Chunk[0]=(ChunkID=0x1, ChunkOffset=2, ChunkLength=3); (and 2 more)");
  EXPECT_EQ(vextrel::RenderChunks(GC_ERR_SUCCESS, &chunk, absurd, &absurd),
            " (and 18446744073709551615 more)");
}

TEST(RenderSegments, ShowsEachSegment) {
  const std::array<void*, 2> segments = {Handle(0x10), nullptr};
  const std::array<std::size_t, 2> sizes = {4096, 0x100000000};
  EXPECT_EQ(vextrel::RenderSegments(segments.data(), sizes.data(), 2),
            "Segment[0]=(pBuffer=0x0000000000000010, iSize=4096);"
            "Segment[1]=(pBuffer=0x0000000000000000, iSize=4294967296);");
  EXPECT_EQ(vextrel::RenderSegments(nullptr, sizes.data(), 2), "NULL");
  EXPECT_EQ(vextrel::RenderSegments(segments.data(), nullptr, 2), "NULL");
  EXPECT_EQ(vextrel::RenderSegments(segments.data(), sizes.data(), 0), "");
}

TEST(RenderSegments, DoesNotFollowACountThatCannotBe) {
  const std::array<void*, 1> segments = {};
  const std::array<std::size_t, 1> sizes = {};
  EXPECT_EQ(vextrel::RenderSegments(segments.data(), sizes.data(), kMostBelieved + 1),
            " (and 4097 more)");
}

DS_BUFFER_INFO_STACKED Info(BUFFER_INFO_CMD command, INFO_DATATYPE type, void* buffer,
                            std::size_t size, GC_ERROR result) {
  return {command, type, buffer, size, result};
}

TEST(RenderInfos, ShowsEachEntryWithItsOwnResult) {
  std::uint64_t width = 640;
  std::uint64_t frame = 0x100000001;
  const std::array infos = {
      Info(BUFFER_INFO_WIDTH, INFO_DATATYPE_SIZET, &width, 8, GC_ERR_SUCCESS),
      Info(BUFFER_INFO_TIMESTAMP_NS, INFO_DATATYPE_UINT64, &frame, 8, GC_ERR_SUCCESS),
      Info(BUFFER_INFO_FILENAME, INFO_DATATYPE_STRING, &frame, 8, GC_ERR_NO_DATA)};
  EXPECT_EQ(vextrel::RenderInfos(infos.data(), 3, OfferedBuffers(infos.data(), 3)),
            "Info[0]=(iCmd=BUFFER_INFO_WIDTH, iType=INFO_DATATYPE_SIZET, Buffer=640, iSize=8, "
            "iResult=GC_ERR_SUCCESS);"
            "Info[1]=(iCmd=BUFFER_INFO_TIMESTAMP_NS, iType=INFO_DATATYPE_UINT64, "
            "Buffer=4294967297, iSize=8, iResult=GC_ERR_SUCCESS);"
            "Info[2]=(iCmd=BUFFER_INFO_FILENAME, iType=INFO_DATATYPE_STRING, Buffer=NULL, iSize=8, "
            "iResult=GC_ERR_NO_DATA);");
}

TEST(RenderInfos, NamesNewerResults) {
  const auto info =
      Info(BUFFER_INFO_IS_COMPOSITE, INFO_DATATYPE_BOOL8, nullptr, 0, GC_ERR_BUFFER_TOO_SMALL);
  EXPECT_EQ(vextrel::RenderInfos(&info, 1, OfferedBuffers(&info, 1)),
            "Info[0]=(iCmd=BUFFER_INFO_IS_COMPOSITE, iType=INFO_DATATYPE_BOOL8, Buffer=NULL, "
            "iSize=0, iResult=GC_ERR_BUFFER_TOO_SMALL);");
}

TEST(RenderInfos, ReadsWhereAndAsFarAsTheConsumerOffered) {
  char text[] = "abcdef";
  auto info = Info(BUFFER_INFO_FILENAME, INFO_DATATYPE_STRING, text, 3, GC_ERR_SUCCESS);
  const OfferedBuffers offered(&info, 1);
  // What a target may make of it.
  info.pBuffer = Handle(0x10);
  info.iSize = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(vextrel::RenderInfos(&info, 1, offered),
            "Info[0]=(iCmd=BUFFER_INFO_FILENAME, iType=INFO_DATATYPE_STRING, Buffer='abc', "
            "iSize=18446744073709551615, iResult=GC_ERR_SUCCESS);");
}

TEST(RenderInfos, StopsAtTheMostThatIsShown) {
  const std::vector<DS_BUFFER_INFO_STACKED> infos(
      kMostShown + 2, Info(BUFFER_INFO_BASE, INFO_DATATYPE_PTR, nullptr, 0, GC_ERR_SUCCESS));
  const std::string shown =
      vextrel::RenderInfos(infos.data(), infos.size(), OfferedBuffers(infos.data(), infos.size()));
  EXPECT_NE(shown.find("Info[63]="), std::string::npos);
  EXPECT_EQ(shown.find("Info[64]="), std::string::npos);
  EXPECT_TRUE(shown.ends_with("; (and 2 more)")) << shown;
}

TEST(RenderInfos, LooksAtNothingForACountThatCannotBe) {
  const auto info = Info(BUFFER_INFO_BASE, INFO_DATATYPE_PTR, nullptr, 0, GC_ERR_SUCCESS);
  const std::size_t absurd = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(vextrel::RenderInfos(&info, absurd, OfferedBuffers(&info, absurd)),
            " (and 18446744073709551615 more)");
  EXPECT_EQ(vextrel::RenderInfos(nullptr, 1,
                                 OfferedBuffers(static_cast<DS_BUFFER_INFO_STACKED*>(nullptr), 1)),
            "NULL");
}

// `third` and `fourth` are the two fields whose order differs.
std::string PartInfo(std::int32_t third, std::int32_t fourth) {
  std::uint64_t value = 480;
  const DS_BUFFER_PART_INFO_STACKED info = {1, BUFFER_PART_INFO_HEIGHT, third, fourth, &value, 8};
  return vextrel::RenderPartInfos(&info, 1, OfferedBuffers(&info, 1));
}

TEST(RenderPartInfos, DecodesBothOrdersAndSaysWhich) {
  EXPECT_EQ(PartInfo(GC_ERR_SUCCESS, INFO_DATATYPE_SIZET),
            "Info[0]=(iPartIndex=1, iCmd=BUFFER_PART_INFO_HEIGHT, iType=INFO_DATATYPE_SIZET, "
            "Buffer=480, iSize=8, iResult=GC_ERR_SUCCESS, Order=iResult iType);");
  EXPECT_EQ(PartInfo(INFO_DATATYPE_SIZET, GC_ERR_SUCCESS),
            "Info[0]=(iPartIndex=1, iCmd=BUFFER_PART_INFO_HEIGHT, iType=INFO_DATATYPE_SIZET, "
            "Buffer=480, iSize=8, iResult=GC_ERR_SUCCESS, Order=iType iResult);");
  EXPECT_EQ(PartInfo(GC_ERR_INVALID_INDEX, INFO_DATATYPE_UNKNOWN),
            "Info[0]=(iPartIndex=1, iCmd=BUFFER_PART_INFO_HEIGHT, iType=INFO_DATATYPE_UNKNOWN, "
            "Buffer=NULL, iSize=8, iResult=GC_ERR_INVALID_INDEX, Order=iResult iType);");
  EXPECT_EQ(PartInfo(INFO_DATATYPE_UNKNOWN, GC_ERR_NOT_AVAILABLE),
            "Info[0]=(iPartIndex=1, iCmd=BUFFER_PART_INFO_HEIGHT, iType=INFO_DATATYPE_UNKNOWN, "
            "Buffer=NULL, iSize=8, iResult=GC_ERR_NOT_AVAILABLE, Order=iType iResult);");
}

TEST(RenderPartInfos, NamesTheDataTypeOfAPart) {
  std::uint64_t type = PART_DATATYPE_3D_IMAGE;
  const DS_BUFFER_PART_INFO_STACKED info = {
      0, BUFFER_PART_INFO_DATA_TYPE, GC_ERR_SUCCESS, INFO_DATATYPE_SIZET, &type, 8};
  EXPECT_EQ(vextrel::RenderPartInfos(&info, 1, OfferedBuffers(&info, 1)),
            "Info[0]=(iPartIndex=0, iCmd=BUFFER_PART_INFO_DATA_TYPE, iType=INFO_DATATYPE_SIZET, "
            "Buffer=PART_DATATYPE_3D_IMAGE, iSize=8, iResult=GC_ERR_SUCCESS, "
            "Order=iResult iType);");
}

TEST(RenderPartInfos, SurvivesANullBufferThatClaimsASize) {
  const DS_BUFFER_PART_INFO_STACKED info = {
      0, BUFFER_PART_INFO_DATA_TYPE, GC_ERR_SUCCESS, INFO_DATATYPE_SIZET, nullptr, 8};
  EXPECT_EQ(vextrel::RenderPartInfos(&info, 1, OfferedBuffers(&info, 1)),
            "Info[0]=(iPartIndex=0, iCmd=BUFFER_PART_INFO_DATA_TYPE, iType=INFO_DATATYPE_SIZET, "
            "Buffer=NULL, iSize=8, iResult=GC_ERR_SUCCESS, Order=iResult iType);");
}

}  // namespace
}  // namespace vextrel_test
