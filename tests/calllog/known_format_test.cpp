// SPDX-License-Identifier: MIT
// Lines whose format is part of the code, against the same lines made the other way.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "calllog/byte_dump.h"
#include "calllog/line_format.h"
#include "calllog/rendered.h"
#include "calllog/value_names.h"
#include "model/rendering.h"
#include "support/proxy.h"

namespace vextrel_test {
namespace {

using namespace vextrel;  // NOLINT(google-build-using-namespace): for the literal, too

TEST(KnownFormat, MakesTheLineThatItsTextSays) {
  EXPECT_EQ(FormatLine(""_line), "");
  EXPECT_EQ(FormatLine("no value"_line), "no value");
  EXPECT_EQ(FormatLine("%s=DSQueueBuffer(hDS=0x%p, hB=0x%p)"_line, GcErrorName(GC_ERR_SUCCESS),
                       Handle(0x10), Handle(0xABCDEF)),
            "GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000000010, hB=0x0000000000ABCDEF)");
  EXPECT_EQ(FormatLine("%u %lu %d %x %llx"_line, std::uint64_t{0x100000005}, 7U, -3, 255U,
                       std::uint64_t{0xFEDCBA9876543210}),
            "5 7 -3 ff fedcba9876543210");
}

TEST(KnownFormat, TakesWhatIsOutOfPlaceOnPurpose) {
  const std::string text("seen\0unseen", 11);
  EXPECT_EQ(FormatLine("%s|%p|%s"_line, text, kNoValue, Misplaced(std::uint32_t{42})),
            "seen|0000000000000000|42");
  const char* const null = nullptr;
  EXPECT_EQ(FormatLine("<%s>"_line, null), "<(null)>");
}

TEST(KnownFormat, MakesLinesOfEveryLengthAroundTheLongestShortOne) {
  for (std::size_t size = 900; size <= 1100; ++size) {
    const std::string text(size, 't');
    ASSERT_EQ(FormatLine("<%s|%u>"_line, text, 5U), "<" + text + "|5>");
    ASSERT_EQ(FormatLine("<%s|%u>", text, 5U), "<" + text + "|5>");
  }
}

TEST(KnownFormat, MakesTheSameLinesAsTheOtherWay) {
  std::mt19937_64 random(1);  // NOLINT: the same values in every run
  for (int i = 0; i < 5'000; ++i) {
    const std::string text(random() % 1200, static_cast<char>('a' + i % 26));
    const std::uint64_t number = random() >> (i % 64);
    const void* address = Handle(random() >> (i % 48));
    const Bytes bytes = RandomBytes(random() % 40);
    const ByteDump dump{bytes.data(), bytes.size()};
    const std::string known =
        FormatLine("%s=(0x%p->(%s), %u, %lu, %d, 0x%x, 0x%llx, %s)"_line, text, address, dump,
                   number, number, number, number, number, text.c_str());
    ASSERT_EQ(known, FormatLine("%s=(0x%p->(%s), %u, %lu, %d, 0x%x, 0x%llx, %s)", text, address,
                                dump, number, number, number, number, number, text.c_str()));
  }
}

TEST(KnownFormat, RendersADumpWhereItStands) {
  for (std::size_t size = 0; size <= 300; ++size) {
    const Bytes bytes = RandomBytes(size);
    const std::string dump = model::RenderDump(bytes.data(), size);
    ASSERT_EQ(FormatLine("Buffer=%s,"_line, ByteDump{bytes.data(), size}), "Buffer=" + dump + ",");
    ASSERT_EQ(FormatLine("Buffer=%s,", ByteDump{bytes.data(), size}), "Buffer=" + dump + ",");
  }
}

}  // namespace
}  // namespace vextrel_test
