// SPDX-License-Identifier: MIT
// Targets with fewer exports than functions, and with exports that are not what they seem.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "lifecycle/library_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;

std::filesystem::path HalfTarget() {
  return TargetPath(std::string(kScriptedTarget) + "_half");
}
std::filesystem::path OddTargetFile() {
  return TargetPath("odd_target");
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
  const HeldTarget target(HalfTarget());
  const std::set<std::string> exported = ExportsOf(HalfTarget());
  ASSERT_EQ(exported.size(), (OlderFunctionNames().size() + 1) / 2);
  ASSERT_TRUE(exported.contains("GCInitLib"));
  EXPECT_EQ(BindAndTakeMissing(HalfTarget()), MissingLines(exported));
}

TEST_F(OddTarget, WithEverySecondFunctionIsCalledForThoseAlone) {
  const HeldTarget target(HalfTarget());
  const Module exports(HalfTarget());
  Bind(HalfTarget());
  target.Script().result = GC_ERR_TIMEOUT;
  ForEachFunction([&](const std::string& name, auto slot) {
    if (name != "GCInitLib" && name != "GCCloseLib") {
      const bool isExported = exports.FindAddress(name.c_str()) != nullptr;
      target.Script().calls = 0;
      EXPECT_EQ(CallWithZeros(proxy.*slot), isExported ? -1011 : -1003) << name;
      EXPECT_EQ(target.Script().calls, isExported ? 1 : 0) << name;
    }
  });
}

// The export that is no plain function: one that leads into another module on Windows, one that the
// loader has to ask for its address elsewhere.
constexpr const char* kIndirectExport = kOnWindows ? "TLOpen" : "EventGetInfo";

TEST_F(OddTarget, HasALineForEachNameThatItDoesNotExportItself) {
  const std::set<std::string> exported = {"GCInitLib",     "GCCloseLib", "TLGetInfo",
                                          kIndirectExport, "EventFlush", "EventKill"};
  EXPECT_EQ(BindAndTakeMissing(OddTargetFile()), MissingLines(exported));
}

TEST_F(OddTarget, IsCalledUnderBothNamesOfOneFunction) {
  const Module target(OddTargetFile());
  Bind(OddTargetFile());
  const int& calls = *static_cast<const int*>(target.FindAddress("CallsOfOddTarget"));
  const int before = calls;
  EXPECT_EQ(proxy.EventFlush(Handle(0x5000)), -1012);
  EXPECT_EQ(proxy.EventKill(Handle(0x5001)), -1012);
  EXPECT_EQ(calls, before + 2);
  EXPECT_THAT(TakeLines(), ElementsAre("INFO GC_ERR_ABORT=EventFlush(hEvent=0x0000000000005000)",
                                       "INFO GC_ERR_ABORT=EventKill(hEvent=0x0000000000005001)"));
}

TEST_F(OddTarget, IsCalledWhereItsExportLeadsTo) {
  Bind(OddTargetFile());
  if (kOnWindows) {
    TL_HANDLE handle = nullptr;
    EXPECT_EQ(proxy.TLOpen(&handle), 0);
    EXPECT_EQ(handle, Handle(0x7A));
  } else {
    INFO_DATATYPE type = 0;
    std::size_t size = 0;
    EXPECT_EQ(proxy.EventGetInfo(Handle(0x5000), 0, &type, nullptr, &size), -1012);
  }
}

}  // namespace
}  // namespace vextrel_test
