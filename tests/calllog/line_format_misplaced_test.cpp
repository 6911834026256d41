// Lines whose values stand under conversions that are not meant for them.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "calllog/guarded_memory.h"
#include "calllog/info_rendering.h"
#include "calllog/line_format.h"
#include "calllog/port_rendering.h"
#include "calllog/value_names.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using vextrel::FormatLine;
using vextrel::Misplaced;
using vextrel::noValue;
using vextrel::RenderedText;

std::uint64_t AddressOf(const void* address) {
  return std::uint64_t{reinterpret_cast<std::uintptr_t>(address)};
}

// The low 32 bits of an address.
std::string Low32(const void* address) {
  return std::to_string(static_cast<std::uint32_t>(AddressOf(address)));
}

// Hexadecimal digits as %llx shows them.
std::string LowerHex(const void* address) {
  std::string text = Hex16(address);
  text.erase(0, text.find_first_not_of('0'));
  for (char& digit : text) {
    digit = digit >= 'A' ? static_cast<char>(digit - 'A' + 'a') : digit;
  }
  return text;
}

TEST(MisplacedNumber, ShowsInDecimalAsATextAndIsNeverFollowed) {
  EXPECT_EQ(FormatLine("%s", Misplaced(std::size_t{0})), "0");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::size_t{1})), "1");
  EXPECT_EQ(FormatLine("<%s>", Misplaced(std::size_t{4294967296})), "<4294967296>");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::uint64_t{0xFFFFFFFFFFFFFFFF})), "18446744073709551615");
  EXPECT_EQ(FormatLine("%s", Misplaced(std::uint32_t{4294967295})), "4294967295");
}

TEST(MisplacedNumber, ShowsAll64BitsAsAPointer) {
  EXPECT_EQ(FormatLine("0x%p", Misplaced(std::size_t{16})), "0x0000000000000010");
  EXPECT_EQ(FormatLine("%p", Misplaced(std::uint64_t{0xFEDCBA9876543210})), "FEDCBA9876543210");
}

TEST(MisplacedAddress, ShowsTheBytesThatLieThereAsAText) {
  const std::size_t size = 0x0000000000434241;
  const std::size_t* piSize = &size;
  EXPECT_EQ(FormatLine("<%s>", Misplaced(piSize)), "<ABC>");
  const std::size_t none = 0;
  const std::size_t* piNone = &none;
  EXPECT_EQ(FormatLine("<%s>", Misplaced(piNone)), "<>");
  const void* text = "bytes";
  EXPECT_EQ(FormatLine("<%s>", Misplaced(text)), "<bytes>");
}

TEST(MisplacedAddress, ShowsANullPointerAsANullText) {
  const std::size_t* piSize = nullptr;
  EXPECT_EQ(FormatLine("%s", Misplaced(piSize)), "(null)");
}

TEST(MisplacedAddress, ShowsItsBitsAsANumber) {
  const void* address = Handle(0xFEDCBA9876543210);
  EXPECT_EQ(FormatLine("%u", Misplaced(address)), "1985229328");
  EXPECT_EQ(FormatLine("%lu", Misplaced(address)), "1985229328");
  EXPECT_EQ(FormatLine("%d", Misplaced(address)), "1985229328");
  EXPECT_EQ(FormatLine("%x", Misplaced(address)), "76543210");
  EXPECT_EQ(FormatLine("%llx", Misplaced(address)), "fedcba9876543210");
}

TEST(MisplacedText, ShowsWhereItLies) {
  const RenderedText name = vextrel::GcErrorName(0);
  EXPECT_EQ(FormatLine("0x%p", Misplaced(name)), "0x" + Hex16(name.c_str()));
  EXPECT_EQ(FormatLine("%u", Misplaced(name)), Low32(name.c_str()));
  EXPECT_EQ(FormatLine("%llx", Misplaced(name)), LowerHex(name.c_str()));
  const std::string data = vextrel::RenderPortData(nullptr, 0);
  EXPECT_EQ(FormatLine("%p", Misplaced(data)), Hex16(data.data()));
  EXPECT_EQ(FormatLine("%u", Misplaced(data)), Low32(data.data()));
  EXPECT_EQ(FormatLine("%llx", Misplaced(data)), LowerHex(data.data()));
}

TEST(MisplacedText, ShowsWhereACStringLiesAndDoesNotReadIt) {
  const GuardedMemory memory(1);
  const auto* text = static_cast<const char*>(memory.forbidden());
  EXPECT_EQ(FormatLine("%p", Misplaced(text)), Hex16(memory.forbidden()));
  EXPECT_EQ(FormatLine("%u", Misplaced(text)), Low32(memory.forbidden()));
  EXPECT_EQ(FormatLine("%llx", Misplaced(text)), LowerHex(memory.forbidden()));
}

TEST(MisplacedText, StillShowsItselfAsAText) {
  const char* text = "in place";
  EXPECT_EQ(FormatLine("%s", Misplaced(text)), "in place");
  const std::string longText = "also in place";
  EXPECT_EQ(FormatLine("%s", Misplaced(longText)), "also in place");
}

TEST(IrregularLine, OfGetLastErrorShiftsItsValuesByOne) {
  const RenderedText result = vextrel::GcErrorName(-1003);
  const RenderedText errorCode = vextrel::GcErrorName(-1009);
  const char* sErrText = "no such thing";
  const char* text = vextrel::TextOrNull(sErrText);
  const std::size_t size = 14;
  const std::size_t* piSize = &size;
  EXPECT_EQ(FormatLine("%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), "
                       "0x%p->(iSize=%u))",
                       result, Misplaced(errorCode), sErrText, text, Misplaced(piSize),
                       Misplaced(size), noValue),
            "GC_ERR_NOT_IMPLEMENTED=GCGetLastError(0x" + Hex16(errorCode.c_str()) +
                "->(ErrorCode=no such thing), 0x" + Hex16(text) +
                "->(pErrorText=\x0e), 0x000000000000000E->(iSize=0))");
}

TEST(IrregularLine, OfGetLastErrorWithoutATextShowsNullInBrackets) {
  const RenderedText result = vextrel::GcErrorName(0);
  const char* sErrText = nullptr;
  const char* text = vextrel::TextOrNull(sErrText);
  const std::size_t size = 0;
  const std::size_t* piSize = &size;
  EXPECT_EQ(FormatLine("%s=GCGetLastError(0x%p->(ErrorCode=%s), 0x%p->(pErrorText=%s), "
                       "0x%p->(iSize=%u))",
                       result, Misplaced(result), sErrText, text, Misplaced(piSize),
                       Misplaced(size), noValue),
            "GC_ERR_SUCCESS=GCGetLastError(0x" + Hex16(result.c_str()) +
                "->(ErrorCode=(null)), 0x" + Hex16(text) +
                "->(pErrorText=), 0x0000000000000000->(iSize=0))");
}

TEST(IrregularLine, OfAStackedReadShowsItsCountAsTheBuffer) {
  const RenderedText result = vextrel::GcErrorName(-1010);
  const std::string data = vextrel::RenderPortData(nullptr, 0);
  std::size_t count = 3;
  std::size_t* piNumEntries = &count;
  EXPECT_EQ(FormatLine("%s=GCReadPortStacked(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s), "
                       "0x%p->(iSize=%u)",
                       result, Handle(0x77), Misplaced(data), piNumEntries, Misplaced(count),
                       noValue, noValue),
            "GC_ERR_IO=GCReadPortStacked(hPort=0x0000000000000077, iAddress=0x" +
                LowerHex(data.data()) + ", 0x" + Hex16(piNumEntries) +
                "->(Buffer=3), 0x0000000000000000->(iSize=0)");
}

TEST(IrregularLine, OfAReadShowsTheBufferTwice) {
  const RenderedText result = vextrel::GcErrorName(0);
  const char data[] = {'1', '2', '3', '4', '\0'};
  const void* pBuffer = data;
  const std::size_t size = 4;
  const std::size_t* piSize = &size;
  EXPECT_EQ(FormatLine("%s=GCReadPort(hPort=0x%p, iAddress=0x%llx, 0x%p->(Buffer=%s,%s), "
                       "0x%p->(iSize=%lu)",
                       result, Handle(1), std::uint64_t{0xFFFFFFFF0000ABCD}, pBuffer,
                       Misplaced(pBuffer), vextrel::RenderByteDump(pBuffer, size), piSize, size),
            "GC_ERR_SUCCESS=GCReadPort(hPort=0x0000000000000001, iAddress=0xffffffff0000abcd, 0x" +
                Hex16(data) + "->(Buffer=1234,0x31,0x32,0x33,0x34), 0x" + Hex16(piSize) +
                "->(iSize=4)");
}

TEST(RegularLine, OfAPortInfoQueryEndsWithASizeWithoutALabel) {
  const INFO_DATATYPE type = INFO_DATATYPE_INT32;
  const INFO_DATATYPE* piType = &type;
  const std::int32_t value = -12;
  const std::size_t size = 0x100000004;
  const std::size_t* piSize = &size;
  EXPECT_EQ(FormatLine("%s=GCGetPortInfo(hPort=0x%p, iCmd=%s, 0x%p->(iType=%s) 0x%p->(Buffer=%s), "
                       "0x%p->(%u))",
                       vextrel::GcErrorName(0), Handle(0x2), vextrel::PortInfoCmdName(7), piType,
                       vextrel::InfoDatatypeName(type), &value,
                       vextrel::RenderInfoValue(type, &value, size), piSize, size),
            "GC_ERR_SUCCESS=GCGetPortInfo(hPort=0x0000000000000002, iCmd=PORT_INFO_ACCESS_READ, "
            "0x" +
                Hex16(piType) + "->(iType=INFO_DATATYPE_INT32) 0x" + Hex16(&value) +
                "->(Buffer=-12), 0x" + Hex16(piSize) + "->(4))");
}

}  // namespace
}  // namespace vextrel_test
