// SPDX-License-Identifier: MIT
// A target whose GCInitLib fails: the failure is the consumer's, and the binding stands.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;

struct Failure {
  GC_ERROR code;
  const char* shown;
};

class FailingInit : public LibraryFixture, public ::testing::WithParamInterface<Failure> {};

TEST_P(FailingInit, IsReturnedAndNamedAndLeavesTheTargetBound) {
  const HeldTarget target;
  Prepare();
  target.Script().result = GetParam().code;
  EXPECT_EQ(proxy.GCInitLib(), GetParam().code);
  const std::string shown = GetParam().shown;
  EXPECT_THAT(TakeLines(), ElementsAre(LoadingLine(ScriptedTargetPath()), kNoVersion,
                                       "INFO " + shown + "=GCInitLib(void)"));

  EXPECT_EQ(OpenTransportLayer(), GetParam().code);
  EXPECT_THAT(TakeLines(), ElementsAre(OpenLine(shown)));
  EXPECT_EQ(proxy.GCCloseLib(), GetParam().code);
  EXPECT_THAT(TakeLines(), ElementsAre("INFO " + shown + "=GCCloseLib(void)"));
  EXPECT_EQ(target.Script().calls, 3);
}

INSTANTIATE_TEST_SUITE_P(
    EachCode, FailingInit,
    ::testing::Values(
        Failure{-1001, "GC_ERR_ERROR"}, Failure{-1002, "GC_ERR_NOT_INITIALIZED"},
        Failure{-1003, "GC_ERR_NOT_IMPLEMENTED"}, Failure{-1004, "GC_ERR_RESOURCE_IN_USE"},
        Failure{-1005, "GC_ERR_ACCESS_DENIED"}, Failure{-1006, "GC_ERR_INVALID_HANDLE"},
        Failure{-1007, "GC_ERR_INVALID_ID"}, Failure{-1008, "GC_ERR_NO_DATA"},
        Failure{-1009, "GC_ERR_INVALID_PARAMETER"}, Failure{-1010, "GC_ERR_IO"},
        Failure{-1011, "GC_ERR_TIMEOUT"}, Failure{-1012, "GC_ERR_ABORT"},
        Failure{-1013, "GC_ERR_INVALID_BUFFER"}, Failure{-1014, "GC_ERR_NOT_AVAILABLE"},
        Failure{-1015, "GC_ERR_INVALID_ADDRESS"}, Failure{-10000, "GC_ERR_CUSTOM_ID"},
        Failure{-10001, "(Unknown GC_ERROR: -10001)"}, Failure{1, "(Unknown GC_ERROR: 1)"},
        Failure{-2147483647 - 1, "(Unknown GC_ERROR: -2147483648)"}),
    [](const auto& test) {
      return (test.param.code < 0 ? "Minus" : "Plus") +
             std::to_string(std::abs(static_cast<long long>(test.param.code)));
    });

}  // namespace
}  // namespace vextrel_test
