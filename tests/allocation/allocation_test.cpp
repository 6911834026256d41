// SPDX-License-Identifier: MIT
// When memory runs out inside the library, the consumer still gets the target's results and
// outputs. Only GCInitLib may let an exception through.
#include <new>

#include "allocation/every_function.h"
#include "allocation/failing_heap.h"
#include "allocation/full_session.h"
#include "allocation/session_fixture.h"

namespace vextrel_test {
namespace {

using failing_heap::Shortage;

class Allocation : public SessionFixture, public ::testing::WithParamInterface<Shortage> {
 protected:
  ~Allocation() override { failing_heap::Recover(); }

  // How GCInitLib may end when memory is short.
  enum class Init { Bound, Threw };
  [[nodiscard]] static Init TryInit() {
    try {
      const failing_heap::Armed armed;
      const GC_ERROR result = ::GCInitLib();
      failing_heap::Recover();
      EXPECT_EQ(result, GC_ERR_SUCCESS);
      return Init::Bound;
    } catch (const std::bad_alloc&) {
      failing_heap::Recover();
      return Init::Threw;
    }
  }
};

// Each loop ends with the first number that no allocation reaches.
TEST_P(Allocation, FailingInInitLeavesALibraryThatWorksOrCanBeInitialisedAgain) {
  long number = 0;
  int thrown = 0;
  do {
    Attach();
    failing_heap::FailAt(++number, GetParam());
    if (TryInit() == Init::Threw) {
      ++thrown;
      ASSERT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
    }
    FullSession().Run();
    Detach();
  } while (failing_heap::HasFailed() && !HasFailure());
  EXPECT_GT(number, 50);
  EXPECT_GT(thrown, 0);
  EXPECT_LT(thrown, number);
}

TEST_P(Allocation, FailingInInitLeavesALibraryThatCanBeClosed) {
  long number = 0;
  do {
    Attach();
    failing_heap::FailAt(++number, GetParam());
    const bool threw = TryInit() == Init::Threw;
    const GC_ERROR closed = ::GCCloseLib();
    EXPECT_TRUE(closed == GC_ERR_SUCCESS || (threw && closed == GC_ERR_NOT_IMPLEMENTED)) << closed;
    Detach();
  } while (failing_heap::HasFailed() && !HasFailure());
  EXPECT_GT(number, 50);
}

TEST_P(Allocation, FailingInACallLeavesResultsAndOutputsAlone) {
  long number = 0;
  bool linesSuffered = false;
  Attach();
  do {
    ASSERT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
    FullSession session;
    failing_heap::FailAt(++number, GetParam());
    session.Run();
    failing_heap::Recover();

    // A stream that cannot grow drops the rest: log4cpp may cut the line, its end included, so
    // that the next one continues it. No other line suffers.
    const std::vector<std::string> written = TakeCallLines();
    const std::vector<std::string>& made = session.Calls();
    const Difference difference = Compare(written, made);
    EXPECT_LE(difference.foreign, 1U) << number;
    if (GetParam() == Shortage::Once) {
      EXPECT_LE(difference.missing, 2U) << number;
    }
    linesSuffered = linesSuffered || difference.missing > 0;
    if (!failing_heap::HasFailed()) {
      EXPECT_EQ(written, made);
    }
  } while (failing_heap::HasFailed() && !HasFailure());
  Detach();
  EXPECT_GT(number, 100);
  EXPECT_TRUE(linesSuffered);
}

TEST_P(Allocation, FailingInACallOfAnyFunctionLeavesItsResultAndOutputsAlone) {
  Attach();
  ASSERT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
  bool hasFailed = false;
  for (const UniformFunction& function : UniformFunctions()) {
    if (function.name == "GCInitLib" || function.name == "GCCloseLib") {
      continue;
    }
    long number = 0;
    do {
      failing_heap::FailAt(++number, GetParam());
      ExpectAnswered(function, Target());
      failing_heap::Recover();
      hasFailed = hasFailed || failing_heap::HasFailed();
    } while (failing_heap::HasFailed() && !HasFailure());
  }
  EXPECT_TRUE(hasFailed);
  EXPECT_EQ(::GCCloseLib(), GC_ERR_SUCCESS);
  Detach();
}

INSTANTIATE_TEST_SUITE_P(All, Allocation, ::testing::Values(Shortage::Once, Shortage::FromThenOn),
                         [](const auto& each) {
                           return each.param == Shortage::Once ? "Once" : "FromThenOn";
                         });

}  // namespace
}  // namespace vextrel_test
