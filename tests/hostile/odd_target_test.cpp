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

std::filesystem::path Target(const char* name) {
  return ScriptedTargetPath().parent_path() / name;
}

std::string NotExported(const std::string& name) {
  return "ERROR " + NameInMissingLine(name) + " not exported";
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
  ASSERT_EQ(missing.size(), kFunctionCount / 2);
  ASSERT_NE(exports.FindAddress("GCInitLib"), nullptr);
  EXPECT_EQ(BindAndTakeMissing(Target("half_target.cti")), missing);
}

TEST_F(OddTarget, WithEverySecondFunctionIsCalledForThoseAlone) {
  const HeldTarget target(Target("half_target.cti"));
  const Module exports(Target("half_target.cti"));
  Bind(Target("half_target.cti"));
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
  std::vector<std::string> missing;
  for (const std::string& name : FunctionNames()) {
    if (!exported.contains(name)) {
      missing.push_back(NotExported(name));
    }
  }
  EXPECT_EQ(BindAndTakeMissing(Target("odd_target.cti")), missing);
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
