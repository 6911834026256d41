// SPDX-License-Identifier: MIT
// A composite buffer is announced like any other, and asking for a parent opens nothing.
#include <array>
#include <string>

#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NewerRegistry : public ExportsTest {
 protected:
  // Opens everything down to the stream 0x4000.
  void OpenStream() {
    OpenTransportLayer();
    void* opened = Handle(0x2000);
    EXPECT_EQ(proxy.TLOpenInterface(Handle(0x1000), "interface", &opened), 0);
    opened = Handle(0x3000);
    EXPECT_EQ(proxy.IFOpenDevice(Handle(0x2000), "device", 4, &opened), 0);
    opened = Handle(0x4000);
    EXPECT_EQ(proxy.DevOpenDataStream(Handle(0x3000), "stream", &opened), 0);
    static_cast<void>(TakeLines());
  }

  // The lines behind the call's own.
  template <typename... Parameters, typename... Arguments>
  [[nodiscard]] std::vector<std::string> Reports(
      GC_ERROR (GC_CALLTYPE* Functions::*slot)(Parameters...), Arguments... arguments) {
    EXPECT_EQ((proxy.*slot)(arguments...), script.result.load());
    std::vector<std::string> lines = TakeLines();
    EXPECT_FALSE(lines.empty());
    lines.erase(lines.begin());
    return lines;
  }

  [[nodiscard]] std::vector<std::string> Announce(void* buffer) {
    return Reports(&Functions::DSAnnounceCompositeBuffer, Handle(0x4000), 0U, nullptr, nullptr,
                   nullptr, &buffer);
  }
  [[nodiscard]] std::vector<std::string> Revoke(void* buffer) {
    void* unused = nullptr;
    return Reports(&Functions::DSRevokeBuffer, Handle(0x4000), buffer, &unused, &unused);
  }
};

TEST_F(NewerRegistry, ACompositeBufferIsRevokedWithoutAReport) {
  OpenStream();
  EXPECT_THAT(Announce(Handle(0x5000)), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSQueueBuffer, Handle(0x4000), Handle(0x5000)), IsEmpty());
  EXPECT_THAT(Revoke(Handle(0x5000)), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSClose, Handle(0x4000)), IsEmpty());
}

TEST_F(NewerRegistry, ACompositeBufferThatIsLeftIsReported) {
  OpenStream();
  EXPECT_THAT(Announce(Handle(0x5000)), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSClose, Handle(0x4000)),
              ElementsAre("ERROR Buffer with handle 0x0000000000005000 on DataStream "
                          "0x0000000000004000 was not revoked properly using DSRevokeBuffer()"));
}

TEST_F(NewerRegistry, ACompositeBufferIsAnnouncedOnce) {
  OpenStream();
  EXPECT_THAT(Announce(Handle(0x5000)), IsEmpty());
  EXPECT_THAT(Announce(Handle(0x5000)),
              ElementsAre("ERROR Buffer object with the handle 0x0000000000005000 has already been "
                          "added on DataStream with handle 0x0000000000004000"));
}

TEST_F(NewerRegistry, AnAnnouncementThatFailsAnnouncesNothing) {
  OpenStream();
  script.result = GC_ERR_OUT_OF_MEMORY;
  EXPECT_THAT(Announce(Handle(0x5000)), IsEmpty());
  script.result = GC_ERR_SUCCESS;
  EXPECT_THAT(Reports(&Functions::DSClose, Handle(0x4000)), IsEmpty());
}

TEST_F(NewerRegistry, ANullOutputIsReportedAndRecordsNothing) {
  OpenStream();
  EXPECT_THAT(Reports(&Functions::DSAnnounceCompositeBuffer, Handle(0x4000), 0U, nullptr, nullptr,
                      nullptr, nullptr),
              ElementsAre("ERROR DSAnnounceCompositeBuffer returned a NULL handle to the buffer!"));
  EXPECT_THAT(Reports(&Functions::DSClose, Handle(0x4000)), IsEmpty());
}

TEST_F(NewerRegistry, WithoutATransportLayerThatIsReported) {
  EXPECT_THAT(Announce(Handle(0x5000)),
              ElementsAre("ERROR The Transport Layer has not been successfully opened!"));
}

TEST_F(NewerRegistry, OnAStreamThatIsNotOpenThatIsReported) {
  OpenTransportLayer();
  EXPECT_THAT(
      Announce(Handle(0x5000)),
      ElementsAre("ERROR Unable to add Buffer with handle 0x0000000000005000! DataStream "
                  "with handle 0x0000000000004000 on TL 0x0000000000001000 was not found!"));
}

TEST_F(NewerRegistry, AskingForAParentOpensNothing) {
  OpenTransportLayer();
  void* parent = Handle(0x9000);
  EXPECT_THAT(Reports(&Functions::IFGetParentTL, Handle(0x2000), &parent), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DevGetParentIF, Handle(0x3000), &parent), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSGetParentDev, Handle(0x4000), &parent), IsEmpty());
  EXPECT_THAT(Reports(&Functions::TLClose, Handle(0x1000)), IsEmpty());
}

TEST_F(NewerRegistry, TheQueriesSayNothingOfHandlesThatAreNotOpen) {
  std::uint32_t count = 0;
  EXPECT_THAT(Reports(&Functions::DSGetNumBufferParts, Handle(1), Handle(2), &count), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSGetNumBufferSegments, Handle(1), Handle(2), &count), IsEmpty());
  EXPECT_THAT(Reports(&Functions::DSGetNumFlows, Handle(1), &count), IsEmpty());
}

}  // namespace
}  // namespace vextrel_test
