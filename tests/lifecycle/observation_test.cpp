// SPDX-License-Identifier: MIT
#include "lifecycle/observation.h"

#include <cerrno>
#include <log4cpp/AppenderSkeleton.hh>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>
#include <new>
#include <stdexcept>

#include "calllog/logger_setup.h"
#include "gentl/gentl.h"
#include "gtest/gtest.h"
#include "lifecycle/proxy_state.h"
#include "support/system.h"

namespace vextrel {
namespace {

using vextrel_test::LastError;
using vextrel_test::SetLastErrorValue;

TEST(Observe, RunsTheActionOnce) {
  int runs = 0;
  Observe([&] { ++runs; });
  EXPECT_EQ(runs, 1);
}

TEST(Observe, EndsWhatTheActionRaises) {
  EXPECT_NO_THROW(Observe([] { throw std::bad_alloc(); }));
  EXPECT_NO_THROW(Observe([] { throw std::runtime_error("a failure"); }));
  EXPECT_NO_THROW(Observe([] { throw 7; }));  // NOLINT: anything at all
}

TEST(Observe, KeepsTheLastErrorOfTheThread) {
  SetLastErrorValue(42);
  errno = 7;
  Observe([] {
    SetLastErrorValue(5);
    errno = 9;
  });
  EXPECT_EQ(errno, 7);
  EXPECT_EQ(LastError(), vextrel_test::kOnWindows ? 42U : 7U);
}

TEST(Observe, KeepsTheLastErrorWhenTheActionFails) {
  SetLastErrorValue(42);
  Observe([] {
    SetLastErrorValue(5);
    throw std::bad_alloc();
  });
  EXPECT_EQ(LastError(), 42U);
}

// An appender that cannot append, for want of memory or for reasons of its own.
class FailingAppender : public log4cpp::AppenderSkeleton {
 public:
  FailingAppender() : AppenderSkeleton("failing") {}
  void close() override {}
  bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

  int appended = 0;

 protected:
  void _append(const log4cpp::LoggingEvent& /*event*/) override {
    ++appended;
    throw std::bad_alloc();
  }
};

GC_ERROR SucceedQueueing(DS_HANDLE /*stream*/, BUFFER_HANDLE /*buffer*/) {
  return GC_ERR_SUCCESS;
}
GC_ERROR SucceedAnnouncing(DS_HANDLE /*stream*/, void* /*buffer*/, size_t /*size*/, void* /*user*/,
                           BUFFER_HANDLE* handle) {
  *handle = reinterpret_cast<BUFFER_HANDLE>(0x77);
  return GC_ERR_SUCCESS;
}

// The functions of the library itself, bound to a table of the test's own.
class FailingLog : public ::testing::Test {
 protected:
  FailingLog() : root(reinterpret_cast<TL_HANDLE>(0x10), &GetLogger("Vextrel")) {
    log4cpp::Category& logger = GetLogger("Vextrel");
    logger.setPriority(log4cpp::Priority::DEBUG);
    logger.setAdditivity(false);
    logger.addAppender(appender);
    table.DSQueueBuffer = SucceedQueueing;
    table.DSAnnounceBuffer = SucceedAnnouncing;
    proxyState.dsTable = &table;
  }
  ~FailingLog() override {
    proxyState.dsTable = nullptr;
    proxyState.registryRoot = nullptr;
    GetLogger("Vextrel").removeAllAppenders();
  }

  FailingAppender appender;
  DSFunctionTable table;
  TransportLayerNode root;
};

TEST_F(FailingLog, LeavesTheResultToTheConsumer) {
  EXPECT_EQ(DSQueueBuffer(nullptr, nullptr), GC_ERR_SUCCESS);
  // The call's own line, and the registry's: the first failure does not swallow the second step.
  EXPECT_EQ(appender.appended, 2);
}

TEST_F(FailingLog, LeavesTheRegistryStepInPlace) {
  root.AddInterface(reinterpret_cast<IF_HANDLE>(0x20));
  root.AddDevice(reinterpret_cast<IF_HANDLE>(0x20), reinterpret_cast<DEV_HANDLE>(0x30));
  root.AddDataStream(reinterpret_cast<DEV_HANDLE>(0x30), reinterpret_cast<DS_HANDLE>(0x40));
  proxyState.registryRoot = &root;
  BUFFER_HANDLE buffer = nullptr;
  EXPECT_EQ(DSAnnounceBuffer(reinterpret_cast<DS_HANDLE>(0x40), nullptr, 0, nullptr, &buffer),
            GC_ERR_SUCCESS);
  EXPECT_EQ(appender.appended, 1);
  EXPECT_TRUE(root.SetBufferQueued(reinterpret_cast<BUFFER_HANDLE>(0x77), true));
}

}  // namespace
}  // namespace vextrel
