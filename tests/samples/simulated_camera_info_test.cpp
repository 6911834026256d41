// SPDX-License-Identifier: MIT
// The info commands of the modules: types, values and the two-call size query.
#include "camera_fixture.h"

namespace vextrel_test {
namespace {

using Commands = std::initializer_list<BUFFER_INFO_CMD>;

TEST_F(OpenCameraTest, TransportLayerInfo) {
  const auto library = Asking(gentl.GCGetInfo);
  const auto opened = Asking(gentl.TLGetInfo, hTL);
  for (const auto& info : {library, opened}) {
    ExpectText(info(TL_INFO_ID), "VextrelSimulatedCamera");
    ExpectText(info(TL_INFO_VENDOR), "Vextrel");
    ExpectText(info(TL_INFO_MODEL), "Simulated Camera");
    ExpectText(info(TL_INFO_VERSION), "1.0.0");
    ExpectText(info(TL_INFO_TLTYPE), "Custom");
    ExpectText(info(TL_INFO_NAME), "simulated_camera.cti");
    ExpectText(info(TL_INFO_DISPLAYNAME), "Simulated Camera");
    ExpectNumber<int32_t>(info(TL_INFO_CHAR_ENCODING), INFO_DATATYPE_INT32, 0);
    ExpectNumber<uint32_t>(info(TL_INFO_GENTL_VER_MAJOR), INFO_DATATYPE_UINT32, 1);
    ExpectNumber<uint32_t>(info(TL_INFO_GENTL_VER_MINOR), INFO_DATATYPE_UINT32, 1);
    ExpectRefusal(info(TL_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
    ExpectRefusal(info(-1), GC_ERR_NOT_IMPLEMENTED);

    char path[1024];
    size_t size = sizeof(path);
    INFO_DATATYPE type = -1;
    ASSERT_EQ(GC_ERR_SUCCESS, info(TL_INFO_PATHNAME)(&type, path, &size));
    EXPECT_EQ(INFO_DATATYPE_STRING, type);
    const std::string text(path);
    const std::string name = "simulated_camera.cti";
    ASSERT_GT(text.size(), name.size());
    EXPECT_EQ(name, text.substr(text.size() - name.size()));
    EXPECT_NE(std::string::npos, text.find_first_of("/\\"));
  }
  size_t size = 0;
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.TLGetInfo(hDevice, TL_INFO_ID, nullptr, nullptr, &size));
}

TEST_F(OpenCameraTest, InterfaceInfo) {
  const auto listed = Asking(gentl.TLGetInterfaceInfo, hTL, "SimIface1");
  const auto opened = Asking(gentl.IFGetInfo, hIface);
  for (const auto& info : {listed, opened}) {
    ExpectText(info(INTERFACE_INFO_ID), "SimIface1");
    ExpectText(info(INTERFACE_INFO_DISPLAYNAME), "Simulated Interface 1");
    ExpectText(info(INTERFACE_INFO_TLTYPE), "Custom");
    ExpectRefusal(info(INTERFACE_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  }
  size_t size = 0;
  EXPECT_EQ(GC_ERR_INVALID_ID,
            gentl.TLGetInterfaceInfo(hTL, "SimIface2", INTERFACE_INFO_ID, nullptr, nullptr, &size));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.TLGetInterfaceInfo(hTL, nullptr, INTERFACE_INFO_ID, nullptr, nullptr, &size));
}

TEST_F(OpenCameraTest, DeviceInfo) {
  size_t nameSize = 7;
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCWritePort(hPort, 0x60, "Garden", &nameSize));
  const auto listed = Asking(gentl.IFGetDeviceInfo, hIface, "SimCam1");
  const auto opened = Asking(gentl.DevGetInfo, hDevice);
  for (const auto& info : {listed, opened}) {
    ExpectText(info(DEVICE_INFO_ID), "SimCam1");
    ExpectText(info(DEVICE_INFO_VENDOR), "Vextrel");
    ExpectText(info(DEVICE_INFO_MODEL), "Simulated Camera");
    ExpectText(info(DEVICE_INFO_TLTYPE), "Custom");
    ExpectText(info(DEVICE_INFO_DISPLAYNAME), "Simulated Camera 1");
    ExpectText(info(DEVICE_INFO_USER_DEFINED_NAME), "Garden");
    ExpectText(info(DEVICE_INFO_SERIAL_NUMBER), "VSC1001");
    ExpectText(info(DEVICE_INFO_VERSION), "1.0.0");
    ExpectNumber<uint64_t>(info(DEVICE_INFO_TIMESTAMP_FREQUENCY), INFO_DATATYPE_UINT64, 1000000000);
    ExpectRefusal(info(DEVICE_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  }
  ExpectNumber<int32_t>(listed(DEVICE_INFO_ACCESS_STATUS), INFO_DATATYPE_INT32,
                        DEVICE_ACCESS_STATUS_NOACCESS);
  ExpectNumber<int32_t>(opened(DEVICE_INFO_ACCESS_STATUS), INFO_DATATYPE_INT32,
                        DEVICE_ACCESS_STATUS_READWRITE);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevClose(hDevice));
  ExpectNumber<int32_t>(listed(DEVICE_INFO_ACCESS_STATUS), INFO_DATATYPE_INT32,
                        DEVICE_ACCESS_STATUS_READWRITE);

  ExpectText(listed(DEVICE_INFO_USER_DEFINED_NAME), "");

  const auto refusing = Asking(gentl.IFGetDeviceInfo, hIface0, "SimCam0");
  ExpectNumber<int32_t>(refusing(DEVICE_INFO_ACCESS_STATUS), INFO_DATATYPE_INT32,
                        DEVICE_ACCESS_STATUS_NOACCESS);
  size_t size = 0;
  EXPECT_EQ(GC_ERR_INVALID_ID,
            gentl.IFGetDeviceInfo(hIface, "SimCam0", DEVICE_INFO_ID, nullptr, nullptr, &size));
}

TEST_F(OpenCameraTest, StreamInfoAtRest) {
  ExpectText(StreamInfo(STREAM_INFO_ID), "SimCam1-Stream0");
  ExpectNumber<uint64_t>(StreamInfo(STREAM_INFO_NUM_DELIVERED), INFO_DATATYPE_UINT64, 0);
  ExpectNumber<uint64_t>(StreamInfo(STREAM_INFO_NUM_UNDERRUN), INFO_DATATYPE_UINT64, 0);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCED), INFO_DATATYPE_SIZET, 0);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_QUEUED), INFO_DATATYPE_SIZET, 0);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_AWAIT_DELIVERY), INFO_DATATYPE_SIZET, 0);
  ExpectNumber<uint64_t>(StreamInfo(STREAM_INFO_NUM_STARTED), INFO_DATATYPE_UINT64, 0);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_PAYLOAD_SIZE), INFO_DATATYPE_SIZET, 640 * 480);
  ExpectNumber<bool8_t>(StreamInfo(STREAM_INFO_IS_GRABBING), INFO_DATATYPE_BOOL8, 0);
  ExpectNumber<bool8_t>(StreamInfo(STREAM_INFO_DEFINES_PAYLOADSIZE), INFO_DATATYPE_BOOL8, 1);
  ExpectText(StreamInfo(STREAM_INFO_TLTYPE), "Custom");
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_CHUNKS_MAX), INFO_DATATYPE_SIZET, 0);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_NUM_ANNOUNCE_MIN), INFO_DATATYPE_SIZET, 1);
  ExpectNumber<size_t>(StreamInfo(STREAM_INFO_BUF_ALIGNMENT), INFO_DATATYPE_SIZET, 1);
  ExpectRefusal(StreamInfo(STREAM_INFO_FLOW_TABLE), GC_ERR_NOT_AVAILABLE);
  ExpectRefusal(StreamInfo(STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR), GC_ERR_NOT_AVAILABLE);
  ExpectRefusal(StreamInfo(STREAM_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
}

TEST_F(OpenCameraTest, BufferInfoBeforeAnyFrame) {
  int mark = 0;
  char memory[64];
  BUFFER_HANDLE hBuffer = nullptr;
  ASSERT_EQ(GC_ERR_SUCCESS,
            gentl.DSAnnounceBuffer(hStream, memory, sizeof(memory), &mark, &hBuffer));
  ExpectNumber<void*>(BufferInfo(hBuffer, BUFFER_INFO_BASE), INFO_DATATYPE_PTR, memory);
  ExpectNumber<size_t>(BufferInfo(hBuffer, BUFFER_INFO_SIZE), INFO_DATATYPE_SIZET, 64);
  ExpectNumber<void*>(BufferInfo(hBuffer, BUFFER_INFO_USER_PTR), INFO_DATATYPE_PTR, &mark);
  for (const BUFFER_INFO_CMD command : Commands{
           BUFFER_INFO_NEW_DATA, BUFFER_INFO_IS_QUEUED, BUFFER_INFO_IS_ACQUIRING,
           BUFFER_INFO_IS_INCOMPLETE, BUFFER_INFO_IMAGEPRESENT, BUFFER_INFO_DATA_LARGER_THAN_BUFFER,
           BUFFER_INFO_CONTAINS_CHUNKDATA, BUFFER_INFO_IS_COMPOSITE}) {
    ExpectNumber<bool8_t>(BufferInfo(hBuffer, command), INFO_DATATYPE_BOOL8, 0);
  }
  ExpectNumber<size_t>(BufferInfo(hBuffer, BUFFER_INFO_SIZE_FILLED), INFO_DATATYPE_SIZET, 0);
  ExpectText(BufferInfo(hBuffer, BUFFER_INFO_TLTYPE), "Custom");
  for (const BUFFER_INFO_CMD command :
       Commands{BUFFER_INFO_TIMESTAMP, BUFFER_INFO_WIDTH, BUFFER_INFO_FRAMEID,
                BUFFER_INFO_CHUNKLAYOUTID, BUFFER_INFO_FILENAME, BUFFER_INFO_PIXEL_ENDIANNESS,
                BUFFER_INFO_DATA_SIZE, BUFFER_INFO_TIMESTAMP_NS}) {
    ExpectRefusal(BufferInfo(hBuffer, command), GC_ERR_NOT_AVAILABLE);
  }
  ExpectRefusal(BufferInfo(hBuffer, BUFFER_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  ExpectRefusal(BufferInfo(hBuffer, -1), GC_ERR_NOT_IMPLEMENTED);
  ExpectRefusal(BufferInfo(&mark, BUFFER_INFO_BASE), GC_ERR_INVALID_HANDLE);
}

TEST_F(StreamingCameraTest, BufferInfoOfAFrame) {
  const BUFFER_HANDLE hBuffer = AnnounceBuffers(1).front();
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_IS_QUEUED), INFO_DATATYPE_BOOL8, 1);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSStartAcquisition(hStream, ACQ_START_FLAGS_DEFAULT, 1));
  ASSERT_EQ(hBuffer, TakeBuffer(hEvent));

  for (const BUFFER_INFO_CMD command : {BUFFER_INFO_NEW_DATA, BUFFER_INFO_IMAGEPRESENT}) {
    ExpectNumber<bool8_t>(BufferInfo(hBuffer, command), INFO_DATATYPE_BOOL8, 1);
  }
  for (const BUFFER_INFO_CMD command :
       Commands{BUFFER_INFO_IS_QUEUED, BUFFER_INFO_IS_ACQUIRING, BUFFER_INFO_IS_INCOMPLETE,
                BUFFER_INFO_DATA_LARGER_THAN_BUFFER, BUFFER_INFO_CONTAINS_CHUNKDATA,
                BUFFER_INFO_IS_COMPOSITE}) {
    ExpectNumber<bool8_t>(BufferInfo(hBuffer, command), INFO_DATATYPE_BOOL8, 0);
  }
  const std::pair<BUFFER_INFO_CMD, size_t> sizes[] = {
      {BUFFER_INFO_SIZE_FILLED, 640 * 480},
      {BUFFER_INFO_WIDTH, 640},
      {BUFFER_INFO_HEIGHT, 480},
      {BUFFER_INFO_XOFFSET, 0},
      {BUFFER_INFO_YOFFSET, 0},
      {BUFFER_INFO_XPADDING, 0},
      {BUFFER_INFO_YPADDING, 0},
      {BUFFER_INFO_IMAGEOFFSET, 0},
      {BUFFER_INFO_PAYLOADTYPE, 1},
      {BUFFER_INFO_DELIVERED_IMAGEHEIGHT, 480},
      {BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE, 0},
      {BUFFER_INFO_DATA_SIZE, 640 * 480},
  };
  for (const auto& [command, value] : sizes) {
    ExpectNumber<size_t>(BufferInfo(hBuffer, command), INFO_DATATYPE_SIZET, value);
  }
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_FRAMEID), INFO_DATATYPE_UINT64, 0);
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_PIXELFORMAT), INFO_DATATYPE_UINT64,
                         0x01080001);
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_PIXELFORMAT_NAMESPACE),
                         INFO_DATATYPE_UINT64, 4);
  ExpectNumber<int32_t>(BufferInfo(hBuffer, BUFFER_INFO_PIXEL_ENDIANNESS), INFO_DATATYPE_INT32, 1);
  const auto timestamp = NumberOf<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_TIMESTAMP));
  EXPECT_GT(timestamp, 0u);
  ExpectNumber<uint64_t>(BufferInfo(hBuffer, BUFFER_INFO_TIMESTAMP_NS), INFO_DATATYPE_UINT64,
                         timestamp);

  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DSQueueBuffer(hStream, hBuffer));
  ExpectNumber<bool8_t>(BufferInfo(hBuffer, BUFFER_INFO_NEW_DATA), INFO_DATATYPE_BOOL8, 0);
}

TEST_F(OpenCameraTest, PortInfo) {
  struct Case {
    void* handle;
    std::string id, module, portName;
    bool8_t writable;
  };
  const Case cases[] = {
      {hPort, "SimCam1", "Device", "Device", 1},
      {hTL, "VextrelSimulatedCamera", "TLSystem", "TLPort", 0},
      {hIface, "SimIface1", "TLInterface", "InterfacePort", 0},
      {hDevice, "SimCam1", "TLDevice", "DevicePort", 0},
      {hStream, "SimCam1-Stream0", "TLDataStream", "StreamPort", 0},
      {AnnounceBuffers(1).front(), "SimCam1-Stream0-Buffer0", "TLBuffer", "BufferPort", 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.module);
    const auto info = Asking(gentl.GCGetPortInfo, c.handle);
    ExpectText(info(PORT_INFO_ID), c.id);
    ExpectText(info(PORT_INFO_VENDOR), "Vextrel");
    ExpectText(info(PORT_INFO_MODEL), "Simulated Camera");
    ExpectText(info(PORT_INFO_TLTYPE), "Custom");
    ExpectText(info(PORT_INFO_MODULE), c.module);
    ExpectNumber<bool8_t>(info(PORT_INFO_LITTLE_ENDIAN), INFO_DATATYPE_BOOL8, 1);
    ExpectNumber<bool8_t>(info(PORT_INFO_BIG_ENDIAN), INFO_DATATYPE_BOOL8, 0);
    ExpectNumber<bool8_t>(info(PORT_INFO_ACCESS_READ), INFO_DATATYPE_BOOL8, 1);
    ExpectNumber<bool8_t>(info(PORT_INFO_ACCESS_WRITE), INFO_DATATYPE_BOOL8, c.writable);
    ExpectNumber<bool8_t>(info(PORT_INFO_ACCESS_NA), INFO_DATATYPE_BOOL8, 0);
    ExpectNumber<bool8_t>(info(PORT_INFO_ACCESS_NI), INFO_DATATYPE_BOOL8, 0);
    ExpectText(info(PORT_INFO_VERSION), "1.0.0");
    ExpectText(info(PORT_INFO_PORTNAME), c.portName);
    ExpectRefusal(info(PORT_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  }
}

}  // namespace
}  // namespace vextrel_test
