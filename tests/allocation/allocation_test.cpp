// Memory that runs out inside the library is its own affair: the consumer gets the target's results
// and outputs all the same. Only GCInitLib may let an exception pass.
#include <new>

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
  enum class Init { kBound, kThrew };
  [[nodiscard]] static Init TryInit() {
    try {
      const failing_heap::Armed armed;
      const GC_ERROR result = ::GCInitLib();
      failing_heap::Recover();
      EXPECT_EQ(result, GC_ERR_SUCCESS);
      return Init::kBound;
    } catch (const std::bad_alloc&) {
      failing_heap::Recover();
      return Init::kThrew;
    }
  }
};

// The first failing allocation after which nothing fails any more bounds the loops.
TEST_P(Allocation, FailingInInitLeavesALibraryThatWorksOrCanBeInitialisedAgain) {
  long number = 0;
  int thrown = 0;
  do {
    Attach();
    failing_heap::FailAt(++number, GetParam());
    if (TryInit() == Init::kThrew) {
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
    const bool threw = TryInit() == Init::kThrew;
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
    if (GetParam() == Shortage::kOnce) {
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

INSTANTIATE_TEST_SUITE_P(All, Allocation, ::testing::Values(Shortage::kOnce, Shortage::kFromThenOn),
                         [](const auto& each) {
                           return each.param == Shortage::kOnce ? "Once" : "FromThenOn";
                         });

}  // namespace
}  // namespace vextrel_test
