// SPDX-License-Identifier: MIT
// However many calls a camera makes in days, the library holds no more for it.
#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <string>

#include "allocation/played_target.h"
#include "support/proxy.h"
#include "support/resources.h"

namespace vextrel_test {
namespace {

// With everything open that frames come through.
class SteadyState : public ProxyFiles {
 protected:
  SteadyState() {
    UseTarget(ScriptedTargetPath());
    PlayEverything(target_.Script());
    UseLog({.file = LogFile(),
            .rootCategory = "INFO, file",
            .appender = "RollingFileAppender",
            .pattern = "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %p %m%n",
            .properties = {"maxFileSize=4000000", "maxBackupIndex=1"}});
    LoadProxy();
    EXPECT_EQ(proxy.GCInitLib(), GC_ERR_SUCCESS);
    void* opened = nullptr;
    EXPECT_EQ(proxy.TLOpen(&opened), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.TLOpenInterface(Handle(kTl), "interface", &opened), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.IFOpenDevice(Handle(kInterface), "device", DEVICE_ACCESS_CONTROL, &opened),
              GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.DevOpenDataStream(Handle(kDevice), "stream", &opened), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.DSAnnounceBuffer(Handle(kStream), nullptr, 640, nullptr, &opened),
              GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.GCRegisterEvent(Handle(kStream), EVENT_NEW_BUFFER, &opened), GC_ERR_SUCCESS);
  }
  ~SteadyState() override {
    EXPECT_EQ(proxy.GCUnregisterEvent(Handle(kStream), EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.DSRevokeBuffer(Handle(kStream), Handle(kBuffer), &unused_, &unused_),
              GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.DSClose(Handle(kStream)), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.DevClose(Handle(kDevice)), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.IFClose(Handle(kInterface)), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.TLClose(Handle(kTl)), GC_ERR_SUCCESS);
    EXPECT_EQ(proxy.GCCloseLib(), GC_ERR_SUCCESS);
  }

  static constexpr long kCallsPerFrame = 10;

  // What a consumer does about one frame.
  void TakeFrame(INFO_DATATYPE type) {
    std::size_t size = data_.size();
    Expect(proxy.DSQueueBuffer(Handle(kStream), Handle(kBuffer)), GC_ERR_SUCCESS);
    Expect(proxy.EventGetData(Handle(kEvent), data_.data(), &size, 1000), GC_ERR_SUCCESS);
    for (const INFO_DATATYPE each : {INFO_DATATYPE{INFO_DATATYPE_STRING}, type}) {
      playedType = each;
      Expect(proxy.DSGetBufferInfo(Handle(kStream), Handle(kBuffer), BUFFER_INFO_SIZE, &told_,
                                   data_.data(), &size),
             kInfoResult);
      Expect(proxy.EventGetDataInfo(Handle(kEvent), data_.data(), size, EVENT_DATA_ID, &told_,
                                    data_.data(), &size),
             kInfoResult);
    }
    std::array<PORT_REGISTER_STACK_ENTRY, 1> entries = {{{0x10, data_.data(), 100}}};
    std::size_t count = 1;
    Expect(proxy.GCReadPort(Handle(kPort), 0x10, data_.data(), &size), kPortResult);
    Expect(proxy.GCWritePort(Handle(kPort), 0x10, data_.data(), &size), kPortResult);
    Expect(proxy.GCReadPortStacked(Handle(kPort), entries.data(), &count), kPortResult);
    Expect(proxy.DSFlushQueue(Handle(kStream), ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
  }
  void TakeFrames(long calls) {
    for (long frame = 0; frame < calls / kCallsPerFrame; ++frame) {
      TakeFrame(static_cast<INFO_DATATYPE>(frame % 15));
    }
  }

  [[nodiscard]] int WrongResults() const { return wrongResults_; }

 private:
  void Expect(GC_ERROR result, GC_ERROR expected) { wrongResults_ += result == expected ? 0 : 1; }

  HeldTarget target_;
  std::array<char, 256> data_{};
  INFO_DATATYPE told_ = 0;
  void* unused_ = nullptr;
  int wrongResults_ = 0;
};

TEST_F(SteadyState, DoesNotGrowWithTheNumberOfCalls) {
  const long first = LongTests() ? 100000 : 30000;
  const long more = LongTests() ? 10000000 : 300000;
  // A few pages that the heap or the runtime touches late, regardless of the number of calls.
  constexpr double tolerance = 64 * 1024;
  TakeFrames(first);
  const Resources early = UsedResources();
  TakeFrames(more);
  const Resources late = UsedResources();
  const double growth =
      static_cast<double>(late.residentBytes) - static_cast<double>(early.residentBytes);
  std::cout << growth << " bytes more after " << more << " calls\n";
  EXPECT_LE(growth, tolerance);
  EXPECT_EQ(late.handles, early.handles);
  EXPECT_EQ(WrongResults(), 0);
}

}  // namespace
}  // namespace vextrel_test
