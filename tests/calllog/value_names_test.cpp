#include "calllog/value_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "calllog/rendered.h"
#include "calllog/value_names_tables.h"

namespace vextrel_test {
namespace {

std::string FallBack(std::string_view prefix, std::int32_t value) {
  return std::string(prefix) + std::to_string(value) + ")";
}

// Around every limit that a table has, and the ends of the value range.
std::vector<std::int32_t> ManyValues() {
  std::vector<std::int32_t> values;
  for (std::int32_t value = -10100; value <= 10100; ++value) {
    values.push_back(value);
  }
  for (int bit = 14; bit < 31; ++bit) {
    const std::int32_t power = std::int32_t{1} << bit;
    for (const std::int32_t value :
         {power - 1, power, power + 1000, -power, -power - 1, 5 - power}) {
      values.push_back(value);
    }
  }
  for (std::int32_t i = 0; i < 30; ++i) {
    values.push_back(std::numeric_limits<std::int32_t>::min() + i);
    values.push_back(std::numeric_limits<std::int32_t>::max() - i);
  }
  return values;
}

class ValueNames : public testing::TestWithParam<NameTable> {
 protected:
  static std::string Visible(std::int32_t value) { return GetParam().name(value).c_str(); }
  static bool HasRow(std::int32_t value) {
    return std::ranges::any_of(GetParam().rows,
                               [value](const NameRow& row) { return row.value == value; });
  }
};

TEST_P(ValueNames, NamesEveryRowOfTheTable) {
  for (const NameRow& row : GetParam().rows) {
    EXPECT_EQ(Visible(row.value), row.name) << row.value;
  }
}

TEST_P(ValueNames, ShowsTheNumberOfEveryValueThatTheTableLacks) {
  for (const std::int32_t value : ManyValues()) {
    if (!HasRow(value)) {
      ASSERT_EQ(Visible(value), FallBack(GetParam().fallBackPrefix, value));
    }
  }
}

TEST_P(ValueNames, EndWithOneNulThatCountsInTheSize) {
  for (const std::int32_t value :
       {0, 1, 5, 25, -1, -1001, 999, 1000, 1001, std::numeric_limits<std::int32_t>::min(),
        std::numeric_limits<std::int32_t>::max()}) {
    const vextrel::RenderedText name = GetParam().name(value);
    ASSERT_FALSE(name.view().empty());
    EXPECT_EQ(name.view().back(), '\0') << value;
    EXPECT_EQ(std::strlen(name.c_str()) + 1, name.view().size()) << value;
  }
}

TEST_P(ValueNames, FallBackForTheEndsOfTheValueRange) {
  EXPECT_EQ(Visible(std::numeric_limits<std::int32_t>::min()),
            std::string(GetParam().fallBackPrefix) + "-2147483648)");
  EXPECT_EQ(Visible(std::numeric_limits<std::int32_t>::max()),
            std::string(GetParam().fallBackPrefix) + "2147483647)");
}

TEST_P(ValueNames, FallBackBesideTheCustomValue) {
  EXPECT_EQ(Visible(999), std::string(GetParam().fallBackPrefix) + "999)");
  EXPECT_EQ(Visible(1001), std::string(GetParam().fallBackPrefix) + "1001)");
}

INSTANTIATE_TEST_SUITE_P(AllTables, ValueNames, testing::ValuesIn(NameTables()),
                         [](const auto& table) { return std::string(table.param.function); });

TEST(ValueNameTables, AreSeventeenDifferentOnes) {
  std::set<std::string_view> functions;
  std::set<std::string_view> prefixes;
  for (const NameTable& table : NameTables()) {
    functions.insert(table.function);
    prefixes.insert(table.fallBackPrefix);
  }
  EXPECT_EQ(functions.size(), 17U);
  EXPECT_EQ(prefixes.size(), 17U);
}

TEST(GcErrorName, NamesSuccessAndTheEndsOfTheErrorRun) {
  EXPECT_STREQ(vextrel::GcErrorName(0).c_str(), "GC_ERR_SUCCESS");
  EXPECT_STREQ(vextrel::GcErrorName(-1001).c_str(), "GC_ERR_ERROR");
  EXPECT_STREQ(vextrel::GcErrorName(-1014).c_str(), "GC_ERR_NOT_AVAILABLE");
  EXPECT_STREQ(vextrel::GcErrorName(-1015).c_str(), "GC_ERR_INVALID_ADDRESS");
}

TEST(GcErrorName, FallsBackAboveTheErrorRunAndForPositiveValues) {
  EXPECT_STREQ(vextrel::GcErrorName(-1000).c_str(), "(Unknown GC_ERROR: -1000)");
  EXPECT_STREQ(vextrel::GcErrorName(1).c_str(), "(Unknown GC_ERROR: 1)");
  EXPECT_STREQ(vextrel::GcErrorName(-1).c_str(), "(Unknown GC_ERROR: -1)");
}

TEST(GcErrorName, FallsBackForTheNewerCodesOfTheStandard) {
  EXPECT_STREQ(vextrel::GcErrorName(-1016).c_str(), "(Unknown GC_ERROR: -1016)");
  EXPECT_STREQ(vextrel::GcErrorName(-1017).c_str(), "(Unknown GC_ERROR: -1017)");
  EXPECT_STREQ(vextrel::GcErrorName(-1018).c_str(), "(Unknown GC_ERROR: -1018)");
  EXPECT_STREQ(vextrel::GcErrorName(-1019).c_str(), "(Unknown GC_ERROR: -1019)");
  EXPECT_STREQ(vextrel::GcErrorName(-1020).c_str(), "(Unknown GC_ERROR: -1020)");
  EXPECT_STREQ(vextrel::GcErrorName(-1021).c_str(), "(Unknown GC_ERROR: -1021)");
  EXPECT_STREQ(vextrel::GcErrorName(-1022).c_str(), "(Unknown GC_ERROR: -1022)");
}

TEST(GcErrorName, NamesTheCustomErrorButNotItsNeighbours) {
  EXPECT_STREQ(vextrel::GcErrorName(-10000).c_str(), "GC_ERR_CUSTOM_ID");
  EXPECT_STREQ(vextrel::GcErrorName(-10001).c_str(), "(Unknown GC_ERROR: -10001)");
  EXPECT_STREQ(vextrel::GcErrorName(-9999).c_str(), "(Unknown GC_ERROR: -9999)");
  EXPECT_STREQ(vextrel::GcErrorName(1000).c_str(), "(Unknown GC_ERROR: 1000)");
}

TEST(CommandNames, NameTheCustomValueAlone) {
  EXPECT_STREQ(vextrel::BufferInfoCmdName(1000).c_str(), "BUFFER_INFO_CUSTOM_ID");
  EXPECT_STREQ(vextrel::BufferInfoCmdName(1001).c_str(), "(Unknown BUFFER_INFO_CMD: 1001)");
  EXPECT_STREQ(vextrel::AcqStopFlagsName(1000).c_str(), "ACQ_STOP_CUSTOM_ID");
  EXPECT_STREQ(vextrel::AcqStopFlagsName(1001).c_str(), "(Unknown ACQ_STOP_FLAGS: 1001)");
}

TEST(CommandNames, HaveNoCustomValueInThreeTables) {
  EXPECT_STREQ(vextrel::TlInfoCmdName(1000).c_str(), "(Unknown TL_INFO_CMD: 1000)");
  EXPECT_STREQ(vextrel::InfoDatatypeName(1000).c_str(), "(Unknown INFO_DATATYPE: 1000)");
  EXPECT_STREQ(vextrel::DeviceAccessFlagsName(1000).c_str(), "(Unknown DEVICE_ACCESS_FLAGS: 1000)");
}

TEST(CommandNames, NeverNameANegativeValue) {
  EXPECT_STREQ(vextrel::BufferInfoCmdName(-1).c_str(), "(Unknown BUFFER_INFO_CMD: -1)");
  EXPECT_STREQ(vextrel::EventTypeName(-1).c_str(), "(Unknown EVENT_TYPE: -1)");
}

TEST(InfoDatatypeName, FallsBackForTheTypeBehindTheLast) {
  EXPECT_STREQ(vextrel::InfoDatatypeName(14).c_str(), "(Unknown INFO_DATATYPE: 14)");
}

TEST(ValueName, IsOneLongerThanItsVisibleText) {
  EXPECT_EQ(Whole(vextrel::EventTypeName(1)), WithNul("EVENT_NEW_BUFFER"));
  EXPECT_EQ(Whole(vextrel::EventTypeName(5)), WithNul("(Unknown EVENT_TYPE: 5)"));
}

}  // namespace
}  // namespace vextrel_test
