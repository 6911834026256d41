// SPDX-License-Identifier: MIT
// The timing of calls: two lines for each that reaches the target, if the configuration asks for
// them.
#include "lifecycle/timed_call.h"

#include <gmock/gmock.h>

#include <chrono>
#include <latch>
#include <log4cpp/Category.hh>
#include <log4cpp/OstreamAppender.hh>
#include <log4cpp/Priority.hh>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

// "DEBUG Vextrel.Timing Call NUMBER enters CALL".
std::string Enters(int number, const std::string& call) {
  return "DEBUG Vextrel.Timing Call " + std::to_string(number) + " enters " + call;
}

// The line about a call that leaves, with any duration of three decimals.
MATCHER_P2(Leaves, number, function, "leaves") {
  const std::string begin = "DEBUG Vextrel.Timing Call " + std::to_string(number) + " leaves " +
                            std::string(function) + " after ";
  const std::string line = arg;
  if (!line.starts_with(begin) || !line.ends_with(" us")) {
    return false;
  }
  const std::string duration = line.substr(begin.size(), line.size() - begin.size() - 3);
  const std::size_t point = duration.find('.');
  static_cast<void>(result_listener);
  return point != 0 && point + 4 == duration.size() &&
         duration.find_first_not_of("0123456789.") == std::string::npos &&
         duration.find('.', point + 1) == std::string::npos;
}

class TimedCall : public LibraryFixture {
 protected:
  ~TimedCall() override { target.Script().functions = {}; }

  // Initialises the library. `root` is the configuration of the categories.
  void Start(const std::string& root) {
    UseLog({.file = LogFile(), .rootCategory = root, .pattern = "%p %c %m%n"});
    UseTarget(ScriptedTargetPath());
    LoadProxy();
    ASSERT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
  }
  // The same with timing, and the lines taken. GCInitLib is call 1.
  void StartTimed() {
    Start(std::string("INFO, file") + kWithTiming);
    static_cast<void>(TakeLines());
  }

  // The microseconds in a line about a call that leaves.
  [[nodiscard]] static double MicrosecondsIn(const std::string& line) {
    return std::stod(line.substr(line.find(" after ") + 7));
  }

  const HeldTarget target;
};

TEST_F(TimedCall, EntersAndLeavesTheTargetInsideItsOwnLine) {
  StartTimed();
  EXPECT_EQ(proxy.IFClose(Handle(0xFEDCBA9876543210)), 0);
  const std::vector<std::string> lines = TakeLines();
  ASSERT_GE(lines.size(), 3U);
  EXPECT_EQ(lines[0], "DEBUG Vextrel.Timing Call 2 enters IFClose(0xFEDCBA9876543210)");
  EXPECT_THAT(lines[1], Leaves(2, "IFClose"));
  EXPECT_EQ(lines[2], "INFO Vextrel GC_ERR_SUCCESS=IFClose(hInterface=0xFEDCBA9876543210)");
}

TEST_F(TimedCall, ShowsANumberAsItIs) {
  StartTimed();
  INFO_DATATYPE type = 0;
  std::size_t size = 0;
  EXPECT_EQ(proxy.GCGetInfo(3, &type, nullptr, &size), 0);
  EXPECT_EQ(TakeLines().at(0), "DEBUG Vextrel.Timing Call 2 enters GCGetInfo(3)");
  EXPECT_EQ(proxy.GCGetInfo(-2147483647, &type, nullptr, &size), 0);
  EXPECT_EQ(TakeLines().at(0), "DEBUG Vextrel.Timing Call 3 enters GCGetInfo(-2147483647)");
}

TEST_F(TimedCall, ShowsAnAddressThatTheConsumerGave) {
  StartTimed();
  TL_HANDLE opened = nullptr;
  EXPECT_EQ(proxy.TLOpen(&opened), 0);
  EXPECT_EQ(TakeLines().at(0), Enters(2, "TLOpen(0x" + Hex16(&opened) + ")"));
}

TEST_F(TimedCall, ShowsNoArgumentWhereThereIsNone) {
  Start(std::string("INFO, file") + kWithTiming);
  const std::vector<std::string> lines = TakeLines();
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[2], "DEBUG Vextrel.Timing Call 1 enters GCInitLib()");
  EXPECT_THAT(lines[3], Leaves(1, "GCInitLib"));
  EXPECT_EQ(lines[4], "INFO Vextrel GC_ERR_SUCCESS=GCInitLib(void)");
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  const std::vector<std::string> closing = TakeLines();
  ASSERT_EQ(closing.size(), 3U);
  EXPECT_EQ(closing[0], "DEBUG Vextrel.Timing Call 2 enters GCCloseLib()");
  EXPECT_THAT(closing[1], Leaves(2, "GCCloseLib"));
}

TEST_F(TimedCall, IsThereForEveryFunction) {
  StartTimed();
  int number = 1;
  // GCInitLib has its lines at the start, and GCCloseLib would end the session.
  std::set<std::string> timed = {"GCInitLib", "GCCloseLib"};
  ForEachFunction([&](const std::string& name, auto slot) {
    if (timed.contains(name)) {
      return;
    }
    SCOPED_TRACE(name);
    EXPECT_EQ(CallWithZeros(proxy.*slot), 0);
    const std::vector<std::string> lines = TakeLines();
    ASSERT_GE(lines.size(), 3U);
    ++number;
    EXPECT_THAT(lines[0], ::testing::StartsWith(Enters(number, name + "(")));
    EXPECT_THAT(lines[1], Leaves(number, name));
    EXPECT_THAT(lines[2], ::testing::StartsWith("INFO Vextrel GC_ERR_SUCCESS=" + name + "("));
    timed.insert(name);
  });
  EXPECT_THAT(FunctionNames(), ::testing::UnorderedElementsAreArray(timed));
}

TEST_F(TimedCall, IsCountedOnOverClosing) {
  StartTimed();
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.GCInitLib(), 0);
  EXPECT_THAT(TakeLines(), Contains(Enters(3, "GCInitLib()")));
}

TEST_F(TimedCall, IsNotThereForACallThatDoesNotReachATarget) {
  Start(std::string("INFO, file") + kWithTiming);
  EXPECT_EQ(proxy.GCCloseLib(), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), GC_ERR_NOT_IMPLEMENTED);
  EXPECT_THAT(TakeLines(), Not(Contains(HasSubstr("Timing"))));
}

TEST_F(TimedCall, IsSilentUnlessDebugIsLetThrough) {
  Start("INFO, file");
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Not(Contains(HasSubstr("Timing"))));
}

TEST_F(TimedCall, IsSilentWhereItsOwnCategoryIs) {
  Start("DEBUG, file\ncategory.Vextrel.Timing=INFO");
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Not(Contains(HasSubstr("Timing"))));
}

TEST_F(TimedCall, IsThereWhereEverythingIs) {
  Start("DEBUG, file");
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), Contains(Enters(2, "IFClose(0x0000000000002000)")));
}

TEST_F(TimedCall, MayBeAllThereIs) {
  Start(std::string("ERROR, file") + kWithTiming);
  EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0);
  EXPECT_THAT(TakeLines(),
              ElementsAre(Enters(1, "GCInitLib()"), Leaves(1, "GCInitLib"),
                          Enters(2, "EventFlush(0x0000000000006000)"), Leaves(2, "EventFlush")));
}

TEST_F(TimedCall, LeavesEvenWithAnException) {
  StartTimed();
  target.Script().functions.EventFlush = [](EVENT_HANDLE) -> GC_ERROR {
    throw std::runtime_error("no");
  };
  EXPECT_THROW(static_cast<void>(proxy.EventFlush(Handle(0x6000))), std::runtime_error);
  EXPECT_THAT(TakeLines(),
              ElementsAre(Enters(2, "EventFlush(0x0000000000006000)"), Leaves(2, "EventFlush")));
}

TEST_F(TimedCall, TakesAsLongAsTheTarget) {
  StartTimed();
  target.Script().functions.EventFlush = [](EVENT_HANDLE) -> GC_ERROR {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return GC_ERR_SUCCESS;
  };
  EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0);
  const double slow = MicrosecondsIn(TakeLines().at(1));
  EXPECT_GE(slow, 20'000);
  EXPECT_LE(slow, 2'000'000);
  EXPECT_EQ(proxy.EventKill(Handle(0x6000)), 0);
  EXPECT_LT(MicrosecondsIn(TakeLines().at(1)), slow);
}

TEST_F(TimedCall, HasEnteredBeforeTheTargetRuns) {
  StartTimed();
  static std::string logInside;
  static const std::filesystem::path kLog = LogFile();
  target.Script().functions.EventFlush = [](EVENT_HANDLE) -> GC_ERROR {
    logInside = ReadFile(kLog);
    return GC_ERR_SUCCESS;
  };
  EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0);
  EXPECT_TRUE(logInside.ends_with("Call 2 enters EventFlush(0x0000000000006000)\n")) << logInside;
}

TEST_F(TimedCall, LeavesTheLastErrorOfBothSidesAlone) {
  StartTimed();
  static std::uint32_t seen = 0;
  target.Script().functions.EventFlush = [](EVENT_HANDLE) -> GC_ERROR {
    seen = LastError();
    SetLastErrorValue(4711);
    return GC_ERR_SUCCESS;
  };
  SetLastErrorValue(17);
  EXPECT_EQ(proxy.EventFlush(Handle(0x6000)), 0);
  EXPECT_EQ(LastError(), 4711U);
  EXPECT_EQ(seen, 17U);
}

// Without an appender nothing holds the threads up but the number itself.
TEST(CallTimer, GivesEachCallANumberOfItsOwn) {
  constexpr int callsPerThread = 50'000;
  vextrel::StartTiming();
  log4cpp::Category& category = *vextrel::timingLogger;
  category.setAdditivity(false);
  category.setPriority(log4cpp::Priority::DEBUG);
  std::latch start(8);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      for (int call = 0; call < callsPerThread; ++call) {
        const vextrel::CallTimer timer("Function");
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::ostringstream log;
  category.addAppender(new log4cpp::OstreamAppender("last", &log));
  { const vextrel::CallTimer timer("Function"); }
  category.removeAllAppenders();
  EXPECT_THAT(log.str(), HasSubstr("Call 400001 enters Function()\n"));
}

}  // namespace
}  // namespace vextrel_test
