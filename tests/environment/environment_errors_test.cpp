// SPDX-License-Identifier: MIT
// What the environment utilities make of answers that a real environment hardly ever gives: here
// the operating system is the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

#include "environment/environment.h"
#include "platform/platform.h"

namespace vextrel {
namespace {

struct Answer {
  platform::VariableRead read;
  std::string value = {};  // what is put into the buffer
};

struct Reading {
  std::string name;
  std::uint32_t size;
  bool operator==(const Reading&) const = default;
};

std::deque<Answer> answers;     // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
std::vector<Reading> readings;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

class EnvironmentErrors : public ::testing::Test {
 protected:
  EnvironmentErrors() {
    answers.clear();
    readings.clear();
  }
  ~EnvironmentErrors() override { EXPECT_TRUE(answers.empty()) << "not everything was read"; }
};

std::string FailureOf(const std::string& input) {
  try {
    ADD_FAILURE() << "expanded to " << ExpandEnvReference(input, false);
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  return {};
}

TEST_F(EnvironmentErrors, AnyErrorBut203IsUnknown) {
  answers = {{{0, 5}}, {{0, 0}}, {{0, 202}}, {{0, 204}}, {{0, 4294967295U}}};
  EXPECT_EQ(FailureOf("$(NAME)"), "Unknown error 5 while reading environment variable 'NAME'");
  EXPECT_EQ(FailureOf("$(NAME)"), "Unknown error 0 while reading environment variable 'NAME'");
  EXPECT_EQ(FailureOf("$(NAME)"), "Unknown error 202 while reading environment variable 'NAME'");
  EXPECT_EQ(FailureOf("$(NAME)"), "Unknown error 204 while reading environment variable 'NAME'");
  EXPECT_EQ(FailureOf("$(NAME)"),
            "Unknown error 4294967295 while reading environment variable 'NAME'");
}

TEST_F(EnvironmentErrors, AnUnknownErrorOfAnEmptyNameNamesNothing) {
  answers = {{{0, 87}}};
  EXPECT_EQ(FailureOf("$()"), "Unknown error 87 while reading environment variable ''");
}

TEST_F(EnvironmentErrors, Error203IsAVariableThatIsNotSet) {
  answers = {{{0, 203}}};
  EXPECT_EQ(FailureOf("$(NAME)"), "Environment variable 'NAME' not found");
}

TEST_F(EnvironmentErrors, ACountOfExactly256IsTooLarge) {
  answers = {{{256, 0}}};
  EXPECT_EQ(FailureOf("$(NAME)"), "Environment variable's content too large (must be <256 chars)");
}

TEST_F(EnvironmentErrors, ACountOf255IsTheValue) {
  const std::string value(255, 'v');
  answers = {{{255, 0}, value}};
  EXPECT_EQ(ExpandEnvReference("<$(NAME)>", false), "<" + value + ">");
}

TEST_F(EnvironmentErrors, AReferenceIsReadIntoABufferOf256Bytes) {
  answers = {{{5, 0}, "value"}};
  EXPECT_EQ(ExpandEnvReference("a/$(NAME)/b", false), "a/value/b");
  EXPECT_THAT(readings, ::testing::ElementsAre(Reading{"NAME", 256}));
}

TEST_F(EnvironmentErrors, NothingIsReadWithoutACompleteReference) {
  EXPECT_EQ(ExpandEnvReference("a/$(NAME", false), "a/$(NAME");
  EXPECT_EQ(ExpandEnvReference("a b", true), "a%20b");
  EXPECT_THAT(readings, ::testing::IsEmpty());
}

TEST_F(EnvironmentErrors, AValueThatDoesNotFitIsReadAgainWhole) {
  const std::string value(256, 'v');
  answers = {{{257, 0}}, {{256, 0}, value}};
  EXPECT_EQ(ExpandEnvReference("<$(NAME)>", false), "<" + value + ">");
  EXPECT_THAT(readings, ::testing::ElementsAre(Reading{"NAME", 256}, Reading{"NAME", 257}));
}

TEST_F(EnvironmentErrors, AValueThatShrinksBetweenTheReadingsIsTheShorterOne) {
  answers = {{{301, 0}}, {{5, 0}, "value"}};
  EXPECT_EQ(ExpandEnvReference("<$(NAME)>", false), "<value>");
}

TEST_F(EnvironmentErrors, AValueThatGrowsBetweenTheReadingsLeavesNoGarbage) {
  answers = {{{301, 0}}, {{401, 0}}};
  EXPECT_EQ(ExpandEnvReference("<$(NAME)>", false), "<>");
}

TEST_F(EnvironmentErrors, AVariableIsReadIntoABufferOf1024Bytes) {
  answers = {{{5, 0}, "value"}};
  EXPECT_EQ(ReadEnvironmentVariable("NAME"), "value");
  EXPECT_THAT(readings, ::testing::ElementsAre(Reading{"NAME", 1024}));
}

TEST_F(EnvironmentErrors, AVariableReadsAsEmptyWhateverTheError) {
  answers = {{{0, 203}}, {{0, 5}}};
  EXPECT_EQ(ReadEnvironmentVariable("NAME"), "");
  EXPECT_EQ(ReadEnvironmentVariable("NAME"), "");
}

TEST_F(EnvironmentErrors, AVariableThatDoesNotFitIsReadAgainWhole) {
  const std::string value(1024, 'v');
  answers = {{{1025, 0}}, {{1024, 0}, value}};
  EXPECT_EQ(ReadEnvironmentVariable("NAME"), value);
  EXPECT_THAT(readings, ::testing::ElementsAre(Reading{"NAME", 1024}, Reading{"NAME", 1025}));
}

}  // namespace

platform::VariableRead platform::ReadVariable(const char* name, char* buffer, std::uint32_t size) {
  readings.push_back({name, size});
  if (answers.empty()) {
    ADD_FAILURE() << "read once too often: " << name;
    return {0, kErrorVariableNotFound};
  }
  const Answer answer = answers.front();
  answers.pop_front();
  if (answer.read.count > 0 && answer.read.count < size) {
    std::memcpy(buffer, answer.value.c_str(), answer.value.size() + 1);
  }
  return answer.read;
}

}  // namespace vextrel
