// An appender that throws at every line: none of the calls lets that pass to the consumer.
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>
#include <new>
#include <set>
#include <stdexcept>

#include "allocation/full_session.h"
#include "allocation/session_fixture.h"
#include "calllog/logger_setup.h"
#include "support/gentl_functions.h"

namespace vextrel_test {
namespace {

enum class Thrown { kNoMemory, kRuntimeError, kNumber };

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
      case Thrown::kNoMemory:
        throw std::bad_alloc();
      case Thrown::kRuntimeError:
        throw std::runtime_error("the appender's own");
      case Thrown::kNumber:
        throw 7;  // NOLINT(hicpp-exception-baseclass): anything at all
    }
  }

 private:
  Thrown thrown_;
};

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
  FullSession session;
  session.Run();
  // Each call's own line, and the reports of what the session leaves behind.
  EXPECT_GE(appender.appended, session.Calls().size());

  std::set<std::string> called;
  for (const std::string& call : session.Calls()) {
    called.insert(call.substr(call.find('=') + 1));
  }
  ForEachFunction([&](const std::string& name, auto) {
    EXPECT_EQ(called.count(name), name == "GCInitLib" ? 0U : 1U) << name;
  });
}

INSTANTIATE_TEST_SUITE_P(All, FailingAppender,
                         ::testing::Values(Thrown::kNoMemory, Thrown::kRuntimeError,
                                           Thrown::kNumber),
                         [](const auto& each) {
                           return each.param == Thrown::kNoMemory       ? "NoMemory"
                                  : each.param == Thrown::kRuntimeError ? "RuntimeError"
                                                                        : "Number";
                         });

}  // namespace
}  // namespace vextrel_test
