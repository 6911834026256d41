// SPDX-License-Identifier: MIT
// An appender that throws at every line: no call lets that reach the consumer.
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>
#include <new>
#include <stdexcept>

#include "allocation/every_function.h"
#include "allocation/full_session.h"
#include "allocation/session_fixture.h"
#include "calllog/logger_setup.h"

namespace vextrel_test {
namespace {

enum class Thrown { NoMemory, RuntimeError, Number };

class ThrowingAppender : public log4cpp::AppenderSkeleton {
 public:
  explicit ThrowingAppender(Thrown thrown) : AppenderSkeleton("throwing"), thrown_(thrown) {}
  void close() override {}
  [[nodiscard]] bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

  std::size_t appended = 0;

 protected:
  void _append(const log4cpp::LoggingEvent& /*event*/) override {
    ++appended;
    switch (thrown_) {
      case Thrown::NoMemory:
        throw std::bad_alloc();
      case Thrown::RuntimeError:
        throw std::runtime_error("the appender's own");
      case Thrown::Number:
        throw 7;  // NOLINT(hicpp-exception-baseclass): anything at all
    }
  }

 private:
  Thrown thrown_;
};

// The call's own, and in the extended module the two of its timing.
#if defined(VEXTREL_EXTENDED)
constexpr std::size_t kLinesPerCall = 3;
#else
constexpr std::size_t kLinesPerCall = 1;
#endif

class FailingAppender : public SessionFixture, public ::testing::WithParamInterface<Thrown> {
 protected:
  FailingAppender() : appender(GetParam()) {
    Attach();
    EXPECT_EQ(::GCInitLib(), GC_ERR_SUCCESS);
    log4cpp::Category& category = vextrel::GetLogger("Vextrel");
    category.setPriority(log4cpp::Priority::DEBUG);
    category.setAdditivity(false);
    category.addAppender(appender);
  }
  ~FailingAppender() override {
    log4cpp::Category& category = vextrel::GetLogger("Vextrel");
    category.removeAllAppenders();
    category.setAdditivity(true);
    category.setPriority(log4cpp::Priority::NOTSET);
    Detach();
  }

  ThrowingAppender appender;
};

TEST_P(FailingAppender, LeavesResultsAndOutputsOfEveryFunctionAlone) {
  for (const UniformFunction& function : UniformFunctions()) {
    // GCInitLib and GCCloseLib bind and unbind.
    if (function.name != "GCInitLib" && function.name != "GCCloseLib") {
      appender.appended = 0;
      ExpectAnswered(function, Target());
      EXPECT_EQ(appender.appended, kLinesPerCall) << function.name;
    }
  }
}

TEST_P(FailingAppender, LeavesTheResultsAndOutputsOfASessionAlone) {
  FullSession session;
  session.Run();
  // Each call's own line, and the reports of what the session leaves behind.
  EXPECT_GE(appender.appended, kLinesPerCall * session.Calls().size());
}

INSTANTIATE_TEST_SUITE_P(All, FailingAppender,
                         ::testing::Values(Thrown::NoMemory, Thrown::RuntimeError, Thrown::Number),
                         [](const auto& each) {
                           return each.param == Thrown::NoMemory       ? "NoMemory"
                                  : each.param == Thrown::RuntimeError ? "RuntimeError"
                                                                       : "Number";
                         });

}  // namespace
}  // namespace vextrel_test
