// SPDX-License-Identifier: MIT
#include "model/event_data.h"

#include <gtest/gtest.h>

namespace vextrel_test {
namespace {

using vextrel::program::BufferOfEventData;

TEST(EventData, StartWithTheBufferLowByteFirst) {
  EXPECT_EQ(BufferOfEventData("0xd0,0x09,0xe6,0x86,0xb5,0x55,0x00,0x00,0xff,0xff"),
            0x000055B586E609D0U);
  EXPECT_EQ(BufferOfEventData("0x01,0x00,0x00,0x00,0x00,0x00,0x00,0x80"), 0x8000000000000001U);
}

TEST(EventData, MayBeTooShortOrNoDump) {
  EXPECT_FALSE(BufferOfEventData("").has_value());
  EXPECT_FALSE(BufferOfEventData("NULL").has_value());
  EXPECT_FALSE(BufferOfEventData("0x01,0x00,0x00,0x00,0x00,0x00,0x00").has_value());
  EXPECT_FALSE(BufferOfEventData("0x01,0x00,0x00,0x00,0x00,0x00,0x00,0x0").has_value());
  EXPECT_FALSE(BufferOfEventData("0xzz,0x00,0x00,0x00,0x00,0x00,0x00,0x00").has_value());
}

}  // namespace
}  // namespace vextrel_test
