// SPDX-License-Identifier: MIT
#include "calllog/value_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "calllog/rendered.h"
#include "model/value_names.h"

namespace vextrel_test {
namespace {

using vextrel::GcErrorName;

// A function and what the model knows of it.
struct NameFunction {
  const char* name;
  vextrel::RenderedText (*function)(std::int32_t value);
  const model::NameTable& table;
};

std::ostream& operator<<(std::ostream& stream, const NameFunction& function) {
  return stream << function.name;
}

const NameFunction kFunctions[] = {
    {"GcErrorName", vextrel::GcErrorName, model::kGcErrors},
    {"InfoDatatypeName", vextrel::InfoDatatypeName, model::kInfoDatatypes},
    {"TlInfoCmdName", vextrel::TlInfoCmdName, model::kTlInfoCmds},
    {"InterfaceInfoCmdName", vextrel::InterfaceInfoCmdName, model::kInterfaceInfoCmds},
    {"DeviceInfoCmdName", vextrel::DeviceInfoCmdName, model::kDeviceInfoCmds},
    {"DeviceAccessFlagsName", vextrel::DeviceAccessFlagsName, model::kDeviceAccessFlags},
    {"DeviceAccessStatusName", vextrel::DeviceAccessStatusName, model::kDeviceAccessStatuses},
    {"StreamInfoCmdName", vextrel::StreamInfoCmdName, model::kStreamInfoCmds},
    {"BufferInfoCmdName", vextrel::BufferInfoCmdName, model::kBufferInfoCmds},
    {"AcqStartFlagsName", vextrel::AcqStartFlagsName, model::kAcqStartFlags},
    {"AcqStopFlagsName", vextrel::AcqStopFlagsName, model::kAcqStopFlags},
    {"AcqQueueTypeName", vextrel::AcqQueueTypeName, model::kAcqQueueTypes},
    {"UrlInfoCmdName", vextrel::UrlInfoCmdName, model::kUrlInfoCmds},
    {"PortInfoCmdName", vextrel::PortInfoCmdName, model::kPortInfoCmds},
    {"EventTypeName", vextrel::EventTypeName, model::kEventTypes},
    {"EventInfoCmdName", vextrel::EventInfoCmdName, model::kEventInfoCmds},
    {"EventDataInfoCmdName", vextrel::EventDataInfoCmdName, model::kEventDataInfoCmds},
};

// Every value of every table, what is around their limits, and the ends of the value range.
std::vector<std::int32_t> ManyValues() {
  std::vector<std::int32_t> values;
  for (std::int32_t value = -10100; value <= 10100; ++value) {
    values.push_back(value);
  }
  for (int bit = 14; bit < 31; ++bit) {
    const std::int32_t power = std::int32_t{1} << bit;
    values.insert(values.end(),
                  {power - 1, power, power + 1000, -power, -power - 1, 5 - power, -1001 - power});
  }
  for (std::int32_t i = 0; i < 30; ++i) {
    values.push_back(std::numeric_limits<std::int32_t>::min() + i);
    values.push_back(std::numeric_limits<std::int32_t>::max() - i);
  }
  return values;
}

class ValueNames : public testing::TestWithParam<NameFunction> {};

// Each text ends with one NUL, which counts in its size.
TEST_P(ValueNames, AreThoseOfTheModel) {
  for (const std::int32_t value : ManyValues()) {
    ASSERT_EQ(Whole(GetParam().function(value)), WithNul(GetParam().table.NameOf(value)));
  }
}

INSTANTIATE_TEST_SUITE_P(AllTables, ValueNames, testing::ValuesIn(kFunctions),
                         [](const auto& function) { return std::string(function.param.name); });

std::string Visible(const vextrel::RenderedText& name) {
  return name.c_str();
}

TEST(GcErrorName, NamesSuccessAndTheEndsOfTheErrorRun) {
  EXPECT_EQ(Visible(GcErrorName(0)), "GC_ERR_SUCCESS");
  EXPECT_EQ(Visible(GcErrorName(-1001)), "GC_ERR_ERROR");
  EXPECT_EQ(Visible(GcErrorName(-1014)), "GC_ERR_NOT_AVAILABLE");
  EXPECT_EQ(Visible(GcErrorName(-1015)), "GC_ERR_INVALID_ADDRESS");
}

TEST(GcErrorName, FallsBackAboveTheErrorRunAndForPositiveValues) {
  EXPECT_EQ(Visible(GcErrorName(-1000)), "(Unknown GC_ERROR: -1000)");
  EXPECT_EQ(Visible(GcErrorName(1)), "(Unknown GC_ERROR: 1)");
}

TEST(GcErrorName, FallsBackForTheNewerCodesOfTheStandard) {
  for (std::int32_t value = -1022; value <= -1016; ++value) {
    EXPECT_EQ(Visible(GcErrorName(value)), "(Unknown GC_ERROR: " + std::to_string(value) + ")");
  }
}

TEST(GcErrorName, NamesTheCustomErrorButNotItsNeighbor) {
  EXPECT_EQ(Visible(GcErrorName(-10000)), "GC_ERR_CUSTOM_ID");
  EXPECT_EQ(Visible(GcErrorName(-10001)), "(Unknown GC_ERROR: -10001)");
}

TEST(CommandNames, NameTheCustomValueAlone) {
  EXPECT_EQ(Visible(vextrel::BufferInfoCmdName(1000)), "BUFFER_INFO_CUSTOM_ID");
  EXPECT_EQ(Visible(vextrel::BufferInfoCmdName(1001)), "(Unknown BUFFER_INFO_CMD: 1001)");
}

TEST(CommandNames, HaveNoCustomValueInThreeTables) {
  EXPECT_EQ(Visible(vextrel::TlInfoCmdName(1000)), "(Unknown TL_INFO_CMD: 1000)");
  EXPECT_EQ(Visible(vextrel::InfoDatatypeName(1000)), "(Unknown INFO_DATATYPE: 1000)");
  EXPECT_EQ(Visible(vextrel::DeviceAccessFlagsName(1000)), "(Unknown DEVICE_ACCESS_FLAGS: 1000)");
}

TEST(CommandNames, NeverNameANegativeValue) {
  EXPECT_EQ(Visible(vextrel::BufferInfoCmdName(-1)), "(Unknown BUFFER_INFO_CMD: -1)");
}

TEST(InfoDatatypeName, FallsBackForTheTypeAfterTheLast) {
  EXPECT_EQ(Visible(vextrel::InfoDatatypeName(14)), "(Unknown INFO_DATATYPE: 14)");
}

}  // namespace
}  // namespace vextrel_test
