// SPDX-License-Identifier: MIT
// Ports: registers, stacked access, URLs and the descriptions in XML.
#include "camera_fixture.h"

namespace vextrel_test {
namespace {

constexpr uint64_t kModelName = 0x20;
constexpr uint64_t kUserId = 0x60;
constexpr uint64_t kWidth = 0x100;
constexpr uint64_t kHeight = 0x104;
constexpr uint64_t kPixelFormat = 0x108;
constexpr uint64_t kParamsLocked = 0x10C;
constexpr uint64_t kPayloadSize = 0x110;
constexpr uint64_t kFrameRate = 0x118;
constexpr uint64_t kAcquisitionStart = 0x120;
constexpr uint64_t kAcquisitionStop = 0x124;

TEST_F(OpenCameraTest, ReadsRegisters) {
  char name[32];
  size_t size = sizeof(name);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, kModelName, name, &size));
  EXPECT_EQ(sizeof(name), size);
  EXPECT_STREQ("Simulated Camera", name);
  EXPECT_EQ(640u, Read<uint32_t>(kWidth));
  EXPECT_EQ(480u, Read<uint32_t>(kHeight));
  EXPECT_EQ(0x01080001u, Read<uint32_t>(kPixelFormat));
  EXPECT_EQ(0u, Read<uint32_t>(kParamsLocked));
  EXPECT_EQ(307200u, Read<uint64_t>(kPayloadSize));
  EXPECT_EQ(30.0, Read<double>(kFrameRate));
  EXPECT_EQ((uint64_t{480} << 32) + 640, Read<uint64_t>(kWidth)) << "two registers at once";
}

TEST_F(OpenCameraTest, RefusesReadsOutsideTheMap) {
  uint32_t value = 7;
  size_t size = sizeof(value);
  for (const uint64_t address : {uint64_t{0xA0}, uint64_t{0xFE}, uint64_t{0x126}, uint64_t{0x128},
                                 uint64_t{0xFFFF}, ~uint64_t{0}, ~uint64_t{0} - 3}) {
    EXPECT_EQ(GC_ERR_INVALID_ADDRESS, gentl.GCReadPort(hPort, address, &value, &size)) << address;
    EXPECT_EQ(7u, value);
    EXPECT_EQ(GC_ERR_INVALID_ADDRESS, gentl.GCWritePort(hPort, address, &value, &size)) << address;
  }
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCReadPort(hPort, kWidth, nullptr, &size));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCReadPort(hPort, kWidth, &value, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCWritePort(hPort, kWidth, nullptr, &size));
  EXPECT_EQ(GC_ERR_INVALID_HANDLE, gentl.GCReadPort(&value, kWidth, &value, &size));
}

TEST_F(OpenCameraTest, WritesRegisters) {
  EXPECT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kWidth, 320));
  EXPECT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kHeight, 200));
  EXPECT_EQ(320u, Read<uint32_t>(kWidth));
  EXPECT_EQ(64000u, Read<uint64_t>(kPayloadSize));
  EXPECT_EQ(64000u, NumberOf<size_t>(StreamInfo(STREAM_INFO_PAYLOAD_SIZE)));
  EXPECT_EQ(GC_ERR_SUCCESS, Write(kFrameRate, 12.5));
  EXPECT_EQ(12.5, Read<double>(kFrameRate));

  size_t size = 6;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCWritePort(hPort, kUserId, "Garden", &size));
  char name[64];
  size = sizeof(name);
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(hPort, kUserId, name, &size));
  EXPECT_STREQ("Garden", name);

  EXPECT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kAcquisitionStop, 1));
  EXPECT_EQ(0u, Read<uint32_t>(kAcquisitionStop)) << "the command is done";
  EXPECT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kAcquisitionStart, 1));
}

TEST_F(OpenCameraTest, RefusesImpossibleWrites) {
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write<uint32_t>(kWidth, 0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write<uint32_t>(kWidth, 8193));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write<uint16_t>(kWidth, 320)) << "a part of a number";
  EXPECT_EQ(GC_ERR_INVALID_ADDRESS, Write<uint64_t>(kWidth, 320)) << "two registers";
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write(kFrameRate, 0.0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write(kFrameRate, std::numeric_limits<double>::quiet_NaN()));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write<uint32_t>(kAcquisitionStart, 0));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, Write<uint32_t>(kParamsLocked, 2));
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, Write<uint32_t>(kPixelFormat, 0x01080001));
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, Write<uint64_t>(kPayloadSize, 1));
  EXPECT_EQ(640u, Read<uint32_t>(kWidth));
  EXPECT_EQ(30.0, Read<double>(kFrameRate));
}

TEST_F(OpenCameraTest, LocksThePictureSize) {
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kParamsLocked, 1));
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, Write<uint32_t>(kWidth, 320));
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, Write<uint32_t>(kHeight, 200));
  EXPECT_EQ(GC_ERR_SUCCESS, Write(kFrameRate, 5.0));
  ASSERT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kParamsLocked, 0));
  EXPECT_EQ(GC_ERR_SUCCESS, Write<uint32_t>(kWidth, 320));
}

TEST_F(OpenCameraTest, ReadOnlyDevicesCannotBeWritten) {
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevClose(hDevice));
  ASSERT_EQ(GC_ERR_SUCCESS,
            gentl.IFOpenDevice(hIface, "SimCam1", DEVICE_ACCESS_READONLY, &hDevice));
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.DevGetPort(hDevice, &hPort));
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, Write<uint32_t>(kWidth, 320));
  EXPECT_EQ(640u, Read<uint32_t>(kWidth));
}

TEST_F(OpenCameraTest, StackedReadsStopAtTheFirstFailure) {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t nothing = 5;
  uint32_t never = 6;
  PORT_REGISTER_STACK_ENTRY entries[] = {
      {kWidth, &width, 4}, {kHeight, &height, 4}, {0x200, &nothing, 4}, {kPixelFormat, &never, 4}};
  size_t count = 4;
  EXPECT_EQ(GC_ERR_INVALID_ADDRESS, gentl.GCReadPortStacked(hPort, entries, &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(640u, width);
  EXPECT_EQ(480u, height);
  EXPECT_EQ(5u, nothing);
  EXPECT_EQ(6u, never);

  entries[2].Address = kPixelFormat;
  count = 4;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPortStacked(hPort, entries, &count));
  EXPECT_EQ(4u, count);
  EXPECT_EQ(0x01080001u, nothing);
  EXPECT_EQ(0x01080001u, never);

  entries[1].pBuffer = nullptr;
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCReadPortStacked(hPort, entries, &count));
  EXPECT_EQ(1u, count);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCReadPortStacked(hPort, nullptr, &count));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCReadPortStacked(hPort, entries, nullptr));
}

TEST_F(OpenCameraTest, StackedWritesStopAtTheFirstFailure) {
  uint32_t width = 100;
  uint32_t locked = 1;
  uint32_t height = 50;
  PORT_REGISTER_STACK_ENTRY entries[] = {
      {kWidth, &width, 4}, {kParamsLocked, &locked, 4}, {kHeight, &height, 4}};
  size_t count = 3;
  EXPECT_EQ(GC_ERR_ACCESS_DENIED, gentl.GCWritePortStacked(hPort, entries, &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(100u, Read<uint32_t>(kWidth));
  EXPECT_EQ(480u, Read<uint32_t>(kHeight));
  count = 0;
  EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCWritePortStacked(hPort, nullptr, &count));
  EXPECT_EQ(0u, count);
}

TEST_F(OpenCameraTest, UrlInfo) {
  const auto info = Asking(gentl.GCGetPortURLInfo, hPort, 0U);
  const std::pair<URL_INFO_CMD, int32_t> versions[] = {{URL_INFO_SCHEMA_VER_MAJOR, 1},
                                                       {URL_INFO_SCHEMA_VER_MINOR, 1},
                                                       {URL_INFO_FILE_VER_MAJOR, 1},
                                                       {URL_INFO_FILE_VER_MINOR, 0},
                                                       {URL_INFO_FILE_VER_SUBMINOR, 0}};
  for (const auto& [command, version] : versions) {
    ExpectNumber<int32_t>(info(command), INFO_DATATYPE_INT32, version);
  }
  char url[256];
  size_t size = sizeof(url);
  ASSERT_EQ(GC_ERR_SUCCESS, gentl.GCGetPortURL(hPort, url, &size));
  EXPECT_EQ(std::strlen(url) + 1, size);
  ExpectText(info(URL_INFO_URL), url);
  ExpectRefusal(info(URL_INFO_FILE_SHA1_HASH), GC_ERR_NOT_AVAILABLE);
  ExpectNumber<uint64_t>(info(URL_INFO_FILE_REGISTER_ADDRESS), INFO_DATATYPE_UINT64, 0x10000);
  const std::string text(url);
  ExpectNumber<uint64_t>(info(URL_INFO_FILE_SIZE), INFO_DATATYPE_UINT64,
                         std::stoull(text.substr(text.rfind(';') + 1), nullptr, 16));
  ExpectNumber<int32_t>(info(URL_INFO_SCHEME), INFO_DATATYPE_INT32, 0);
  ExpectText(info(URL_INFO_FILENAME), "SimulatedCamera.xml");
  ExpectRefusal(info(URL_INFO_CUSTOM_ID), GC_ERR_NOT_IMPLEMENTED);
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER,
            gentl.GCGetPortURLInfo(hPort, 1, URL_INFO_URL, nullptr, nullptr, &size));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCGetPortURL(hPort, nullptr, nullptr));
  EXPECT_EQ(GC_ERR_INVALID_PARAMETER, gentl.GCGetNumPortURLs(hPort, nullptr));
}

// True if every element of the document is closed in its place. Knows no comments or CDATA.
bool IsWellFormed(const std::string& xml) {
  std::vector<std::string> open;
  size_t at = xml.find("?>");
  while ((at = xml.find('<', at)) != std::string::npos) {
    const size_t end = xml.find('>', at);
    if (end == std::string::npos) {
      return false;
    }
    const std::string tag = xml.substr(at + 1, end - at - 1);
    at = end;
    if (tag.front() == '/') {
      if (open.empty() || open.back() != tag.substr(1)) {
        return false;
      }
      open.pop_back();
    } else if (tag.back() != '/') {
      open.push_back(tag.substr(0, tag.find_first_of(" \n")));
    } else {
      continue;
    }
    if (open.empty() && xml.find_first_not_of(" \n", end + 1) != std::string::npos) {
      return false;
    }
  }
  return open.empty();
}

class DescriptionTest : public OpenCameraTest {
 protected:
  // Fetches the description as its URL says, in one read.
  std::string Description(PORT_HANDLE port, std::string& name) {
    uint32_t count = 0;
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCGetNumPortURLs(port, &count));
    EXPECT_EQ(1u, count);
    char url[256];
    size_t size = sizeof(url);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCGetPortURL(port, url, &size));
    const std::string text(url);
    const size_t first = text.find(';');
    const size_t second = text.find(';', first + 1);
    EXPECT_EQ(0u, text.find("local:"));
    if (second == std::string::npos) {
      ADD_FAILURE() << text;
      return {};
    }
    name = text.substr(6, first - 6);
    std::string xml(std::stoull(text.substr(second + 1), nullptr, 16), '\0');
    size = xml.size();
    EXPECT_EQ(GC_ERR_SUCCESS,
              gentl.GCReadPort(port, std::stoull(text.substr(first + 1), nullptr, 16), xml.data(),
                               &size));
    EXPECT_EQ(xml.size(), size);
    EXPECT_TRUE(IsWellFormed(xml)) << xml;
    EXPECT_EQ(0u, xml.find("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<RegisterDescription "));
    return xml;
  }
};

TEST_F(DescriptionTest, OfTheCamera) {
  std::string name;
  const std::string xml = Description(hPort, name);
  EXPECT_EQ("SimulatedCamera.xml", name);
  for (const char* node :
       {"<Integer Name=\"Width\"", "<Integer Name=\"Height\"", "<Enumeration Name=\"PixelFormat\"",
        "<Integer Name=\"PayloadSize\"", "<Float Name=\"AcquisitionFrameRate\"",
        "<Command Name=\"AcquisitionStart\"", "<Command Name=\"AcquisitionStop\"",
        "<StringReg Name=\"DeviceModelName\"", "<Integer Name=\"TLParamsLocked\"",
        "<Port Name=\"Device\"/>"}) {
    EXPECT_NE(std::string::npos, xml.find(node)) << node;
  }
  for (const char* reg :
       {"\"WidthReg\">\n    <Address>0x100<", "\"HeightReg\">\n    <Address>0x104<",
        "\"PayloadSizeReg\">\n    <Address>0x110<"}) {
    EXPECT_NE(std::string::npos, xml.find(reg)) << reg;
  }
}

TEST_F(DescriptionTest, OfTheOtherModules) {
  const std::pair<void*, std::string> modules[] = {{hTL, "TLID"},
                                                   {hIface, "InterfaceID"},
                                                   {hDevice, "DeviceID"},
                                                   {hStream, "StreamID"},
                                                   {AnnounceBuffers(1).front(), "BufferID"}};
  for (const auto& [handle, feature] : modules) {
    std::string name;
    const std::string xml = Description(handle, name);
    EXPECT_NE(std::string::npos, xml.find("<StringReg Name=\"" + feature + "\"")) << xml;
    EXPECT_EQ(std::string::npos, xml.find('@'));

    char id[64];
    size_t size = sizeof(id);
    EXPECT_EQ(GC_ERR_SUCCESS, gentl.GCReadPort(handle, 0, id, &size));
    ExpectText(Asking(gentl.GCGetPortInfo, handle)(PORT_INFO_ID), id);
    EXPECT_EQ(GC_ERR_ACCESS_DENIED, gentl.GCWritePort(handle, 0, id, &size));
  }
}

}  // namespace
}  // namespace vextrel_test
