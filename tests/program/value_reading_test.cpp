// SPDX-License-Identifier: MIT
#include "reading/value_reading.h"

#include <gtest/gtest.h>

#include <string>

namespace vextrel_test {
namespace {

using namespace vextrel::program;

TEST(ValueReading, NamesResultsThatTheLogCallsUnknown) {
  std::string storage;
  EXPECT_EQ(ResultName(-1016, storage), "GC_ERR_BUFFER_TOO_SMALL");
  EXPECT_EQ(ResultName(-1022, storage), "GC_ERR_BUSY");
  EXPECT_EQ(ResultName(-1023, storage), "GC_ERR_AMBIGUOUS");
  EXPECT_EQ(ResultName(-1011, storage), "GC_ERR_TIMEOUT");
  EXPECT_EQ(ResultName(-1024, storage), "GC_ERROR(-1024)");
  EXPECT_EQ(ResultName(7, storage), "GC_ERROR(7)");
}

TEST(ValueReading, ReadsResultsBack) {
  GC_ERROR result = 1;
  EXPECT_TRUE(ReadResult("GC_ERR_SUCCESS", result));
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(ReadResult("GC_ERR_INVALID_ADDRESS", result));
  EXPECT_EQ(result, -1015);
  EXPECT_TRUE(ReadResult("(Unknown GC_ERROR: 12)", result));
  EXPECT_EQ(result, 12);
  EXPECT_FALSE(ReadResult("(Unknown GC_ERROR: 12x)", result));
  EXPECT_FALSE(ReadResult("(Unknown GC_ERROR: 99999999999)", result));
  EXPECT_FALSE(ReadResult("", result));
}

TEST(ValueReading, GivesNewerNamesToCommands) {
  using namespace vextrel::names;
  EXPECT_EQ(NewestName("(Unknown BUFFER_INFO_CMD: 27)", &kBufferInfoCmd), "BUFFER_INFO_DATA_SIZE");
  EXPECT_EQ(NewestName("(Unknown DEVICE_INFO_CMD: 7)", &kDeviceInfoCmd),
            "DEVICE_INFO_SERIAL_NUMBER");
  EXPECT_EQ(NewestName("(Unknown DEVICE_INFO_CMD: 70)", &kDeviceInfoCmd),
            "(Unknown DEVICE_INFO_CMD: 70)");
  EXPECT_EQ(NewestName("BUFFER_INFO_BASE", &kBufferInfoCmd), "BUFFER_INFO_BASE");
  // The same number of another enumeration.
  EXPECT_EQ(NewestName("(Unknown BUFFER_INFO_CMD: 27)", &kDeviceInfoCmd),
            "(Unknown BUFFER_INFO_CMD: 27)");
}

}  // namespace
}  // namespace vextrel_test
