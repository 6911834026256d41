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

// The newer name of a value that a log of the 51 functions calls unknown.
std::string Newest(const char* enumeration, int value, const vextrel::ValueTable* table) {
  const std::string shown =
      std::string("(Unknown ") + enumeration + ": " + std::to_string(value) + ")";
  return std::string(NewestName(shown, table));
}

TEST(ValueReading, KnowsEveryNewerName) {
  using namespace vextrel::names;
  const auto ofTl = [](int value) { return Newest("TL_INFO_CMD", value, &kTlInfoCmd); };
  EXPECT_EQ(ofTl(8), "TL_INFO_CHAR_ENCODING");
  EXPECT_EQ(ofTl(9), "TL_INFO_GENTL_VER_MAJOR");
  EXPECT_EQ(ofTl(10), "TL_INFO_GENTL_VER_MINOR");
  const auto ofDevice = [](int value) { return Newest("DEVICE_INFO_CMD", value, &kDeviceInfoCmd); };
  EXPECT_EQ(ofDevice(6), "DEVICE_INFO_USER_DEFINED_NAME");
  EXPECT_EQ(ofDevice(7), "DEVICE_INFO_SERIAL_NUMBER");
  EXPECT_EQ(ofDevice(8), "DEVICE_INFO_VERSION");
  EXPECT_EQ(ofDevice(9), "DEVICE_INFO_TIMESTAMP_FREQUENCY");
  const auto ofStream = [](int value) { return Newest("STREAM_INFO_CMD", value, &kStreamInfoCmd); };
  EXPECT_EQ(ofStream(13), "STREAM_INFO_BUF_ALIGNMENT");
  EXPECT_EQ(ofStream(14), "STREAM_INFO_FLOW_TABLE");
  EXPECT_EQ(ofStream(15), "STREAM_INFO_GENDC_PREFETCH_DESCRIPTOR");
  const auto ofBuffer = [](int value) { return Newest("BUFFER_INFO_CMD", value, &kBufferInfoCmd); };
  EXPECT_EQ(ofBuffer(26), "BUFFER_INFO_PIXEL_ENDIANNESS");
  EXPECT_EQ(ofBuffer(31), "BUFFER_INFO_IS_COMPOSITE");
  const auto ofUrl = [](int value) { return Newest("URL_INFO_CMD", value, &kUrlInfoCmd); };
  EXPECT_EQ(ofUrl(6), "URL_INFO_FILE_SHA1_HASH");
  EXPECT_EQ(ofUrl(7), "URL_INFO_FILE_REGISTER_ADDRESS");
  EXPECT_EQ(ofUrl(8), "URL_INFO_FILE_SIZE");
  EXPECT_EQ(ofUrl(9), "URL_INFO_SCHEME");
  EXPECT_EQ(ofUrl(10), "URL_INFO_FILENAME");
  EXPECT_EQ(Newest("EVENT_TYPE", 5, &kEventType), "EVENT_MODULE");
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
