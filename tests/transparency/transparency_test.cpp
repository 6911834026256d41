// SPDX-License-Identifier: MIT
// Through the proxy, a consumer and a target see of each other what they would see without it.
#include <cfenv>
#include <cstddef>
#include <limits>
#include <string>

#include "transparency/traced_proxy.h"

namespace vextrel_test {
namespace {

// All results that have a name, and some that have none.
constexpr GC_ERROR kResults[] = {0,
                                 -1001,
                                 -1002,
                                 -1003,
                                 -1004,
                                 -1005,
                                 -1006,
                                 -1007,
                                 -1008,
                                 -1009,
                                 -1010,
                                 -1011,
                                 -1012,
                                 -1013,
                                 -1014,
                                 -1015,
                                 -1016,
                                 -4711,
                                 7,
                                 -1,
                                 -999,
                                 -1000,
                                 -10000,
                                 -10001,
                                 std::numeric_limits<GC_ERROR>::min(),
                                 std::numeric_limits<GC_ERROR>::max()};

constexpr INFO_DATATYPE kFirstType = -1;
constexpr INFO_DATATYPE kLastType = 15;

bool HasType(const UniformFunction& function) {
  for (const Role role : function.roles) {
    if (role == Role::Type || role == Role::OptionalType || role == Role::Infos ||
        role == Role::PartInfos) {
      return true;
    }
  }
  return false;
}

bool HasArguments(const UniformFunction& function) {
  return function.roles[0] != Role::None;
}

// Counts the calls of the function in the log.
int CountLines(const std::string& log, const std::string& name) {
  const std::string begin = "=" + name + "(";
  int count = 0;
  for (std::size_t at = log.find(begin); at != std::string::npos; at = log.find(begin, at + 1)) {
    ++count;
  }
  return count;
}

class Transparency : public TracedProxy, public ::testing::WithParamInterface<std::string> {};

TEST_P(Transparency, CallsPassUnchanged) {
  Start(Log::File);
  const UniformFunction& function = FindFunction(GetParam());
  for (const Shape shape : kShapes) {
    for (const GC_ERROR result : kResults) {
      ExpectNothingChanged(function, shape, {.result = result});
      ASSERT_FALSE(HasFailure());
    }
    if (!HasArguments(function)) {
      break;
    }
  }
  if (HasType(function)) {
    for (INFO_DATATYPE type = kFirstType; type <= kLastType; ++type) {
      ExpectNothingChanged(function, Shape::Complete, {.type = type});
      ExpectNothingChanged(function, Shape::SizeQuery, {.type = type});
    }
  }
  // Start() has called GCInitLib once.
  const int others = function.name == "GCInitLib" ? 1 : 0;
  EXPECT_EQ(CountLines(ReadFile(LogFile()), function.name), Calls() + others);

  // The same with records in the registry for the call to work on.
  for (const Shape shape : kShapes) {
    OpenRecords();
    ExpectNothingChanged(function, shape, {});
  }
}

INSTANTIATE_TEST_SUITE_P(EachFunction, Transparency, ::testing::ValuesIn(FunctionNames()),
                         [](const auto& tested) { return tested.param; });

// Regardless of how much of the log works.
struct LogCase {
  Log log;
  const char* name;
};

class TransparencyWithoutLog : public TracedProxy, public ::testing::WithParamInterface<LogCase> {};

TEST_P(TransparencyWithoutLog, CallsPassUnchanged) {
  Start(GetParam().log);
  for (const UniformFunction& function : UniformFunctions()) {
    for (const GC_ERROR result : {0, -1010}) {
      ExpectNothingChanged(function, Shape::Complete, {.result = result});
      ExpectNothingChanged(function, Shape::SizeQuery, {.result = result});
    }
  }
  EXPECT_EQ(CountLines(ReadFile(LogFile()), "TLGetInfo"), 0);
}

INSTANTIATE_TEST_SUITE_P(EachLog, TransparencyWithoutLog,
                         ::testing::Values(LogCase{Log::BelowPriority, "BelowPriority"},
                                           LogCase{Log::FolderAsFile, "FolderAsFile"},
                                           LogCase{Log::NoAppender, "NoAppender"},
                                           LogCase{Log::NoConfiguration, "NoConfiguration"}),
                         [](const auto& tested) { return tested.param.name; });

// Without a target, a call returns GC_ERR_NOT_IMPLEMENTED and does nothing else.
class TransparencyWithoutTarget : public TracedProxy {
 protected:
  // GCCloseLib comes last, because it ends the binding.
  void ExpectNobodyThereForAll(GC_ERROR resultOfInit) {
    for (const UniformFunction& function : UniformFunctions()) {
      if (function.name != "GCCloseLib") {
        const bool isInit = function.name == "GCInitLib";
        ExpectNobodyThereInAnyShape(function, isInit ? resultOfInit : GC_ERR_NOT_IMPLEMENTED);
      }
    }
    ExpectNobodyThereInAnyShape(FindFunction("GCCloseLib"), GC_ERR_NOT_IMPLEMENTED);
  }

 private:
  void ExpectNobodyThereInAnyShape(const UniformFunction& function, GC_ERROR result) {
    for (const Shape shape : kShapes) {
      ExpectNobodyThere(function, shape, result);
    }
  }
};

TEST_F(TransparencyWithoutTarget, NoProducerIsNamed) {
  SetUpLog(Log::File);
  LoadProxy();
  ExpectNobodyThereForAll(0);
}

TEST_F(TransparencyWithoutTarget, TheProducerCannotBeLoaded) {
  SetUpLog(Log::File);
  UseTarget(Folder() / "no_such_producer.cti");
  LoadProxy();
  ExpectNobodyThereForAll(0);
}

TEST_F(TransparencyWithoutTarget, TheProducerExportsNothing) {
  SetUpLog(Log::File);
  UseTarget(EmptyTargetPath());
  LoadProxy();
  ExpectNobodyThereForAll(-1003);
}

// Rendering a number neither changes the rounding mode nor raises an exception of its own.
class TransparencyOfFloats : public TracedProxy, public ::testing::WithParamInterface<int> {
 protected:
  using Limits = std::numeric_limits<double>;

  TransparencyOfFloats() { targetFloats.rounding = GetParam(); }

  // Has every info query answer that number.
  void ExpectNoTraceOf(double number) {
    SCOPED_TRACE(number);
    for (const UniformFunction& function : UniformFunctions()) {
      if (!HasType(function)) {
        continue;
      }
      for (const int raised : {0, FE_INEXACT, FE_DIVBYZERO | FE_OVERFLOW}) {
        targetFloats.raised = raised;
        ExpectNothingChanged(function, Shape::Complete,
                             {.type = INFO_DATATYPE_FLOAT64, .number = number});
      }
    }
  }
};

TEST_P(TransparencyOfFloats, NumbersAreRenderedWithoutATrace) {
  Start(Log::File);
  for (const double number : {0.1, -1.0 / 3.0, 1e300, 123456.5, 0.0, -0.0, Limits::denorm_min(),
                              Limits::max(), Limits::infinity(), Limits::quiet_NaN()}) {
    ExpectNoTraceOf(number);
  }
}

TEST_P(TransparencyOfFloats, ASignallingNaNIsRenderedWithoutATrace) {
  Start(Log::File);
  ExpectNoTraceOf(Limits::signaling_NaN());
}

INSTANTIATE_TEST_SUITE_P(EachRounding, TransparencyOfFloats,
                         ::testing::Values(FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO),
                         [](const auto& tested) {
                           switch (tested.param) {
                             case FE_TONEAREST:
                               return "ToNearest";
                             case FE_DOWNWARD:
                               return "Downward";
                             case FE_UPWARD:
                               return "Upward";
                             default:
                               return "TowardZero";
                           }
                         });

}  // namespace
}  // namespace vextrel_test
