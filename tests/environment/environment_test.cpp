// SPDX-License-Identifier: MIT
#include "environment/environment.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>

#include "support/system.h"

namespace vextrel {
namespace {

using vextrel_test::SetVariable;

constexpr const char* kA = "VEXTREL_TEST_A";
constexpr const char* kB = "VEXTREL_TEST_B";

// What reading a variable last failed with must not show through: every test begins with some
// other error left behind.
class Environment : public ::testing::Test {
 protected:
  Environment() {
    Unset();
    vextrel_test::SetLastErrorValue(5);
  }
  ~Environment() override { Unset(); }

 private:
  static void Unset() {
    SetVariable(kA, nullptr);
    SetVariable(kB, nullptr);
  }
};

using ExpandEnvReferenceTest = Environment;
using FormatStringTest = Environment;
using ReadEnvironmentVariableTest = Environment;

std::string Expand(const std::string& input) {
  return ExpandEnvReference(input, false);
}

// The message of the failure that the expansion must end with.
std::string FailureOf(const std::string& input) {
  try {
    ADD_FAILURE() << "expanded to " << Expand(input);
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  return {};
}

// Different characters, so that a shifted or repeated piece is seen.
std::string ValueOf(std::size_t length) {
  std::string value;
  for (std::size_t i = 0; i < length; ++i) {
    value += static_cast<char>('a' + i % 23);
  }
  return value;
}

TEST_F(ExpandEnvReferenceTest, LeavesAPathWithoutReferenceUnchanged) {
  for (const char* path :
       {"", "C:\\producers\\camera.cti", "/opt/producers/camera.cti", "$", "$A", "(A)", "A)",
        "$ (A)", "${VEXTREL_TEST_A}", "%VEXTREL_TEST_A%", "a b", " "}) {
    EXPECT_EQ(Expand(path), path);
  }
}

TEST_F(ExpandEnvReferenceTest, ReplacesALeadingReferenceAndKeepsTheRest) {
  SetVariable(kA, "C:\\producers");
  EXPECT_EQ(Expand("$(VEXTREL_TEST_A)\\camera.cti"), "C:\\producers\\camera.cti");
}

TEST_F(ExpandEnvReferenceTest, ReplacesAReferenceWhereverItStands) {
  SetVariable(kA, "value");
  EXPECT_EQ(Expand("$(VEXTREL_TEST_A)"), "value");
  EXPECT_EQ(Expand("/opt/$(VEXTREL_TEST_A)/camera.cti"), "/opt/value/camera.cti");
  EXPECT_EQ(Expand("/opt/$(VEXTREL_TEST_A)"), "/opt/value");
}

TEST_F(ExpandEnvReferenceTest, ReplacesOnlyTheFirstOfTwoReferences) {
  SetVariable(kA, "first");
  SetVariable(kB, "second");
  EXPECT_EQ(Expand("$(VEXTREL_TEST_A)/$(VEXTREL_TEST_B)"), "first/$(VEXTREL_TEST_B)");
  EXPECT_EQ(Expand("$(VEXTREL_TEST_A)$(VEXTREL_TEST_A)"), "first$(VEXTREL_TEST_A)");
}

TEST_F(ExpandEnvReferenceTest, DoesNotLookAtTheSecondReference) {
  SetVariable(kA, "first");
  EXPECT_EQ(Expand("$(VEXTREL_TEST_A) $(VEXTREL_TEST_B) $("), "first $(VEXTREL_TEST_B) $(");
}

TEST_F(ExpandEnvReferenceTest, DoesNotExpandAReferenceInsideTheValue) {
  SetVariable(kA, "[$(VEXTREL_TEST_B)]");
  SetVariable(kB, "second");
  EXPECT_EQ(Expand("<$(VEXTREL_TEST_A)>"), "<[$(VEXTREL_TEST_B)]>");
}

TEST_F(ExpandEnvReferenceTest, LeavesAnUnclosedReferenceUnchanged) {
  SetVariable(kA, "value");
  EXPECT_EQ(Expand("/opt/$(VEXTREL_TEST_A/camera.cti"), "/opt/$(VEXTREL_TEST_A/camera.cti");
  EXPECT_EQ(Expand("$("), "$(");
}

TEST_F(ExpandEnvReferenceTest, LooksForTheEndBehindTheBeginningOnly) {
  SetVariable(kA, "value");
  EXPECT_EQ(Expand(")$(VEXTREL_TEST_A"), ")$(VEXTREL_TEST_A");
  EXPECT_EQ(Expand("a)b$(VEXTREL_TEST_A)c)"), "a)bvaluec)");
}

TEST_F(ExpandEnvReferenceTest, TakesTheNameFromTheFirstBeginningToTheFirstEnd) {
  SetVariable(kA, "value");
  EXPECT_EQ(FailureOf("$($(VEXTREL_TEST_A))"), "Environment variable '$(VEXTREL_TEST_A' not found");
}

TEST_F(ExpandEnvReferenceTest, RaisesForAVariableThatIsNotSet) {
  EXPECT_EQ(FailureOf("$(VEXTREL_TEST_A)\\camera.cti"),
            "Environment variable 'VEXTREL_TEST_A' not found");
}

TEST_F(ExpandEnvReferenceTest, RaisesForAFirstReferenceThatIsNotSetThoughTheSecondIs) {
  SetVariable(kB, "second");
  EXPECT_EQ(FailureOf("$(VEXTREL_TEST_A)$(VEXTREL_TEST_B)"),
            "Environment variable 'VEXTREL_TEST_A' not found");
}

TEST_F(ExpandEnvReferenceTest, RaisesForAnEmptyName) {
  EXPECT_EQ(FailureOf("$()"), "Environment variable '' not found");
  EXPECT_EQ(FailureOf("/opt/$()/camera.cti"), "Environment variable '' not found");
}

TEST_F(ExpandEnvReferenceTest, TakesTheNameAsItStands) {
  SetVariable(kA, "value");
  EXPECT_EQ(FailureOf("$( VEXTREL_TEST_A)"), "Environment variable ' VEXTREL_TEST_A' not found");
  EXPECT_EQ(FailureOf("$(VEXTREL_TEST_A )"), "Environment variable 'VEXTREL_TEST_A ' not found");
  EXPECT_EQ(FailureOf("$(VEXTREL_TEST_A=value)"),
            "Environment variable 'VEXTREL_TEST_A=value' not found");
}

TEST_F(ExpandEnvReferenceTest, ReadsAnEmptyValueAsAVariableThatIsNotSet) {
  SetVariable(kA, "");
  EXPECT_EQ(FailureOf("$(VEXTREL_TEST_A)/camera.cti"),
            "Environment variable 'VEXTREL_TEST_A' not found");
}

TEST_F(ExpandEnvReferenceTest, CutsTheMessageForALongNameAt255Characters) {
  const std::string begin = "Environment variable '";
  const std::string name(300, 'N');
  EXPECT_EQ(FailureOf("$(" + name + ")"), begin + name.substr(0, 255 - begin.size()));
}

TEST_F(ExpandEnvReferenceTest, SubstitutesAValueOfAnyLengthWhole) {
  for (const std::size_t length :
       {1U, 253U, 254U, 255U, 256U, 257U, 300U, 1023U, 1024U, 1100U, 32000U}) {
    SCOPED_TRACE(length);
    const std::string value = ValueOf(length);
    SetVariable(kA, value.c_str());
    EXPECT_EQ(Expand("<$(VEXTREL_TEST_A)>"), "<" + value + ">");
  }
}

TEST_F(ExpandEnvReferenceTest, KeepsBlanksUnlessTold) {
  EXPECT_EQ(Expand("C:\\my producers\\a  b.cti "), "C:\\my producers\\a  b.cti ");
}

TEST_F(ExpandEnvReferenceTest, EscapesEveryBlankOfAPathWithoutReference) {
  EXPECT_EQ(ExpandEnvReference("C:\\my own producers", true), "C:\\my%20own%20producers");
  EXPECT_EQ(ExpandEnvReference(" a  b ", true), "%20a%20%20b%20");
  EXPECT_EQ(ExpandEnvReference(" ", true), "%20");
  EXPECT_EQ(ExpandEnvReference("", true), "");
  EXPECT_EQ(ExpandEnvReference("nothing%20to\tdo", true), "nothing%20to\tdo");
}

TEST_F(ExpandEnvReferenceTest, EscapesBlanksAroundAnUnclosedReference) {
  EXPECT_EQ(ExpandEnvReference("a $(b c", true), "a%20$(b%20c");
  EXPECT_EQ(ExpandEnvReference(") $(b", true), ")%20$(b");
}

TEST_F(ExpandEnvReferenceTest, KeepsBlanksWhereAReferenceIsReplaced) {
  SetVariable(kA, "my producers");
  EXPECT_EQ(ExpandEnvReference("a b/$(VEXTREL_TEST_A)/c d", true), "a b/my producers/c d");
}

TEST_F(ExpandEnvReferenceTest, LeavesItsInputAlone) {
  SetVariable(kA, "value");
  const std::string input = "$(VEXTREL_TEST_A) b";
  static_cast<void>(ExpandEnvReference(input, true));
  EXPECT_EQ(input, "$(VEXTREL_TEST_A) b");
}

TEST_F(FormatStringTest, FormatsItsArguments) {
  EXPECT_EQ(FormatString("nothing"), "nothing");
  EXPECT_EQ(FormatString("%s", ""), "");
  EXPECT_EQ(FormatString("%u of '%s', 100 %%", 4294967295U, "text"), "4294967295 of 'text', 100 %");
}

TEST_F(FormatStringTest, KeepsUpTo255Characters) {
  for (const std::size_t length : {254U, 255U}) {
    const std::string text = ValueOf(length);
    EXPECT_EQ(FormatString("%s", text.c_str()), text);
  }
}

TEST_F(FormatStringTest, CutsALongerTextAt255Characters) {
  for (const std::size_t length : {256U, 257U, 1000U, 70000U}) {
    const std::string text = ValueOf(length);
    EXPECT_EQ(FormatString("%s", text.c_str()), text.substr(0, 255));
  }
}

TEST_F(ReadEnvironmentVariableTest, IsEmptyForAVariableThatIsNotSet) {
  EXPECT_EQ(ReadEnvironmentVariable(kA), "");
}

TEST_F(ReadEnvironmentVariableTest, IsEmptyForAnEmptyValue) {
  SetVariable(kA, "");
  EXPECT_EQ(ReadEnvironmentVariable(kA), "");
}

TEST_F(ReadEnvironmentVariableTest, ReadsAValueOfAnyLengthWhole) {
  for (const std::size_t length : {1U, 255U, 256U, 1022U, 1023U, 1024U, 1025U, 1100U, 32000U}) {
    SCOPED_TRACE(length);
    const std::string value = ValueOf(length);
    SetVariable(kA, value.c_str());
    EXPECT_EQ(ReadEnvironmentVariable(kA), value);
  }
}

TEST_F(ReadEnvironmentVariableTest, DoesNotExpandReferences) {
  SetVariable(kA, "$(VEXTREL_TEST_B) a b");
  SetVariable(kB, "second");
  EXPECT_EQ(ReadEnvironmentVariable(kA), "$(VEXTREL_TEST_B) a b");
}

}  // namespace
}  // namespace vextrel
