// SPDX-License-Identifier: MIT
#include <cstring>

#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

class LibraryPort : public ExportsTest {
 protected:
  const PORT_HANDLE port = Handle(0x7000);
};

TEST_F(LibraryPort, GCGetInfoShowsTheValueWithoutTheBuffersAddress) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerText("acme"); },
              .line = "GCGetInfo(iInfoCmd=TL_INFO_VENDOR, "
                      "0x{2}->(iType=INFO_DATATYPE_STRING), Buffer='acme', 0x{4}->(iSize=5))"},
             &Functions::GCGetInfo, 1, &query.type, query.buffer.data(), &query.size);
}

TEST_F(LibraryPort, GCGetInfoOfTheSizeAlone) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerSize(1, 0x100000007); },
              .line = "GCGetInfo(iInfoCmd=(Unknown TL_INFO_CMD: 1000), "
                      "0x{2}->(iType=INFO_DATATYPE_STRING), Buffer=NULL, 0x{4}->(iSize=7))"},
             &Functions::GCGetInfo, 1000, &query.type, nullptr, &query.size);
}

TEST_F(LibraryPort, GCGetLastErrorsValuesShiftByOnePlace) {
  GC_ERROR code = 0;
  std::array<char, 16> text{};
  std::size_t size = text.size();
  // The size's bytes, read as a text, are "ABCDE".
  const auto target = [&] {
    code = -1010;
    std::strcpy(text.data(), "no link");
    size = 0x4544434241;
  };
  ExpectLine({.target = target,
              .line = "GCGetLastError(0x<address>->(ErrorCode=no link), "
                      "0x{2}->(pErrorText=ABCDE), 0x0000004544434241->(iSize=0))"},
             &Functions::GCGetLastError, &code, text.data(), &size);
}

TEST_F(LibraryPort, GCGetLastErrorOfNoText) {
  GC_ERROR code = 0;
  std::size_t size = 0x41;
  // What stands for a null text lies somewhere in the proxy.
  ExpectLine({.line = "GCGetLastError(0x<address>->(ErrorCode=(null)), "
                      "0x<address>->(pErrorText=A), 0x0000000000000041->(iSize=0))"},
             &Functions::GCGetLastError, &code, nullptr, &size);
}

TEST_F(LibraryPort, GCReadPortShowsTheDataAsTextUpToTheFirstZeroByteAndDumped) {
  std::array<char, 8> data{};
  std::size_t size = 4;
  // No zero byte among the four that were read: the text goes on to the first one behind them.
  ExpectLine({.target = [&] { std::strcpy(data.data(), "ABCDEF"); },
              .line = "GCReadPort(hPort=0x0000000000007000, iAddress=0xfedcba9876543210, "
                      "0x{3}->(Buffer=ABCDEF,0x41,0x42,0x43,0x44), 0x{4}->(iSize=4)"},
             &Functions::GCReadPort, port, 0xFEDCBA9876543210U, data.data(), &size);
}

TEST_F(LibraryPort, GCReadPortOfDataThatBeginWithAZeroByte) {
  std::array<std::uint8_t, 3> data = {0x00, 0x0a, 0xff};
  std::size_t size = data.size();
  ExpectLine({.line = "GCReadPort(hPort=0x0000000000007000, iAddress=0x10, "
                      "0x{3}->(Buffer=,0x00,0x0a,0xff), 0x{4}->(iSize=3)"},
             &Functions::GCReadPort, port, 0x10U, data.data(), &size);
}

TEST_F(LibraryPort, GCReadPortDividesTheDumpAfterSixteenBytes) {
  std::array<std::uint8_t, 17> data{};
  std::size_t size = data.size();
  EXPECT_EQ(proxy.GCReadPort(port, 0x10, data.data(), &size), 0);
  EXPECT_THAT(TakeLines(),
              Lines(Fill("INFO GC_ERR_SUCCESS=GCReadPort(hPort=0x0000000000007000, iAddress=0x10, "
                         "0x{}->(Buffer=,0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,"
                         "0x00,0x00,0x00,0x00,0x00,0x00,0x00,0x00,",
                         Hex16(data.data())),
                    Fill("0x00), 0x{}->(iSize=17)", Hex16(&size))));
}

TEST_F(LibraryPort, GCReadPortOfASizeAbove32Bits) {
  std::size_t size = 0x1FFFFFFFE;
  ExpectLine({.line = "GCReadPort(hPort=0x0000000000007000, iAddress=0x0, "
                      "0x0000000000000000->(Buffer=(null),), 0x{4}->(iSize=4294967294)"},
             &Functions::GCReadPort, port, 0U, nullptr, &size);
}

TEST_F(LibraryPort, GCWritePortShowsTheDataDumped) {
  const std::array<std::uint8_t, 4> data = {1, 2, 0x0a, 0xff};
  std::size_t size = data.size();
  ExpectLine({.line = "GCWritePort(hPort=0x0000000000007000, iAddress=0xabcdef, "
                      "0x{3}->(Buffer=0x01,0x02,0x0a,0xff), 0x{4}->(iSize=4)"},
             &Functions::GCWritePort, port, 0xABCDEFU, data.data(), &size);
}

TEST_F(LibraryPort, GCWritePortOfASizeAbove32Bits) {
  std::size_t size = 0x100000003;
  ExpectLine({.line = "GCWritePort(hPort=0x0000000000007000, iAddress=0xffffffffffffffff, "
                      "0x0000000000000000->(Buffer=), 0x{4}->(iSize=3)"},
             &Functions::GCWritePort, port, 0xFFFFFFFFFFFFFFFFU, nullptr, &size);
}

TEST_F(LibraryPort, GCGetPortURL) {
  std::array<char, 32> url{};
  std::size_t size = 0;
  const auto target = [&] {
    std::strcpy(url.data(), "local:a.xml;1000;20");
    size = 0x100000014;
  };
  ExpectLine({.target = target,
              .line = "GCGetPortURL(hPort=0x0000000000007000, "
                      "0x{2}->(URL=local:a.xml;1000;20), 0x{3}->(iSize=20))"},
             &Functions::GCGetPortURL, port, url.data(), &size);
}

TEST_F(LibraryPort, GCGetPortURLOfTheSizeAlone) {
  std::size_t size = 0;
  ExpectLine({.target = [&] { size = 20; },
              .line = "GCGetPortURL(hPort=0x0000000000007000, "
                      "0x0000000000000000->(URL=NULL), 0x{3}->(iSize=20))"},
             &Functions::GCGetPortURL, port, nullptr, &size);
}

TEST_F(LibraryPort, GCGetNumPortURLs) {
  std::uint32_t count = 0;
  ExpectLine({.target = [&] { count = 4294967295; },
              .line = "GCGetNumPortURLs(hPort=0x0000000000007000, "
                      "0x{2}->(iNumURLs=4294967295))"},
             &Functions::GCGetNumPortURLs, port, &count);
}

TEST_F(LibraryPort, GCGetPortInfoEndsWithTheSizeWithoutALabel) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerText("Device"); },
              .line = "GCGetPortInfo(hPort=0x0000000000007000, iCmd=PORT_INFO_MODULE, "
                      "0x{3}->(iType=INFO_DATATYPE_STRING) 0x{4}->(Buffer='Device'), 0x{5}->(7))"},
             &Functions::GCGetPortInfo, port, 4, &query.type, query.buffer.data(), &query.size);
}

TEST_F(LibraryPort, GCGetPortInfoOfTheSizeAlone) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerSize(11, 0x100000001); },
              .line = "GCGetPortInfo(hPort=0x0000000000007000, "
                      "iCmd=(Unknown PORT_INFO_CMD: 1001), "
                      "0x{3}->(iType=INFO_DATATYPE_BOOL8) 0x0000000000000000->(Buffer=NULL), "
                      "0x{5}->(1))"},
             &Functions::GCGetPortInfo, port, 1001, &query.type, nullptr, &query.size);
}

TEST_F(LibraryPort, GCGetPortURLInfo) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerText("local:b"); },
              .line = "GCGetPortURLInfo(hPort=0x0000000000007000, iURLIndex=4294967295, "
                      "iCmd=URL_INFO_URL, 0x{4}->(iType=INFO_DATATYPE_STRING) "
                      "0x{5}->(Buffer='local:b'), 0x{6}->(iSize=8))"},
             &Functions::GCGetPortURLInfo, port, 0xFFFFFFFFU, 0, &query.type, query.buffer.data(),
             &query.size);
}

TEST_F(LibraryPort, GCGetPortURLInfoOfTheSizeAlone) {
  InfoQuery query;
  ExpectLine({.target = [&] { query.AnswerSize(5, 0x900000004); },
              .line = "GCGetPortURLInfo(hPort=0x0000000000007000, iURLIndex=2, "
                      "iCmd=URL_INFO_CUSTOM_ID, 0x{4}->(iType=INFO_DATATYPE_INT32) "
                      "0x0000000000000000->(Buffer=NULL), 0x{6}->(iSize=4))"},
             &Functions::GCGetPortURLInfo, port, 2U, 1000, &query.type, nullptr, &query.size);
}

TEST_F(LibraryPort, GCReadPortStackedShowsTheCountInPlaceOfTheData) {
  std::array<std::uint8_t, 4> data = {1, 2, 3, 4};
  std::array<PORT_REGISTER_STACK_ENTRY, 2> entries = {
      PORT_REGISTER_STACK_ENTRY{0x1000, data.data(), 4},
      PORT_REGISTER_STACK_ENTRY{0x2004, data.data(), 2}};
  std::size_t count = 0;
  ExpectLine({.target = [&] { count = entries.size(); },
              .line = "GCReadPortStacked(hPort=0x0000000000007000, iAddress=0x<hex>, "
                      "0x{3}->(Buffer=2), 0x0000000000000000->(iSize=0)"},
             &Functions::GCReadPortStacked, port, entries.data(), &count);
}

TEST_F(LibraryPort, GCReadPortStackedOfNoEntries) {
  std::size_t count = 0;
  ExpectLine({.line = "GCReadPortStacked(hPort=0x0000000000007000, iAddress=0x<hex>, "
                      "0x{3}->(Buffer=0), 0x0000000000000000->(iSize=0)"},
             &Functions::GCReadPortStacked, port, nullptr, &count);
}

TEST_F(LibraryPort, GCWritePortStackedShowsTheCountInPlaceOfTheEntries) {
  std::array<std::uint8_t, 1> data = {0x7f};
  PORT_REGISTER_STACK_ENTRY entry = {0x1000, data.data(), 1};
  std::size_t count = 1;
  ExpectLine({.line = "GCWritePortStacked(hPort=0x0000000000007000, iAddress=0x<hex>, "
                      "0x{3}->(Entries=1), 0x0000000000000000->(iNumEntries=0)"},
             &Functions::GCWritePortStacked, port, &entry, &count);
}

TEST_F(LibraryPort, GCWritePortStackedOfNoEntries) {
  std::size_t count = 0;
  ExpectLine({.line = "GCWritePortStacked(hPort=0x0000000000007000, iAddress=0x<hex>, "
                      "0x{3}->(Entries=0), 0x0000000000000000->(iNumEntries=0)"},
             &Functions::GCWritePortStacked, port, nullptr, &count);
}

TEST_F(LibraryPort, NullHandlesShowSixteenZeros) {
  std::uint32_t count = 3;
  ExpectLine({.line = "GCGetNumPortURLs(hPort=0x0000000000000000, 0x{2}->(iNumURLs=3))"},
             &Functions::GCGetNumPortURLs, nullptr, &count);
}

TEST_F(LibraryPort, HandlesShowAll64Bits) {
  std::uint32_t count = 3;
  ExpectLine({.line = "GCGetNumPortURLs(hPort=0xFEDCBA9876543210, 0x{2}->(iNumURLs=3))"},
             &Functions::GCGetNumPortURLs, Handle(0xFEDCBA9876543210), &count);
}

using LibraryPortWithoutTarget = ProxyFiles;

TEST_F(LibraryPortWithoutTarget, GCGetInfoShowsWhatTheConsumerLeft) {
  UseLogFile();
  LoadProxy();
  EXPECT_EQ(proxy.GCInitLib(), 0);
  const std::size_t before = LogLines().size();

  INFO_DATATYPE type = 5;  // INFO_DATATYPE_INT32
  std::int32_t value = -7;
  std::size_t size = 0xCDCDCDCD00000009;
  EXPECT_EQ(proxy.GCGetInfo(0, &type, &value, &size), -1003);

  const std::vector<std::string> lines = LogLines();
  ASSERT_EQ(lines.size(), before + 1);
  EXPECT_THAT(lines.back(),
              IsLine(Fill("INFO GC_ERR_NOT_IMPLEMENTED=GCGetInfo(iInfoCmd=TL_INFO_ID, "
                          "0x{}->(iType=INFO_DATATYPE_INT32), Buffer=-7, 0x{}->(iSize=9))",
                          Hex16(&type), Hex16(&size))));
}

}  // namespace
}  // namespace vextrel_test
