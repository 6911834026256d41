// SPDX-License-Identifier: MIT
// The races that Vextrel leaves to its consumer, each provoked once. The two calls of a test follow
// each other in time, so nothing goes wrong; but nothing synchronizes their threads, which the
// thread sanitizer reports as a race. tsan.supp lists them.
#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "support/proxy.h"

namespace vextrel_test {
namespace {

void* const kTransportLayer = Handle(0x1000);
void* const kInterface = Handle(0x2000);
void* const kDevice = Handle(0x3000);
void* const kStream = Handle(0x4000);
void* const kBuffer = Handle(0x5000);
void* const kEvent = Handle(0x6000);

class DeclaredRaces : public BoundProxy {
 protected:
  DeclaredRaces() {
    OpenTransportLayer();
    OpenInterface(kInterface);
    void* handle = kDevice;
    EXPECT_EQ(proxy.IFOpenDevice(kInterface, "device", DEVICE_ACCESS_CONTROL, &handle), 0);
    handle = kStream;
    EXPECT_EQ(proxy.DevOpenDataStream(kDevice, "stream", &handle), 0);
    handle = kBuffer;
    EXPECT_EQ(proxy.DSAllocAndAnnounceBuffer(kStream, 1024, nullptr, &handle), 0);
    Register(kStream, EVENT_NEW_BUFFER);
    static_cast<void>(TakeLines());
  }

  void OpenInterface(void* handle) {
    EXPECT_EQ(proxy.TLOpenInterface(kTransportLayer, "interface", &handle), 0);
  }
  void Close(void* handle) { EXPECT_EQ(proxy.IFClose(handle), 0); }
  void Queue() { EXPECT_EQ(proxy.DSQueueBuffer(kStream, kBuffer), 0); }
  void Deliver() {
    BUFFER_HANDLE delivered = kBuffer;
    std::size_t size = sizeof delivered;
    EXPECT_EQ(proxy.EventGetData(kEvent, &delivered, &size, 0), 0);
  }
  void Register(void* source, EVENT_TYPE type) {
    EVENT_HANDLE handle = kEvent;
    EXPECT_EQ(proxy.GCRegisterEvent(source, type, &handle), 0);
  }
  void Unregister(void* source, EVENT_TYPE type) {
    EXPECT_EQ(proxy.GCUnregisterEvent(source, type), 0);
  }

  // Runs each on a thread of its own, one after the other, with nothing to synchronize them.
  template <typename First, typename Second>
  static void Race(First first, Second second) {
    std::atomic<bool> isOver = false;
    std::thread later([&] {
      while (!isOver.load(std::memory_order_relaxed)) {
        std::this_thread::yield();
      }
      second();
    });
    std::thread earlier([&] {
      first();
      isOver.store(true, std::memory_order_relaxed);
    });
    earlier.join();
    later.join();
  }

  // Expects the lines of that many calls and no report of misuse.
  void ExpectCalls(std::size_t count) {
    const std::vector<std::string> lines = TakeLines();
    EXPECT_EQ(lines.size(), count);
    EXPECT_THAT(lines, ::testing::Each(::testing::StartsWith("INFO GC_ERR_SUCCESS=")));
  }
};

TEST_F(DeclaredRaces, QueueingABufferWhileItIsDelivered) {
  Race([this] { Queue(); }, [this] { Deliver(); });
  ExpectCalls(2);
}

TEST_F(DeclaredRaces, OpeningTwoInterfaces) {
  Race([this] { OpenInterface(Handle(0x2001)); }, [this] { OpenInterface(Handle(0x2002)); });
  Close(Handle(0x2001));
  Close(Handle(0x2002));
  ExpectCalls(4);
}

TEST_F(DeclaredRaces, ClosingAnInterfaceWhileABufferIsQueued) {
  OpenInterface(Handle(0x2001));
  Race([this] { Close(Handle(0x2001)); }, [this] { Queue(); });
  ExpectCalls(3);
}

TEST_F(DeclaredRaces, RegisteringTwoEvents) {
  Race([this] { Register(kInterface, EVENT_ERROR); },
       [this] { Register(kInterface, EVENT_FEATURE_CHANGE); });
  Unregister(kInterface, EVENT_ERROR);
  Unregister(kInterface, EVENT_FEATURE_CHANGE);
  ExpectCalls(4);
}

TEST_F(DeclaredRaces, RegisteringAnEventWhileABufferIsDelivered) {
  Race([this] { Register(kStream, EVENT_ERROR); }, [this] { Deliver(); });
  ExpectCalls(2);
}

TEST_F(DeclaredRaces, UnregisteringTwoEvents) {
  Register(kInterface, EVENT_ERROR);
  Race([this] { Unregister(kInterface, EVENT_ERROR); },
       [this] { Unregister(kStream, EVENT_NEW_BUFFER); });
  ExpectCalls(3);
}

}  // namespace
}  // namespace vextrel_test
