// SPDX-License-Identifier: MIT
// How often a traced call asks for memory: each time costs, and on Windows it may wait for the
// application's other threads. Counted in the test program itself, which has the exports linked in.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <log4cpp/AppenderSkeleton.hh>
#include <new>
#include <string>

#include "gentl/gentl.h"
#include "lifecycle/proxy_state.h"
#include "registry/transport_layer_node.h"
#include "support/proxy.h"

namespace {

long allocations = 0;
bool isMemoryGone = false;

void* AllocateOrNot(std::size_t size) noexcept {
  ++allocations;
  return isMemoryGone ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* Allocate(std::size_t size) {
  void* memory = AllocateOrNot(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

}  // namespace

void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
// A sanitizer's own would not end in the one above.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return AllocateOrNot(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace vextrel_test {
namespace {

using vextrel::proxyState;

// Formats nothing, so that what log4cpp asks for is the same for every message of a length.
class Listener : public log4cpp::AppenderSkeleton {
 public:
  Listener() : AppenderSkeleton("listener") {}
  void close() override {}
  bool requiresLayout() const override { return false; }
  void setLayout(log4cpp::Layout* /*layout*/) override {}

  std::size_t lastSize = 0;

 protected:
  void _append(const log4cpp::LoggingEvent& event) override { lastSize = event.message.size(); }
};

class AllocationCount : public ::testing::Test {
 protected:
  AllocationCount() : logger(log4cpp::Category::getInstance("allocation_count")) {
    logger.setAdditivity(false);
    logger.addAppender(*listener);
    logger.setPriority(log4cpp::Priority::INFO);
    dsTable.DSQueueBuffer = [](DS_HANDLE, BUFFER_HANDLE) { return GC_ERROR{GC_ERR_SUCCESS}; };
    dsTable.DSGetBufferInfo = [](DS_HANDLE, BUFFER_HANDLE, BUFFER_INFO_CMD, INFO_DATATYPE*, void*,
                                 std::size_t*) { return GC_ERROR{GC_ERR_SUCCESS}; };
    eventTable.EventGetData = [](EVENT_HANDLE, void*, std::size_t*, std::uint64_t) {
      return GC_ERROR{GC_ERR_SUCCESS};
    };
    portTable.GCReadPort = [](PORT_HANDLE, std::uint64_t, void*, std::size_t*) {
      return GC_ERROR{GC_ERR_SUCCESS};
    };
    proxyState.logger = &logger;
    proxyState.dsTable = &dsTable;
    proxyState.eventTable = &eventTable;
    proxyState.portTable = &portTable;
    proxyState.registryRoot = &root;
    root.AddInterface(Handle(0x2000));
    root.AddDevice(Handle(0x2000), Handle(0x3000));
    root.AddDataStream(Handle(0x3000), Handle(0x4000));
    root.AddBuffer(Handle(0x4000), Handle(0x5000));
  }
  ~AllocationCount() override {
    proxyState.registryRoot = nullptr;
    proxyState.dsTable = nullptr;
    proxyState.eventTable = nullptr;
    proxyState.portTable = nullptr;
    proxyState.logger = nullptr;
    logger.removeAllAppenders();
  }

  template <typename Call>
  [[nodiscard]] static long CountOf(Call call) {
    call();  // what is set up once does not count
    const long before = allocations;
    call();
    return allocations - before;
  }

  // The call's allocations beyond those that log4cpp makes for a line that is ready.
  template <typename Call>
  [[nodiscard]] long OwnCountOf(Call call) {
    const long withLine = CountOf(call);
    const std::string line(listener->lastSize, 'x');
    EXPECT_GT(line.size(), 20U);
    return withLine - CountOf([&] { logger.info(line); });
  }

  // The small calls of every frame.
  static void QueueBuffer() { DSQueueBuffer(Handle(0x4000), Handle(0x5000)); }
  static void GetEventData() {
    void* delivered = Handle(0x5000);
    std::size_t size = sizeof delivered;
    EventGetData(Handle(0x6000), &delivered, &size, 5000);
  }
  static void GetBufferInfo(INFO_DATATYPE type) {
    std::array<char, 16> value{"Mono8"};
    std::size_t size = value.size();
    DSGetBufferInfo(Handle(0x4000), Handle(0x5000), BUFFER_INFO_TLTYPE, &type, value.data(), &size);
  }
  static void ReadRegister() {
    std::array<char, 5> value{};
    std::size_t size = 4;
    GCReadPort(Handle(0x7000), 0x1000, value.data(), &size);
  }

  template <typename Count>
  static void ForEachSmallCall(Count count) {
    {
      SCOPED_TRACE("DSQueueBuffer");
      count([] { QueueBuffer(); });
    }
    {
      SCOPED_TRACE("EventGetData");
      count([] { GetEventData(); });
    }
    {
      SCOPED_TRACE("GCReadPort");
      count([] { ReadRegister(); });
    }
    for (INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN; type <= 15; ++type) {
      SCOPED_TRACE(type);
      count([type] { GetBufferInfo(type); });
    }
  }

  log4cpp::Category& logger;
  Listener* listener = new Listener;  // log4cpp's list of appenders has it
  vextrel::DSFunctionTable dsTable;
  vextrel::EventFunctionTable eventTable;
  vextrel::PortFunctionTable portTable;
  vextrel::TransportLayerNode root{Handle(0x1000), &logger};
};

// The line is the one allocation, and log4cpp takes it as it is: its own function makes a copy.
TEST_F(AllocationCount, IsLog4cppsOwnForTheLineOfASmallCall) {
  ForEachSmallCall([this](auto call) { EXPECT_EQ(OwnCountOf(call), 0); });
}

TEST_F(AllocationCount, IsZeroForASmallCallWithoutALine) {
  logger.setPriority(log4cpp::Priority::WARN);
  ForEachSmallCall([](auto call) { EXPECT_EQ(CountOf(call), 0); });
}

// Not the former root, which would take handles of another transport layer.
TEST_F(AllocationCount, OfATransportLayersRecordThatFailsLeavesNoRoot) {
  logger.setPriority(log4cpp::Priority::WARN);
  vextrel::TLFunctionTable tlTable;
  tlTable.TLOpen = [](TL_HANDLE*) { return GC_ERROR{GC_ERR_SUCCESS}; };
  proxyState.tlTable = &tlTable;
  TL_HANDLE handle = Handle(0x1001);
  const long before = allocations;
  isMemoryGone = true;
  const GC_ERROR result = TLOpen(&handle);
  isMemoryGone = false;
  proxyState.tlTable = nullptr;
  EXPECT_EQ(result, GC_ERR_SUCCESS);
  EXPECT_EQ(allocations, before + 1);
  EXPECT_EQ(proxyState.registryRoot, nullptr);
}

}  // namespace
}  // namespace vextrel_test
