// SPDX-License-Identifier: MIT
// What the newer functions tell of the extended camera: its frames of 16 x 4 pixels have two
// parts of 64 bytes and two chunks of 8 bytes.
#include <algorithm>

#include "camera_fixture.h"

namespace vextrel_test {
namespace {

struct NewerFunctions {
  explicit NewerFunctions(const Module& loaded) : module(loaded) {}

  template <class Signature>
  [[nodiscard]] Signature* Find(const char* name) const {
    auto* const function = module.Find<Signature>(name);
    EXPECT_NE(nullptr, function) << name;
    return function;
  }

  const Module& module;
  decltype(&::DSGetBufferChunkData) DSGetBufferChunkData =
      Find<decltype(::DSGetBufferChunkData)>("DSGetBufferChunkData");
  decltype(&::IFGetParentTL) IFGetParentTL = Find<decltype(::IFGetParentTL)>("IFGetParentTL");
  decltype(&::DevGetParentIF) DevGetParentIF = Find<decltype(::DevGetParentIF)>("DevGetParentIF");
  decltype(&::DSGetParentDev) DSGetParentDev = Find<decltype(::DSGetParentDev)>("DSGetParentDev");
  decltype(&::DSGetNumBufferParts) DSGetNumBufferParts =
      Find<decltype(::DSGetNumBufferParts)>("DSGetNumBufferParts");
  decltype(&::DSGetBufferPartInfo) DSGetBufferPartInfo =
      Find<decltype(::DSGetBufferPartInfo)>("DSGetBufferPartInfo");
  decltype(&::DSAnnounceCompositeBuffer) DSAnnounceCompositeBuffer =
      Find<decltype(::DSAnnounceCompositeBuffer)>("DSAnnounceCompositeBuffer");
  decltype(&::DSGetBufferInfoStacked) DSGetBufferInfoStacked =
      Find<decltype(::DSGetBufferInfoStacked)>("DSGetBufferInfoStacked");
  decltype(&::DSGetBufferPartInfoStacked) DSGetBufferPartInfoStacked =
      Find<decltype(::DSGetBufferPartInfoStacked)>("DSGetBufferPartInfoStacked");
  decltype(&::DSGetNumFlows) DSGetNumFlows = Find<decltype(::DSGetNumFlows)>("DSGetNumFlows");
  decltype(&::DSGetFlowInfo) DSGetFlowInfo = Find<decltype(::DSGetFlowInfo)>("DSGetFlowInfo");
  decltype(&::DSGetNumBufferSegments) DSGetNumBufferSegments =
      Find<decltype(::DSGetNumBufferSegments)>("DSGetNumBufferSegments");
  decltype(&::DSGetBufferSegmentInfo) DSGetBufferSegmentInfo =
      Find<decltype(::DSGetBufferSegmentInfo)>("DSGetBufferSegmentInfo");
};

class ExtendedCameraTest : public StreamingCameraTest {
 public:
  // Announces the memory and returns the buffer once the first frame has filled it.
  BUFFER_HANDLE GrabInto(std::string* memory) {
    BUFFER_HANDLE hBuffer = nullptr;
    EXPECT_EQ(GC_ERR_SUCCESS,
              gentl.DSAnnounceBuffer(hStream, memory->data(), memory->size(), nullptr, &hBuffer));
    Grab(hBuffer);
    return hBuffer;
  }

  void Grab(BUFFER_HANDLE hBuffer) {
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, 1));
    EXPECT_EQ(hBuffer, TakeBuffer(hEvent));
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSStopAcquisition(hStream, ACQ_STOP_FLAGS_DEFAULT));
  }

  [[nodiscard]] Query PartInfo(BUFFER_HANDLE hBuffer, uint32_t part,
                               BUFFER_PART_INFO_CMD command) const {
    return Asking(newer.DSGetBufferPartInfo, hStream, hBuffer, part)(command);
  }
  [[nodiscard]] Query SegmentInfo(BUFFER_HANDLE hBuffer, uint32_t segment,
                                  SEGMENT_INFO_CMD command) const {
    return Asking(newer.DSGetBufferSegmentInfo, hStream, hBuffer, segment)(command);
  }

  const EnvironmentSetting widthSetting{"VEXTREL_CAMERA_WIDTH", "16"};
  const EnvironmentSetting heightSetting{"VEXTREL_CAMERA_HEIGHT", "4"};
  const NewerFunctions newer{gentl.module};
};

TEST_F(ExtendedCameraTest, SaysThatItIsOfGenTL16) {
  const auto info = Asking(gentl.GCGetInfo);
  ExpectNumber<uint32_t>(info(TL_INFO_GENTL_VER_MAJOR), INFO_DATATYPE_UINT32, 1);
  ExpectNumber<uint32_t>(info(TL_INFO_GENTL_VER_MINOR), INFO_DATATYPE_UINT32, 6);
  ExpectText(info(TL_INFO_NAME), "simulated_camera_extended.cti");
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_PAYLOAD_SIZE), INFO_DATATYPE_SIZET, 144);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_CHUNKS_MAX), INFO_DATATYPE_SIZET, 2);
  EXPECT_EQ(144u, Read<uint64_t>(0x110)) << "the register PayloadSize";
  ExpectText(Asking(gentl.DevGetInfo, hDevice)(DEVICE_INFO_SERIAL_NUMBER), "VSC1001");
}

TEST_F(ExtendedCameraTest, KnowsTheParents) {
  void* parent = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetParentDev(hStream, &parent));
  EXPECT_EQ(hDevice, parent);
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DevGetParentIF(hDevice, &parent));
  EXPECT_EQ(hIface, parent);
  EXPECT_EQ(GC_ERR_SUCCESS, newer.IFGetParentTL(hIface, &parent));
  EXPECT_EQ(hTL, parent);
  EXPECT_EQ(GC_ERR_SUCCESS, newer.IFGetParentTL(hIface0, &parent));
  EXPECT_EQ(hTL, parent);

  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.DSGetParentDev(hStream, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.DevGetParentIF(hDevice, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.IFGetParentTL(hIface, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DSGetParentDev(hDevice, &parent));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DevGetParentIF(hIface, &parent));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.IFGetParentTL(nullptr, &parent));
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSClose(hStream));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DSGetParentDev(hStream, &parent));
}

TEST_F(ExtendedCameraTest, FillsTwoPartsAndTwoChunks) {
  std::string memory(150, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  std::string image;
  std::string confidence;
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 16; ++x) {
      image += static_cast<char>(x + y);
      confidence += static_cast<char>(255 - x - y);
    }
  }
  const auto timestamp = NumberOf<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_TIMESTAMP));
  EXPECT_EQ(image, memory.substr(0, 64));
  EXPECT_EQ(confidence, memory.substr(64, 64));
  EXPECT_EQ(BytesOf(uint64_t{0}), memory.substr(128, 8)) << "the frame ID";
  EXPECT_EQ(BytesOf(timestamp), memory.substr(136, 8));
  EXPECT_EQ("??????", memory.substr(144));
}

TEST_F(ExtendedCameraTest, BufferInfoDescribesTheImage) {
  std::string memory(150, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  const std::pair<BUFFER_INFO_CMD, size_t> sizes[] = {
      {BUFFER_INFO_SIZE, 150},       {BUFFER_INFO_SIZE_FILLED, 144},
      {BUFFER_INFO_WIDTH, 16},       {BUFFER_INFO_HEIGHT, 4},
      {BUFFER_INFO_IMAGEOFFSET, 0},  {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 4},
      {BUFFER_INFO_PAYLOADTYPE, 10}, {BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, 16},
      {BUFFER_INFO_DATA_SIZE, 144},
  };
  for (const auto& [command, value] : sizes) {
    ExpectNumber<size_t>(BufferInfo(hBuffer, command), INFO_DATATYPE_SIZET, value);
  }
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_PIXELFORMAT), INFO_DATATYPE_UINT64,
                         0x01080001);
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_CHUNKLAYOUTID), INFO_DATATYPE_UINT64, 1);
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_CONTAINS_CHUNKDATA), INFO_DATATYPE_BOOL8,
                        1);
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_COMPOSITE), INFO_DATATYPE_BOOL8, 0);
}

TEST_F(ExtendedCameraTest, DescribesTheParts) {
  std::string memory(144, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetNumBufferParts(hStream, hBuffer, &count));
  ASSERT_EQ(2u, count);
  ExpectNumber<void*>(PartInfo(hBuffer, 0, BUFFER_PART_INFO_BASE), INFO_DATATYPE_PTR,
                      memory.data());
  ExpectNumber<void*>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_BASE), INFO_DATATYPE_PTR,
                      memory.data() + 64);
  ExpectNumber<size_t>(PartInfo(hBuffer, 0, BUFFER_PART_INFO_DATA_TYPE), INFO_DATATYPE_SIZET, 1);
  ExpectNumber<size_t>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_DATA_TYPE), INFO_DATATYPE_SIZET, 9);
  ExpectNumber<uint64_t>(PartInfo(hBuffer, 0, BUFFER_PART_INFO_DATA_FORMAT), INFO_DATATYPE_UINT64,
                         0x01080001);
  ExpectNumber<uint64_t>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_DATA_FORMAT), INFO_DATATYPE_UINT64,
                         0x010800C6);
  ExpectNumber<uint64_t>(PartInfo(hBuffer, 0, BUFFER_PART_INFO_DATA_PURPOSE_ID),
                         INFO_DATATYPE_UINT64, 0);
  ExpectNumber<uint64_t>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_DATA_PURPOSE_ID),
                         INFO_DATATYPE_UINT64, 1);
  const std::pair<BUFFER_PART_INFO_CMD, size_t> sizes[] = {
      {BUFFER_PART_INFO_DATA_SIZE, 64},
      {BUFFER_PART_INFO_WIDTH, 16},
      {BUFFER_PART_INFO_HEIGHT, 4},
      {BUFFER_PART_INFO_XOFFSET, 0},
      {BUFFER_PART_INFO_YOFFSET, 0},
      {BUFFER_PART_INFO_XPADDING, 0},
      {BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT, 4},
  };
  const std::pair<BUFFER_PART_INFO_CMD, uint64_t> numbers[] = {
      {BUFFER_PART_INFO_DATA_FORMAT_NAMESPACE, 4},
      {BUFFER_PART_INFO_SOURCE_ID, 0},
      {BUFFER_PART_INFO_REGION_ID, 0},
  };
  for (uint32_t part = 0; part < 2; ++part) {
    for (const auto& [command, value] : sizes) {
      ExpectNumber<size_t>(PartInfo(hBuffer, part, command), INFO_DATATYPE_SIZET, value);
    }
    for (const auto& [command, value] : numbers) {
      ExpectNumber<uint64_t>(PartInfo(hBuffer, part, command), INFO_DATATYPE_UINT64, value);
    }
    ExpectRefusal(PartInfo(hBuffer, part, BUFFER_PART_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  }
  ExpectRefusal(PartInfo(hBuffer, 2, BUFFER_PART_INFO_BASE), GC_ERR_INVALID_INDEX);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.DSGetNumBufferParts(hStream, hBuffer, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DSGetNumBufferParts(hStream, hStream, &count));
}

TEST_F(ExtendedCameraTest, ListsTheChunks) {
  std::string memory(144, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  size_t count = 77;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferChunkData(hStream, hBuffer, nullptr, &count));
  EXPECT_EQ(2u, count);
  SINGLE_CHUNK_DATA chunks[3] = {{1, 1, 1}, {1, 1, 1}, {5, 6, 7}};
  count = 1;
  EXPECT_EQ(GC_ERR_BUFFER_TOO_SMALL, newer.DSGetBufferChunkData(hStream, hBuffer, chunks, &count));
  EXPECT_EQ(2u, count);
  count = 3;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferChunkData(hStream, hBuffer, chunks, &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(0x1001u, uint64_t{chunks[0].ChunkID});
  EXPECT_EQ(128, ptrdiff_t{chunks[0].ChunkOffset});
  EXPECT_EQ(8u, size_t{chunks[0].ChunkLength});
  EXPECT_EQ(0x1002u, uint64_t{chunks[1].ChunkID});
  EXPECT_EQ(136, ptrdiff_t{chunks[1].ChunkOffset});
  EXPECT_EQ(8u, size_t{chunks[1].ChunkLength});
  EXPECT_EQ(5u, uint64_t{chunks[2].ChunkID});
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            newer.DSGetBufferChunkData(hStream, hBuffer, chunks, nullptr));
}

TEST_F(ExtendedCameraTest, HasNothingToTellBeforeTheFirstFrame) {
  const BUFFER_HANDLE hBuffer = AnnounceBuffers(1).front();
  uint32_t parts = 0;
  size_t chunks = 0;
  EXPECT_EQ(GC_ERR_NO_DATA, newer.DSGetNumBufferParts(hStream, hBuffer, &parts));
  EXPECT_EQ(GC_ERR_NO_DATA, newer.DSGetBufferChunkData(hStream, hBuffer, nullptr, &chunks));
  ExpectRefusal(PartInfo(hBuffer, 0, BUFFER_PART_INFO_BASE), GC_ERR_NO_DATA);
}

TEST_F(ExtendedCameraTest, CutsAFrameThatDoesNotFit) {
  std::string memory(100, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  EXPECT_EQ(64u, NumberOf<size_t>(PartInfo(hBuffer, 0, BUFFER_PART_INFO_DATA_SIZE)));
  EXPECT_EQ(36u, NumberOf<size_t>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_DATA_SIZE)));
  EXPECT_EQ(2u, NumberOf<size_t>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT)));
  size_t chunks = 9;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferChunkData(hStream, hBuffer, nullptr, &chunks));
  EXPECT_EQ(0u, chunks);
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_INCOMPLETE), INFO_DATATYPE_BOOL8, 1);
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER),
                        INFO_DATATYPE_BOOL8, 1);
}

TEST_F(ExtendedCameraTest, HasOneFlow) {
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetNumFlows(hStream, &count));
  EXPECT_EQ(1u, count);
  ExpectNumber<size_t>(Asking(newer.DSGetFlowInfo, hStream, 0u)(FLOW_INFO_SIZE),
                       INFO_DATATYPE_SIZET, 144);
  ExpectRefusal(Asking(newer.DSGetFlowInfo, hStream, 1u)(FLOW_INFO_SIZE), GC_ERR_INVALID_INDEX);
  ExpectRefusal(Asking(newer.DSGetFlowInfo, hStream, 0u)(FLOW_INFO_CUSTOM_ID),
                GC_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.DSGetNumFlows(hStream, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DSGetNumFlows(hDevice, &count));
}

TEST_F(ExtendedCameraTest, FillsTheFirstSegmentOfACompositeBuffer) {
  std::string first(144, '?');
  std::string second(32, '?');
  void* segments[] = {first.data(), second.data()};
  size_t sizes[] = {144, 32};
  int mark = 0;
  BUFFER_HANDLE hBuffer = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS,
            newer.DSAnnounceCompositeBuffer(hStream, 2, segments, sizes, &mark, &hBuffer));
  EXPECT_EQ(1u, NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCED)));
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetNumBufferSegments(hStream, hBuffer, &count));
  EXPECT_EQ(2u, count);
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_COMPOSITE), INFO_DATATYPE_BOOL8, 1);
  ExpectRefusal(BufferInfo(hBuffer, BUFFER_INFO_BASE), GC_ERR_AMBIGUOUS);
  ExpectRefusal(BufferInfo(hBuffer, BUFFER_INFO_SIZE), GC_ERR_AMBIGUOUS);
  ExpectNumber<size_t>(SegmentInfo(hBuffer, 0, SEGMENT_INFO_DATA_SIZE), INFO_DATATYPE_SIZET, 0);

  Grab(hBuffer);
  EXPECT_EQ(std::string(32, '?'), second);
  const struct {
    uint32_t segment;
    void* base;
    size_t size, filled;
  } cases[] = {{0, first.data(), 144, 144}, {1, second.data(), 32, 0}};
  for (const auto& c : cases) {
    ExpectNumber<void*>(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_BASE), INFO_DATATYPE_PTR,
                        c.base);
    ExpectNumber<size_t>(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_SIZE), INFO_DATATYPE_SIZET,
                         c.size);
    ExpectNumber<bool8_t>(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_IS_INCOMPLETE),
                          INFO_DATATYPE_BOOL8, 0);
    ExpectNumber<size_t>(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_SIZE_FILLED),
                         INFO_DATATYPE_SIZET, c.filled);
    ExpectNumber<size_t>(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_DATA_SIZE),
                         INFO_DATATYPE_SIZET, c.filled);
    ExpectRefusal(SegmentInfo(hBuffer, c.segment, SEGMENT_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  }
  ExpectRefusal(SegmentInfo(hBuffer, 2, SEGMENT_INFO_SIZE), GC_ERR_INVALID_INDEX);
  ExpectNumber<void*>(PartInfo(hBuffer, 1, BUFFER_PART_INFO_BASE), INFO_DATATYPE_PTR,
                      first.data() + 64);

  void* memory = &mark;
  void* userPointer = nullptr;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.DSRevokeBuffer(hStream, hBuffer, &memory, &userPointer));
  EXPECT_EQ(nullptr, memory) << "there is no single piece of memory";
  EXPECT_EQ(&mark, userPointer);
}

TEST_F(ExtendedCameraTest, RefusesImpossibleCompositeBuffers) {
  char memory[64];
  void* segments[] = {memory, memory + 32};
  size_t sizes[] = {32, 32};
  BUFFER_HANDLE hBuffer = nullptr;
  const auto announce = [&](size_t count) {
    return newer.DSAnnounceCompositeBuffer(hStream, count, segments, sizes, nullptr, &hBuffer);
  };
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, announce(0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            newer.DSAnnounceCompositeBuffer(hStream, 2, nullptr, sizes, nullptr, &hBuffer));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            newer.DSAnnounceCompositeBuffer(hStream, 2, segments, nullptr, nullptr, &hBuffer));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            newer.DSAnnounceCompositeBuffer(hStream, 2, segments, sizes, nullptr, nullptr));
  sizes[1] = 0;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, announce(2));
  sizes[1] = 32;
  segments[1] = memory;
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, announce(2)) << "the same memory twice";
  segments[1] = nullptr;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, announce(2));
  EXPECT_EQ(nullptr, hBuffer);
  EXPECT_EQ(0u, NumberOf<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCED)));

  EXPECT_EQ(GC_ERR_SUCCESS, announce(1));
  EXPECT_EQ(GC_ERR_RESOURCE_IN_USE, gentl.DSAnnounceBuffer(hStream, memory, 32, nullptr, &hBuffer));
}

TEST_F(ExtendedCameraTest, CountsAPlainBufferAsOneSegment) {
  std::string memory(144, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetNumBufferSegments(hStream, hBuffer, &count));
  EXPECT_EQ(1u, count);
  ExpectNumber<void*>(SegmentInfo(hBuffer, 0, SEGMENT_INFO_BASE), INFO_DATATYPE_PTR, memory.data());
  ExpectNumber<size_t>(SegmentInfo(hBuffer, 0, SEGMENT_INFO_SIZE_FILLED), INFO_DATATYPE_SIZET, 144);
}

TEST_F(ExtendedCameraTest, AnswersStackedBufferQueriesOneByOne) {
  std::string memory(144, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLClose(nullptr));
  size_t width = 1;
  size_t untouched = 5;
  DS_BUFFER_INFO_STACKED entries[] = {
      {BUFFER_INFO_WIDTH, 77, &width, sizeof width, 77},
      {BUFFER_INFO_HEIGHT, 77, nullptr, 0, 77},
      {BUFFER_INFO_CUSTOM_ID, 77, &untouched, sizeof untouched, 77},
      {BUFFER_INFO_SIZE_FILLED, 77, &untouched, 7, 77},
  };
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferInfoStacked(hStream, hBuffer, entries, 4));
  EXPECT_EQ(GC_ERR_SUCCESS, GC_ERROR{entries[0].iResult});
  EXPECT_EQ(INFO_DATATYPE_SIZET, INFO_DATATYPE{entries[0].iType});
  EXPECT_EQ(8u, size_t{entries[0].iSize});
  EXPECT_EQ(16u, width);
  EXPECT_EQ(GC_ERR_SUCCESS, GC_ERROR{entries[1].iResult}) << "a query for the size alone";
  EXPECT_EQ(8u, size_t{entries[1].iSize});
  EXPECT_EQ(GC_ERR_NOT_IMPLEMENTED, GC_ERROR{entries[2].iResult});
  EXPECT_EQ(INFO_DATATYPE_UNKNOWN, INFO_DATATYPE{entries[2].iType});
  EXPECT_EQ(GC_ERR_BUFFER_TOO_SMALL, GC_ERROR{entries[3].iResult});
  EXPECT_EQ(8u, size_t{entries[3].iSize});
  EXPECT_EQ(5u, untouched);

  GC_ERROR lastError = GC_ERR_SUCCESS;
  char text[256];
  size_t size = sizeof text;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCGetLastError(&lastError, text, &size));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, lastError) << "the results of entries do not count";

  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferInfoStacked(hStream, hBuffer, nullptr, 0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, newer.DSGetBufferInfoStacked(hStream, hBuffer, nullptr, 1));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, newer.DSGetBufferInfoStacked(hStream, hStream, entries, 4));
}

TEST_F(ExtendedCameraTest, AnswersStackedPartQueriesOneByOne) {
  std::string memory(144, '?');
  const BUFFER_HANDLE hBuffer = GrabInto(&memory);
  size_t types[] = {0, 0};
  uint64_t format = 5;
  DS_BUFFER_PART_INFO_STACKED entries[] = {
      {0, BUFFER_PART_INFO_DATA_TYPE, 77, 77, types + 0, sizeof types[0]},
      {1, BUFFER_PART_INFO_DATA_TYPE, 77, 77, types + 1, sizeof types[1]},
      {2, BUFFER_PART_INFO_DATA_FORMAT, 77, 77, &format, sizeof format},
  };
  EXPECT_EQ(GC_ERR_SUCCESS, newer.DSGetBufferPartInfoStacked(hStream, hBuffer, entries, 3));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(GC_ERR_SUCCESS, GC_ERROR{entries[i].iResult});
    EXPECT_EQ(INFO_DATATYPE_SIZET, INFO_DATATYPE{entries[i].iType});
    EXPECT_EQ(8u, size_t{entries[i].iSize});
  }
  EXPECT_EQ(1u, types[0]);
  EXPECT_EQ(9u, types[1]);
  EXPECT_EQ(GC_ERR_INVALID_INDEX, GC_ERROR{entries[2].iResult});
  EXPECT_EQ(INFO_DATATYPE_UNKNOWN, INFO_DATATYPE{entries[2].iType});
  EXPECT_EQ(5u, format);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            newer.DSGetBufferPartInfoStacked(hStream, hBuffer, nullptr, 1));
}

TEST_F(ExtendedCameraTest, RefusesCallsUnlessInitialized) {
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCCloseLib());
  uint32_t count = 0;
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, newer.DSGetNumFlows(hStream, &count));
  EXPECT_EQ(GC_ERR_NOT_INITIALIZED, newer.DSGetNumBufferParts(hStream, hStream, &count));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCInitLib());
}

}  // namespace
}  // namespace vextrel_test
