// SPDX-License-Identifier: MIT
// Which text lies at an address that a line shows in place of the text itself. The addresses are
// followed while the line is written: most of the texts do not outlive the call.
#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "exports/linked_exports.h"

namespace vextrel_test {
namespace {

// Digits of a line that are an address, found by the text in front of them.
struct ShownAddress {
  std::string_view label;
  int base = 16;  // 10 for the low half of the address of an object on the stack
};

class MisplacedValues : public LinkedExports {
 protected:
  // The line that `call` writes, with each of the addresses replaced by the text that lies there,
  // in brackets.
  template <typename Call>
  [[nodiscard]] std::string LineOf(Call call, const std::vector<ShownAddress>& addresses) {
    std::string line;
    hook.action = [&](const log4cpp::LoggingEvent& event) {
      line = event.message;
      for (const ShownAddress& each : addresses) {
        Follow(line, each);
      }
    };
    EXPECT_EQ(call(), GC_ERR_SUCCESS);
    return line;
  }

  INFO_DATATYPE type = INFO_DATATYPE_STRING;
  std::array<char, 16> buffer{"value"};
  std::size_t size = 0x4241;  // "AB" where it is taken for a text

 private:
  static void Follow(std::string& line, const ShownAddress& shown) {
    const std::size_t label = line.find(shown.label);
    ASSERT_NE(label, std::string::npos) << line;
    const std::size_t begin = label + shown.label.size();
    std::size_t length = 0;
    const std::uint64_t number = std::stoull(line.substr(begin), &length, shown.base);
    line.replace(begin, length,
                 "[" + TextAt(shown.base == 10 ? NearTheStack(number) : number) + "]");
  }

  // The address with that low half.
  static std::uint64_t NearTheStack(std::uint64_t lowHalf) {
    const int local = 0;
    const auto here = reinterpret_cast<std::uintptr_t>(&local);
    const auto distance = static_cast<std::int32_t>(static_cast<std::uint32_t>(lowHalf - here));
    return here + static_cast<std::uintptr_t>(std::intptr_t{distance});
  }

  static std::string TextAt(std::uint64_t address) {
    constexpr std::uint64_t kNeverMapped = 0x10000;
    return address < kNeverMapped ? "no address: " + std::to_string(address)
                                  : static_cast<const char*>(Handle(address));
  }
};

TEST_F(MisplacedValues, GCGetLastErrorShowsWhereTheCodesNameAndTheTextLie) {
  GC_ERROR code = GC_ERR_IO;
  std::array<char, 16> text{"camera lost"};
  const std::vector<ShownAddress> addresses = {{"GCGetLastError(0x"}, {"lost), 0x"}};
  EXPECT_EQ(LineOf([&] { return ::GCGetLastError(&code, text.data(), &size); }, addresses),
            "GC_ERR_SUCCESS=GCGetLastError(0x[GC_ERR_IO]->(ErrorCode=camera lost), "
            "0x[camera lost]->(pErrorText=AB), 0x0000000000004241->(iSize=0))");
}

TEST_F(MisplacedValues, GCGetLastErrorShowsWhereTheNamesOfUnknownCodesAndOfNoTextLie) {
  GC_ERROR code = -77;
  const std::vector<ShownAddress> addresses = {{"GCGetLastError(0x"}, {"(null)), 0x"}};
  EXPECT_EQ(LineOf([&] { return ::GCGetLastError(&code, nullptr, &size); }, addresses),
            "GC_ERR_SUCCESS=GCGetLastError(0x[(Unknown GC_ERROR: -77)]->(ErrorCode=(null)), "
            "0x[NULL]->(pErrorText=AB), 0x0000000000004241->(iSize=0))");
}

TEST_F(MisplacedValues, TLGetInterfaceInfoShowsWhereTheRenderedValueLies) {
  const char* id = "if-0";
  const auto call = [&] {
    return ::TLGetInterfaceInfo(Handle(0x1000), id, INTERFACE_INFO_TLTYPE, &type, buffer.data(),
                                &size);
  };
  EXPECT_EQ(LineOf(call, {{"(iType=INFO_DATATYPE_STRING), 0x"}}),
            "GC_ERR_SUCCESS=TLGetInterfaceInfo(hTL=0x0000000000001000, 0x" + Hex16(id) +
                "->(sInterfaceName=if-0), iCmd=INTERFACE_INFO_TLTYPE, 0x" + Hex16(&type) +
                "->(iType=INFO_DATATYPE_STRING), 0x['value']->(Buffer=AB), "
                "0x0000000000004241->(iSize=0))");
}

TEST_F(MisplacedValues, EventGetDataInfoShowsWhereTheNamesAndTheRenderedValueLie) {
  const auto call = [&] {
    return ::EventGetDataInfo(Handle(0x6000), Handle(0x7000), 8, 77, &type, buffer.data(), &size);
  };
  const std::vector<ShownAddress> addresses = {
      {"iEventBufferSize=", 10}, {"iID=\x01, 0x"}, {"(iType=value) 0x"}};
  EXPECT_EQ(LineOf(call, addresses),
            "GC_ERR_SUCCESS=EventGetDataInfo(hEvent=0x0000000000006000, "
            "pInBuffer=0x0000000000007000, iEventBufferSize=[(Unknown EVENT_DATA_INFO_CMD: 77)], "
            "iID=\x01, 0x[INFO_DATATYPE_STRING]->(iType=value) 0x['value']->(Buffer=AB), "
            "0x0000000000004241->(iSize=0))");
}

class MisplacedEntries : public MisplacedValues {
 protected:
  std::array<std::uint8_t, 4> data = {1, 2, 3, 4};
  std::array<PORT_REGISTER_STACK_ENTRY, 2> entries = {
      PORT_REGISTER_STACK_ENTRY{0x1000, data.data(), 4},
      PORT_REGISTER_STACK_ENTRY{0x2004, data.data(), 2}};
  std::size_t count = entries.size();
  std::string text =
      "Address[0], 0x0000000000001000->(Buffer='0x01,0x02,0x03,0x04'), iSize=4;"
      "Address[1], 0x0000000000002004->(Buffer='0x01,0x02'), iSize=2;";
};

TEST_F(MisplacedEntries, GCReadPortStackedShowsWhereTheRenderedEntriesLie) {
  const auto call = [&] { return ::GCReadPortStacked(Handle(0x7000), entries.data(), &count); };
  EXPECT_EQ(LineOf(call, {{"iAddress=0x"}}),
            "GC_ERR_SUCCESS=GCReadPortStacked(hPort=0x0000000000007000, iAddress=0x[" + text +
                "], 0x" + Hex16(&count) + "->(Buffer=2), 0x0000000000000000->(iSize=0)");
}

TEST_F(MisplacedEntries, GCWritePortStackedShowsWhereTheRenderedEntriesLie) {
  const auto call = [&] { return ::GCWritePortStacked(Handle(0x7000), entries.data(), &count); };
  EXPECT_EQ(LineOf(call, {{"iAddress=0x"}}),
            "GC_ERR_SUCCESS=GCWritePortStacked(hPort=0x0000000000007000, iAddress=0x[" + text +
                "], 0x" + Hex16(&count) + "->(Entries=2), 0x0000000000000000->(iNumEntries=0)");
}

}  // namespace
}  // namespace vextrel_test
