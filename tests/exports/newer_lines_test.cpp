// SPDX-License-Identifier: MIT
// The lines of the newer functions, each typed whole.
#include <array>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "exports/exports_fixture.h"
#include "exports/tested_functions.h"

namespace vextrel_test {
namespace {

constexpr std::size_t kAbsurd = std::numeric_limits<std::size_t>::max();

// What the target answers to an info query with a number.
template <typename Number>
void Answer(InfoQuery& query, INFO_DATATYPE type, Number number) {
  query.type = type;
  std::memcpy(query.buffer.data(), &number, sizeof number);
  query.size = sizeof number;
}

class NewerLines : public ExportsTest {
 protected:
  // Calls the function once. Returns its line behind "INFO ", or all there is if it isn't one line.
  template <typename... Parameters, typename... Arguments>
  [[nodiscard]] std::string LineOf(GC_ERROR result,
                                   GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...),
                                   const std::function<void()>& action, Arguments... arguments) {
    TargetDoes(slot, result, action);
    EXPECT_EQ((proxy.*slot)(arguments...), result);
    const std::vector<std::string> lines = TakeLines();
    return lines.size() == 1 && lines[0].starts_with("INFO ") ? lines[0].substr(5)
                                                              : ::testing::PrintToString(lines);
  }
  static void Nothing() {}

  const DS_HANDLE hDS = Handle(0xFEDCBA9876543210);
  const BUFFER_HANDLE hBuffer = Handle(0x5000);
};

// By the names of the tests in this file.
TEST_F(NewerLines, AreTestedForEveryNewerFunction) {
  const std::set<std::string> tested =
      FunctionsTestedBy(*::testing::UnitTest::GetInstance()->current_test_suite());
  for (const std::string& name : NewerFunctionNames()) {
    EXPECT_TRUE(tested.contains(name)) << name << " has no test of its line";
  }
}

TEST_F(NewerLines, DSGetBufferChunkData) {
  std::array<SINGLE_CHUNK_DATA, 3> chunks{};
  std::size_t count = 3;
  const auto target = [&] {
    chunks[0] = {0xA5A5000000000001, 0x100000000, 0x100000008};
    chunks[1] = {0x12, -8, 0};
    count = 2;
  };
  EXPECT_EQ(
      LineOf(0, &Functions::DSGetBufferChunkData, target, hDS, hBuffer, chunks.data(), &count),
      Fill("GC_ERR_SUCCESS=DSGetBufferChunkData(hDS=0xFEDCBA9876543210, "
           "hBuffer=0x0000000000005000, 0x{}->(Chunks=Chunk[0]=(ChunkID=0xa5a5000000000001, "
           "ChunkOffset=4294967296, ChunkLength=4294967304);Chunk[1]=(ChunkID=0x12, "
           "ChunkOffset=-8, ChunkLength=0);), 0x{}->(iNumChunks=2))",
           Hex16(chunks.data()), Hex16(&count)));
  EXPECT_EQ(
      LineOf(-1018, &Functions::DSGetBufferChunkData, target, hDS, hBuffer, chunks.data(), &count),
      Fill("GC_ERR_PARSING_CHUNK_DATA=DSGetBufferChunkData(hDS=0xFEDCBA9876543210, "
           "hBuffer=0x0000000000005000, 0x{}->(Chunks=NULL), 0x{}->(iNumChunks=2))",
           Hex16(chunks.data()), Hex16(&count)));
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferChunkData, target, hDS, hBuffer, nullptr, &count),
            Fill("GC_ERR_SUCCESS=DSGetBufferChunkData(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, 0x0000000000000000->(Chunks=NULL), "
                 "0x{}->(iNumChunks=2))",
                 Hex16(&count)));
}

TEST_F(NewerLines, DSGetBufferChunkDataOfMoreThanThereIsRoomFor) {
  std::array<SINGLE_CHUNK_DATA, 1> chunks = {{{1, 2, 3}}};
  std::size_t count = 1;
  EXPECT_EQ(LineOf(
                0, &Functions::DSGetBufferChunkData, [&] { count = 4; }, nullptr, nullptr,
                chunks.data(), &count),
            Fill("GC_ERR_SUCCESS=DSGetBufferChunkData(hDS=0x0000000000000000, "
                 "hBuffer=0x0000000000000000, 0x{}->(Chunks=Chunk[0]=(ChunkID=0x1, ChunkOffset=2, "
                 "ChunkLength=3); (and 3 more)), 0x{}->(iNumChunks=4))",
                 Hex16(chunks.data()), Hex16(&count)));
  count = 1;
  EXPECT_EQ(LineOf(
                0, &Functions::DSGetBufferChunkData, [&] { count = kAbsurd; }, nullptr, nullptr,
                chunks.data(), &count),
            Fill("GC_ERR_SUCCESS=DSGetBufferChunkData(hDS=0x0000000000000000, "
                 "hBuffer=0x0000000000000000, 0x{}->(Chunks= (and 18446744073709551615 more)), "
                 "0x{}->(iNumChunks=18446744073709551615))",
                 Hex16(chunks.data()), Hex16(&count)));
}

TEST_F(NewerLines, IFGetParentTL) {
  void* parent = nullptr;
  EXPECT_EQ(LineOf(
                0, &Functions::IFGetParentTL, [&] { parent = Handle(0x1000); },
                Handle(0x0123456789ABCDEF), &parent),
            Fill("GC_ERR_SUCCESS=IFGetParentTL(hInterface=0x0123456789ABCDEF, "
                 "0x{}->(hTL=0x0000000000001000))",
                 Hex16(&parent)));
  EXPECT_EQ(LineOf(-1019, &Functions::IFGetParentTL, Nothing, nullptr, nullptr),
            "GC_ERR_INVALID_VALUE=IFGetParentTL(hInterface=0x0000000000000000, "
            "0x0000000000000000->(hTL=NULL))");
}

TEST_F(NewerLines, DevGetParentIF) {
  void* parent = nullptr;
  EXPECT_EQ(
      LineOf(
          0, &Functions::DevGetParentIF, [&] { parent = Handle(0x2000); }, Handle(0x3000), &parent),
      Fill("GC_ERR_SUCCESS=DevGetParentIF(hDev=0x0000000000003000, "
           "0x{}->(hInterface=0x0000000000002000))",
           Hex16(&parent)));
  EXPECT_EQ(LineOf(-1022, &Functions::DevGetParentIF, Nothing, Handle(0x3000), nullptr),
            "GC_ERR_BUSY=DevGetParentIF(hDev=0x0000000000003000, "
            "0x0000000000000000->(hInterface=NULL))");
}

TEST_F(NewerLines, DSGetParentDev) {
  void* parent = nullptr;
  EXPECT_EQ(
      LineOf(
          0, &Functions::DSGetParentDev, [&] { parent = Handle(0x3000); }, Handle(0x4000), &parent),
      Fill("GC_ERR_SUCCESS=DSGetParentDev(hDS=0x0000000000004000, "
           "0x{}->(hDev=0x0000000000003000))",
           Hex16(&parent)));
  EXPECT_EQ(LineOf(-1006, &Functions::DSGetParentDev, Nothing, Handle(0x4000), nullptr),
            "GC_ERR_INVALID_HANDLE=DSGetParentDev(hDS=0x0000000000004000, "
            "0x0000000000000000->(hDev=NULL))");
}

TEST_F(NewerLines, DSGetNumBufferParts) {
  std::uint32_t count = 0;
  EXPECT_EQ(
      LineOf(
          0, &Functions::DSGetNumBufferParts, [&] { count = 4294967295; }, hDS, hBuffer, &count),
      Fill("GC_ERR_SUCCESS=DSGetNumBufferParts(hDS=0xFEDCBA9876543210, "
           "hBuffer=0x0000000000005000, 0x{}->(iNumParts=4294967295))",
           Hex16(&count)));
  EXPECT_EQ(LineOf(-1008, &Functions::DSGetNumBufferParts, Nothing, hDS, hBuffer, nullptr),
            "GC_ERR_NO_DATA=DSGetNumBufferParts(hDS=0xFEDCBA9876543210, "
            "hBuffer=0x0000000000005000, 0x0000000000000000->(iNumParts=NULL))");
}

TEST_F(NewerLines, DSGetBufferPartInfo) {
  InfoQuery query;
  query.size = query.buffer.size();
  const std::string type = Hex16(&query.type);
  const std::string buffer = Hex16(query.buffer.data());
  const std::string size = Hex16(&query.size);
  const auto line = [&](GC_ERROR result, BUFFER_PART_INFO_CMD command,
                        const std::function<void()>& target) {
    query.size = query.buffer.size();
    return LineOf(result, &Functions::DSGetBufferPartInfo, target, hDS, hBuffer, 4294967295U,
                  command, &query.type, static_cast<void*>(query.buffer.data()), &query.size);
  };
  EXPECT_EQ(line(0, 1, [&] { Answer<std::uint64_t>(query, 12, 0x100000002); }),
            Fill("GC_ERR_SUCCESS=DSGetBufferPartInfo(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, iPartIndex=4294967295, "
                 "iCmd=BUFFER_PART_INFO_DATA_SIZE, 0x{}->(iType=INFO_DATATYPE_SIZET), "
                 "0x{}->(Buffer=4294967298), 0x{}->(iSize=8))",
                 type, buffer, size));
  EXPECT_EQ(line(0, 2, [&] { Answer<std::uint64_t>(query, 12, 9); }),
            Fill("GC_ERR_SUCCESS=DSGetBufferPartInfo(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, iPartIndex=4294967295, "
                 "iCmd=BUFFER_PART_INFO_DATA_TYPE, 0x{}->(iType=INFO_DATATYPE_SIZET), "
                 "0x{}->(Buffer=PART_DATATYPE_CONFIDENCE_MAP), 0x{}->(iSize=8))",
                 type, buffer, size));
  EXPECT_EQ(line(-1017, 14, [&] { Answer<std::uint64_t>(query, 12, 9); }),
            Fill("GC_ERR_INVALID_INDEX=DSGetBufferPartInfo(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, iPartIndex=4294967295, "
                 "iCmd=(Unknown BUFFER_PART_INFO_CMD: 14), 0x{}->(iType=INFO_DATATYPE_SIZET), "
                 "0x{}->(Buffer=NULL), 0x{}->(iSize=8))",
                 type, buffer, size));
  // More than the consumer has room for.
  EXPECT_EQ(line(0, 3,
                 [&] {
                   query.AnswerText("Mono8");
                   query.size = kAbsurd;
                 }),
            Fill("GC_ERR_SUCCESS=DSGetBufferPartInfo(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, iPartIndex=4294967295, "
                 "iCmd=BUFFER_PART_INFO_DATA_FORMAT, 0x{}->(iType=INFO_DATATYPE_STRING), "
                 "0x{}->(Buffer='Mono8'), 0x{}->(iSize=18446744073709551615))",
                 type, buffer, size));
}

TEST_F(NewerLines, DSGetBufferPartInfoOfNothing) {
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferPartInfo, Nothing, nullptr, nullptr, 0U, 1000, nullptr,
                   nullptr, nullptr),
            "GC_ERR_SUCCESS=DSGetBufferPartInfo(hDS=0x0000000000000000, "
            "hBuffer=0x0000000000000000, iPartIndex=0, iCmd=BUFFER_PART_INFO_CUSTOM_ID, "
            "0x0000000000000000->(iType=NULL), 0x0000000000000000->(Buffer=NULL), "
            "0x0000000000000000->(iSize=NULL))");
}

TEST_F(NewerLines, DSAnnounceCompositeBuffer) {
  std::array<void*, 2> segments = {Handle(0xA000), Handle(0xFEDCBA9876543210)};
  std::array<std::size_t, 2> sizes = {0x100000000, 5};
  void* announced = nullptr;
  const std::string tail = Fill(
      "0x{}, piSizes=0x{}, Segments=Segment[0]=(pBuffer=0x000000000000A000, iSize=4294967296);"
      "Segment[1]=(pBuffer=0xFEDCBA9876543210, iSize=5);, pPrivate=0x0000000000000077, "
      "0x{}->(hBuffer=0x0000000000005001))",
      Hex16(segments.data()), Hex16(sizes.data()), Hex16(&announced));
  EXPECT_EQ(LineOf(
                -1021, &Functions::DSAnnounceCompositeBuffer, [&] { announced = Handle(0x5001); },
                hDS, 2U, segments.data(), sizes.data(), Handle(0x77), &announced),
            "GC_ERR_OUT_OF_MEMORY=DSAnnounceCompositeBuffer(hDS=0xFEDCBA9876543210, "
            "iNumSegments=2, ppSegments=" +
                tail);
  OpenTransportLayer();
  TargetDoes(&Functions::DSAnnounceCompositeBuffer, 0);
  EXPECT_EQ(proxy.DSAnnounceCompositeBuffer(hDS, 2, segments.data(), sizes.data(), Handle(0x77),
                                            &announced),
            0);
  EXPECT_EQ(TakeLines().at(0),
            "INFO GC_ERR_SUCCESS=DSAnnounceCompositeBuffer(hDS=0xFEDCBA9876543210, "
            "iNumSegments=2, ppSegments=" +
                tail);
}

TEST_F(NewerLines, DSAnnounceCompositeBufferOfNothing) {
  EXPECT_EQ(LineOf(-1009, &Functions::DSAnnounceCompositeBuffer, Nothing, nullptr, kAbsurd, nullptr,
                   nullptr, nullptr, nullptr),
            "GC_ERR_INVALID_PARAMETER=DSAnnounceCompositeBuffer(hDS=0x0000000000000000, "
            "iNumSegments=18446744073709551615, ppSegments=0x0000000000000000, "
            "piSizes=0x0000000000000000, Segments=NULL, pPrivate=0x0000000000000000, "
            "0x0000000000000000->(hBuffer=NULL))");
}

TEST_F(NewerLines, DSGetBufferInfoStacked) {
  std::uint64_t width = 0;
  std::array<char, 8> name{};
  std::array<DS_BUFFER_INFO_STACKED, 3> infos = {
      {{10, 0, &width, 8, 0}, {22, 0, name.data(), 8, 0}, {31, 0, nullptr, 0, 0}}};
  const auto target = [&] {
    width = 0x100000280;
    infos[0].iType = 12;
    std::memcpy(name.data(), "a.bin\0##", 8);
    infos[1].iType = 1;
    infos[1].iSize = 6;
    infos[2].iType = 11;
    infos[2].iResult = -1014;
  };
  EXPECT_EQ(
      LineOf(-1001, &Functions::DSGetBufferInfoStacked, target, hDS, hBuffer, infos.data(), 3U),
      Fill("GC_ERR_ERROR=DSGetBufferInfoStacked(hDS=0xFEDCBA9876543210, "
           "hBuffer=0x0000000000005000, 0x{}->(Infos=Info[0]=(iCmd=BUFFER_INFO_WIDTH, "
           "iType=INFO_DATATYPE_SIZET, Buffer=4294967936, iSize=8, iResult=GC_ERR_SUCCESS);"
           "Info[1]=(iCmd=BUFFER_INFO_DELIVERED_IMAGEHEIGHT, iType=INFO_DATATYPE_STRING, "
           "Buffer='a.bin', iSize=6, iResult=GC_ERR_SUCCESS);"
           "Info[2]=(iCmd=BUFFER_INFO_IS_COMPOSITE, iType=INFO_DATATYPE_BOOL8, Buffer=NULL, "
           "iSize=0, iResult=GC_ERR_NOT_AVAILABLE);), iNumInfos=3)",
           Hex16(infos.data())));
}

TEST_F(NewerLines, DSGetBufferInfoStackedOfNothing) {
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferInfoStacked, Nothing, hDS, hBuffer, nullptr, 3U),
            "GC_ERR_SUCCESS=DSGetBufferInfoStacked(hDS=0xFEDCBA9876543210, "
            "hBuffer=0x0000000000005000, 0x0000000000000000->(Infos=NULL), iNumInfos=3)");
  DS_BUFFER_INFO_STACKED info{};
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferInfoStacked, Nothing, hDS, hBuffer, &info, 0U),
            Fill("GC_ERR_SUCCESS=DSGetBufferInfoStacked(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, 0x{}->(Infos=), iNumInfos=0)",
                 Hex16(&info)));
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferInfoStacked, Nothing, hDS, hBuffer, &info, kAbsurd),
            Fill("GC_ERR_SUCCESS=DSGetBufferInfoStacked(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, 0x{}->(Infos= (and 18446744073709551615 more)), "
                 "iNumInfos=18446744073709551615)",
                 Hex16(&info)));
}

// `third` and `fourth` are the fields that the two published structures have in another order.
TEST_F(NewerLines, DSGetBufferPartInfoStackedInBothOrders) {
  std::uint64_t height = 0;
  DS_BUFFER_PART_INFO_STACKED info = {1, 6, 0, 0, &height, 8};
  const auto answer = [&](std::int32_t third, std::int32_t fourth) {
    return [&info, &height, third, fourth] {
      height = 480;
      info.iResult = third;
      info.iType = fourth;
    };
  };
  const auto line = [&](std::int32_t third, std::int32_t fourth) {
    return LineOf(0, &Functions::DSGetBufferPartInfoStacked, answer(third, fourth), hDS, hBuffer,
                  &info, 1U);
  };
  const auto expected = [&](const std::string& outcome) {
    return Fill(
        "GC_ERR_SUCCESS=DSGetBufferPartInfoStacked(hDS=0xFEDCBA9876543210, "
        "hBuffer=0x0000000000005000, 0x{}->(Infos=Info[0]=(iPartIndex=1, "
        "iCmd=BUFFER_PART_INFO_HEIGHT, {});), iNumInfos=1)",
        Hex16(&info), outcome);
  };
  EXPECT_EQ(line(0, 12), expected("iType=INFO_DATATYPE_SIZET, Buffer=480, iSize=8, "
                                  "iResult=GC_ERR_SUCCESS, Order=iResult iType"));
  EXPECT_EQ(line(12, 0), expected("iType=INFO_DATATYPE_SIZET, Buffer=480, iSize=8, "
                                  "iResult=GC_ERR_SUCCESS, Order=iType iResult"));
  EXPECT_EQ(line(-1017, 12), expected("iType=INFO_DATATYPE_SIZET, Buffer=NULL, iSize=8, "
                                      "iResult=GC_ERR_INVALID_INDEX, Order=iResult iType"));
  EXPECT_EQ(line(12, -1017), expected("iType=INFO_DATATYPE_SIZET, Buffer=NULL, iSize=8, "
                                      "iResult=GC_ERR_INVALID_INDEX, Order=iType iResult"));
}

TEST_F(NewerLines, DSGetBufferPartInfoStackedOfNothing) {
  EXPECT_EQ(LineOf(-1002, &Functions::DSGetBufferPartInfoStacked, Nothing, hDS, hBuffer, nullptr,
                   0x100000000U),
            "GC_ERR_NOT_INITIALIZED=DSGetBufferPartInfoStacked(hDS=0xFEDCBA9876543210, "
            "hBuffer=0x0000000000005000, 0x0000000000000000->(Infos=NULL), iNumInfos=4294967296)");
}

TEST_F(NewerLines, DSGetNumFlows) {
  std::uint32_t count = 0;
  EXPECT_EQ(LineOf(
                0, &Functions::DSGetNumFlows, [&] { count = 3; }, hDS, &count),
            Fill("GC_ERR_SUCCESS=DSGetNumFlows(hDS=0xFEDCBA9876543210, 0x{}->(iNumFlows=3))",
                 Hex16(&count)));
  EXPECT_EQ(LineOf(-1020, &Functions::DSGetNumFlows, Nothing, hDS, nullptr),
            "GC_ERR_RESOURCE_EXHAUSTED=DSGetNumFlows(hDS=0xFEDCBA9876543210, "
            "0x0000000000000000->(iNumFlows=NULL))");
}

TEST_F(NewerLines, DSGetFlowInfo) {
  InfoQuery query;
  query.size = query.buffer.size();
  EXPECT_EQ(
      LineOf(
          0, &Functions::DSGetFlowInfo, [&] { Answer<std::uint64_t>(query, 12, 0x100000000); }, hDS,
          2U, 0, &query.type, static_cast<void*>(query.buffer.data()), &query.size),
      Fill("GC_ERR_SUCCESS=DSGetFlowInfo(hDS=0xFEDCBA9876543210, iFlowIndex=2, "
           "iCmd=FLOW_INFO_SIZE, 0x{}->(iType=INFO_DATATYPE_SIZET), "
           "0x{}->(Buffer=4294967296), 0x{}->(iSize=8))",
           Hex16(&query.type), Hex16(query.buffer.data()), Hex16(&query.size)));
  EXPECT_EQ(
      LineOf(-1023, &Functions::DSGetFlowInfo, Nothing, hDS, 2U, 1, nullptr, nullptr, nullptr),
      "GC_ERR_AMBIGUOUS=DSGetFlowInfo(hDS=0xFEDCBA9876543210, iFlowIndex=2, "
      "iCmd=(Unknown FLOW_INFO_CMD: 1), 0x0000000000000000->(iType=NULL), "
      "0x0000000000000000->(Buffer=NULL), 0x0000000000000000->(iSize=NULL))");
}

TEST_F(NewerLines, DSGetNumBufferSegments) {
  std::uint32_t count = 0;
  EXPECT_EQ(LineOf(
                0, &Functions::DSGetNumBufferSegments, [&] { count = 2; }, hDS, hBuffer, &count),
            Fill("GC_ERR_SUCCESS=DSGetNumBufferSegments(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, 0x{}->(iNumSegments=2))",
                 Hex16(&count)));
  EXPECT_EQ(LineOf(-1013, &Functions::DSGetNumBufferSegments, Nothing, hDS, hBuffer, nullptr),
            "GC_ERR_INVALID_BUFFER=DSGetNumBufferSegments(hDS=0xFEDCBA9876543210, "
            "hBuffer=0x0000000000005000, 0x0000000000000000->(iNumSegments=NULL))");
}

TEST_F(NewerLines, DSGetBufferSegmentInfo) {
  InfoQuery query;
  query.size = query.buffer.size();
  EXPECT_EQ(
      LineOf(
          0, &Functions::DSGetBufferSegmentInfo, [&] { Answer<std::uint8_t>(query, 11, 1); }, hDS,
          hBuffer, 7U, 2, &query.type, static_cast<void*>(query.buffer.data()), &query.size),
      Fill("GC_ERR_SUCCESS=DSGetBufferSegmentInfo(hDS=0xFEDCBA9876543210, "
           "hBuffer=0x0000000000005000, iSegmentIndex=7, iCmd=SEGMENT_INFO_IS_INCOMPLETE, "
           "0x{}->(iType=INFO_DATATYPE_BOOL8), 0x{}->(Buffer=1), 0x{}->(iSize=1))",
           Hex16(&query.type), Hex16(query.buffer.data()), Hex16(&query.size)));
  EXPECT_EQ(LineOf(-1016, &Functions::DSGetBufferSegmentInfo, Nothing, hDS, hBuffer, 7U, 4, nullptr,
                   nullptr, nullptr),
            "GC_ERR_BUFFER_TOO_SMALL=DSGetBufferSegmentInfo(hDS=0xFEDCBA9876543210, "
            "hBuffer=0x0000000000005000, iSegmentIndex=7, iCmd=SEGMENT_INFO_DATA_SIZE, "
            "0x0000000000000000->(iType=NULL), 0x0000000000000000->(Buffer=NULL), "
            "0x0000000000000000->(iSize=NULL))");
}

// A success with every output untouched: they show what the consumer had in them.
TEST_F(NewerLines, OfATargetThatTouchesNothing) {
  InfoQuery query;
  query.type = 4711;
  query.size = 2;
  EXPECT_EQ(LineOf(0, &Functions::DSGetBufferSegmentInfo, Nothing, hDS, hBuffer, 0U, 0, &query.type,
                   static_cast<void*>(query.buffer.data()), &query.size),
            Fill("GC_ERR_SUCCESS=DSGetBufferSegmentInfo(hDS=0xFEDCBA9876543210, "
                 "hBuffer=0x0000000000005000, iSegmentIndex=0, iCmd=SEGMENT_INFO_BASE, "
                 "0x{}->(iType=(Unknown INFO_DATATYPE: 4711)), 0x{}->(Buffer=0x{}), "
                 "0x{}->(iSize=2))",
                 Hex16(&query.type), Hex16(query.buffer.data()), Hex16(query.buffer.data()),
                 Hex16(&query.size)));
}

}  // namespace
}  // namespace vextrel_test
