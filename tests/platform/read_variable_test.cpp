// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

using vextrel::platform::ReadVariable;
using vextrel::platform::VariableRead;

constexpr const char* kName = "VEXTREL_READ_VARIABLE_TEST";
constexpr char kUntouched = '#';
constexpr std::uint32_t kNotFound = 203;

class ReadVariableTest : public testing::Test {
 protected:
  ~ReadVariableTest() override { SetVariable(kName, nullptr); }

  // Reads into a buffer of that size, of which nothing has been written yet.
  VariableRead Read(std::uint32_t size) {
    buffer.assign(size, kUntouched);
    return ReadVariable(kName, buffer.data(), size);
  }

  [[nodiscard]] bool IsBufferUntouched() const {
    return buffer == std::vector<char>(buffer.size(), kUntouched);
  }

  std::vector<char> buffer;
};

TEST_F(ReadVariableTest, GivesTheLengthWithoutTheNulOfAValueThatFits) {
  SetVariable(kName, "value");
  const VariableRead read = Read(256);
  EXPECT_EQ(read.count, 5U);
  EXPECT_EQ(read.error, 0U);
  EXPECT_STREQ(buffer.data(), "value");
}

TEST_F(ReadVariableTest, DoesNotTakeAPartOfTheValueForTheName) {
  SetVariable(kName, "x=y");
  buffer.assign(16, kUntouched);
  const std::string name = std::string(kName) + "=x";
  const VariableRead read = ReadVariable(name.c_str(), buffer.data(), 16);
  EXPECT_EQ(read.count, 0U);
  EXPECT_EQ(read.error, kNotFound);
  EXPECT_TRUE(IsBufferUntouched());
}

TEST_F(ReadVariableTest, WritesNothingBehindTheNul) {
  SetVariable(kName, "value");
  EXPECT_EQ(Read(256).count, 5U);
  EXPECT_EQ(std::string(buffer.begin() + 6, buffer.end()), std::string(250, kUntouched));
}

TEST_F(ReadVariableTest, FillsABufferThatTheValueAndItsNulJustFit) {
  for (const std::uint32_t size : {2U, 16U, 256U, 1024U}) {
    const std::string value(size - 1, 'v');
    SetVariable(kName, value.c_str());
    const VariableRead read = Read(size);
    EXPECT_EQ(read.count, size - 1);
    EXPECT_EQ(read.error, 0U);
    EXPECT_STREQ(buffer.data(), value.c_str());
  }
}

TEST_F(ReadVariableTest, GivesTheSizeNeededIfOnlyTheNulDoesNotFit) {
  for (const std::uint32_t size : {1U, 16U, 256U, 1024U}) {
    SetVariable(kName, std::string(size, 'v').c_str());
    const VariableRead read = Read(size);
    EXPECT_EQ(read.count, size + 1);
    EXPECT_EQ(read.error, 0U);
    EXPECT_TRUE(IsBufferUntouched()) << size;
  }
}

TEST_F(ReadVariableTest, GivesTheSizeNeededForALongerValue) {
  for (const std::uint32_t length : {257U, 300U, 1024U, 5000U, 30000U}) {
    SetVariable(kName, std::string(length, 'v').c_str());
    const VariableRead read = Read(256);
    EXPECT_EQ(read.count, length + 1);
    EXPECT_EQ(read.error, 0U);
    EXPECT_TRUE(IsBufferUntouched()) << length;
  }
}

TEST_F(ReadVariableTest, GivesTheSizeNeededWithoutABuffer) {
  SetVariable(kName, "abc");
  const VariableRead read = ReadVariable(kName, nullptr, 0);
  EXPECT_EQ(read.count, 4U);
  EXPECT_EQ(read.error, 0U);
}

TEST_F(ReadVariableTest, ReadsTheWholeValueIntoABufferOfTheSizeNeeded) {
  const std::string value(700, 'w');
  SetVariable(kName, value.c_str());
  const VariableRead read = Read(Read(10).count);
  EXPECT_EQ(read.count, 700U);
  EXPECT_STREQ(buffer.data(), value.c_str());
}

TEST_F(ReadVariableTest, SaysThatAVariableIsNotSet) {
  SetVariable(kName, nullptr);
  const VariableRead read = Read(256);
  EXPECT_EQ(read.count, 0U);
  EXPECT_EQ(read.error, kNotFound);
  EXPECT_TRUE(IsBufferUntouched());
}

TEST_F(ReadVariableTest, SaysThatAVariableWithoutANameIsNotSet) {
  char text[8] = {};
  const VariableRead read = ReadVariable("", text, sizeof text);
  EXPECT_EQ(read.count, 0U);
  EXPECT_EQ(read.error, kNotFound);
}

TEST_F(ReadVariableTest, TakesAnEmptyValueForAVariableThatIsNotSet) {
  SetVariable(kName, "");
  const VariableRead read = Read(256);
  EXPECT_EQ(read.count, 0U);
  EXPECT_EQ(read.error, kNotFound);
}

TEST_F(ReadVariableTest, TakesAnEmptyValueForUnsetWhateverErrorCameBefore) {
  SetVariable(kName, "");
  buffer.assign(256, kUntouched);
  SetLastErrorValue(5);
  const VariableRead read = ReadVariable(kName, buffer.data(), 256);
  EXPECT_EQ(read.count, 0U);
  EXPECT_EQ(read.error, kNotFound);
}

TEST_F(ReadVariableTest, GivesNoErrorForAValueWhateverErrorCameBefore) {
  SetVariable(kName, "x");
  buffer.assign(256, kUntouched);
  SetLastErrorValue(5);
  EXPECT_EQ(ReadVariable(kName, buffer.data(), 256).error, 0U);
}

TEST_F(ReadVariableTest, KeepsBlanksAndReferencesAsTheyAre) {
  SetVariable(kName, " a b $(C) %PATH% =; ");
  EXPECT_EQ(Read(256).count, 20U);
  EXPECT_STREQ(buffer.data(), " a b $(C) %PATH% =; ");
}

}  // namespace
}  // namespace vextrel_test
