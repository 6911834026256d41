// Targets with fewer exports than functions, and with exports that are not what they seem.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::UnorderedElementsAreArray;

std::filesystem::path Target(const char* name) {
  return ScriptedTargetPath().parent_path() / name;
}

std::string NotExported(const std::string& name) {
  return "ERROR " + (name == "EventGetData" ? "GEventGetData" : name) + " not exported";
}

class OddTarget : public LibraryFixture {
 protected:
  // The lines of GCInitLib between its version's and its last, which are those of missing exports.
  [[nodiscard]] std::vector<std::string> BindAndTakeMissing(const std::filesystem::path& target) {
    Prepare(target);
    EXPECT_EQ(proxy.GCInitLib(), 0);
    std::vector<std::string> lines = TakeLines();
    if (lines.size() < 3) {
      ADD_FAILURE() << "only " << lines.size() << " lines";
      return {};
    }
    EXPECT_EQ(lines.back(), kInitSucceeded);
    return {lines.begin() + 2, lines.end() - 1};
  }
};

TEST_F(OddTarget, WithEverySecondFunctionHasALineForEachOfTheOthers) {
  const HeldTarget target(Target("half_target.cti"));
  const Module exports(Target("half_target.cti"));
  std::vector<std::string> missing;
  ForEachFunction([&](const char* name, auto /*slot*/) {
    if (exports.FindAddress(name) == nullptr) {
      missing.push_back(NotExported(name));
    }
  });
  ASSERT_EQ(missing.size(), 25U);
  ASSERT_NE(exports.FindAddress("GCInitLib"), nullptr);
  EXPECT_THAT(BindAndTakeMissing(Target("half_target.cti")), UnorderedElementsAreArray(missing));
}

TEST_F(OddTarget, WithEverySecondFunctionIsCalledForThoseAlone) {
  const HeldTarget target(Target("half_target.cti"));
  const Module exports(Target("half_target.cti"));
  Bind(Target("half_target.cti"));
  target.script().calls = 0;
  target.script().result = GC_ERR_TIMEOUT;
  ForEachFunction([&](const char* name, auto slot) {
    if (std::string(name) != "GCInitLib" && std::string(name) != "GCCloseLib") {
      const bool isExported = exports.FindAddress(name) != nullptr;
      EXPECT_EQ(CallWithZeros(proxy.*slot), isExported ? -1011 : -1003) << name;
    }
  });
  EXPECT_EQ(target.script().calls, 25);
}

TEST_F(OddTarget, HasNoLineForExportsThatAreNoFunctionOrLieElsewhere) {
  const std::vector<std::string> missing = BindAndTakeMissing(Target("odd_target.cti"));
  EXPECT_EQ(missing.size(), 45U);
  for (const char* name :
       {"GCInitLib", "GCCloseLib", "TLGetInfo", "TLOpen", "EventFlush", "EventKill"}) {
    EXPECT_THAT(missing, Not(Contains(NotExported(name))));
  }
}

TEST_F(OddTarget, IsCalledUnderBothNamesOfOneFunction) {
  const Module target(Target("odd_target.cti"));
  Bind(Target("odd_target.cti"));
  const int& calls = *static_cast<const int*>(target.FindAddress("CallsOfOddTarget"));
  const int before = calls;
  EXPECT_EQ(proxy.EventFlush(Handle(0x5000)), -1012);
  EXPECT_EQ(proxy.EventKill(Handle(0x5001)), -1012);
  EXPECT_EQ(calls, before + 2);
  EXPECT_THAT(TakeLines(), ElementsAre("INFO GC_ERR_ABORT=EventFlush(hEvent=0x0000000000005000)",
                                       "INFO GC_ERR_ABORT=EventKill(hEvent=0x0000000000005001)"));
}

TEST_F(OddTarget, IsCalledWhereItsExportLeadsTo) {
  Bind(Target("odd_target.cti"));
  TL_HANDLE handle = nullptr;
  EXPECT_EQ(proxy.TLOpen(&handle), 0);
  EXPECT_EQ(handle, Handle(0x7A));
}

}  // namespace
}  // namespace vextrel_test
