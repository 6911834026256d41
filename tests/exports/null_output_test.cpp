// Output pointers are read for the line without a test for null, so that a consumer's null pointer
// ends the process once the target has accepted it.
#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

using NullOutputDeathTest = ExportsTest;

TEST_F(NullOutputDeathTest, DevOpenDataStreamReadsThroughANullStreamSlot) {
  EXPECT_DEATH(static_cast<void>(proxy.DevOpenDataStream(Handle(0x3000), "s", nullptr)), "");
}

TEST_F(NullOutputDeathTest, OtherOpeningFunctionsReadThroughANullSlot) {
  EXPECT_DEATH(static_cast<void>(proxy.TLOpen(nullptr)), "");
  EXPECT_DEATH(static_cast<void>(proxy.TLOpenInterface(Handle(0x1000), "i", nullptr)), "");
  EXPECT_DEATH(static_cast<void>(proxy.DSAllocAndAnnounceBuffer(Handle(0x4000), 8, {}, nullptr)),
               "");
  EXPECT_DEATH(static_cast<void>(proxy.DSAnnounceBuffer(Handle(0x4000), {}, 8, {}, nullptr)), "");
  EXPECT_DEATH(static_cast<void>(proxy.GCRegisterEvent(Handle(0x4000), 1, nullptr)), "");
}

TEST_F(NullOutputDeathTest, InfoQueriesReadThroughANullTypeOrSize) {
  INFO_DATATYPE type = 1;
  std::size_t size = 0;
  EXPECT_DEATH(static_cast<void>(proxy.GCGetInfo(0, nullptr, nullptr, &size)), "");
  EXPECT_DEATH(static_cast<void>(proxy.GCGetInfo(0, &type, nullptr, nullptr)), "");
  EXPECT_DEATH(
      static_cast<void>(proxy.DSGetBufferInfo(Handle(1), Handle(2), 0, nullptr, nullptr, nullptr)),
      "");
}

}  // namespace
}  // namespace vextrel_test
