// What the data streams' functions do to the handle registry, as far as its lines tell.
#include "exports/exports_fixture.h"

namespace vextrel_test {
namespace {

constexpr const char* kRevokeLine =
    "INFO GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x0000000000004000, hBuffer=0x0000000000005000, "
    "pBuffer=NULL, pPrivate=NULL)";
constexpr const char* kNeverAnnounced =
    "ERROR The buffer with handle 0x0000000000000000 was not previously announced correctly using "
    "DSAllocAndAnnounceBuffer() or DSAnnounceBuffer()!";

class DataStreamRegistry : public ExportsTest {
 protected:
  std::string AllocLine(const BUFFER_HANDLE* slot) {
    return Fill(
        "INFO GC_ERR_SUCCESS=DSAllocAndAnnounceBuffer(hDS=0x{}, iSize=8, "
        "pPrivate=0x0000000000000000, 0x{}->(hBuffer=0x{}))",
        Hex16(dataStream), Hex16(slot), Hex16(*slot));
  }
  std::string AnnounceLine(const BUFFER_HANDLE* slot) {
    return Fill(
        "INFO GC_ERR_SUCCESS=DSAnnounceBuffer(hDS=0x{}, pBuffer=0x0000000000000000, "
        "iSize=8, pPrivate=0x0000000000000000, 0x{}->(hBuffer=0x{}))",
        Hex16(dataStream), Hex16(slot), Hex16(*slot));
  }

  DS_HANDLE dataStream = Handle(0x4000);
  BUFFER_HANDLE buffer = Handle(0x5000);
};

TEST_F(DataStreamRegistry, BothAnnouncingFunctionsAddABufferOnce) {
  OpenDataStreamAndAllAbove();
  const char* alreadyAdded =
      "ERROR Buffer object with the handle 0x0000000000005000 has already been added on DataStream "
      "with handle 0x0000000000004000";
  EXPECT_EQ(proxy.DSAnnounceBuffer(dataStream, nullptr, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AnnounceLine(&buffer)));
  EXPECT_EQ(proxy.DSAllocAndAnnounceBuffer(dataStream, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AllocLine(&buffer), alreadyAdded));
  EXPECT_EQ(proxy.DSAnnounceBuffer(dataStream, nullptr, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AnnounceLine(&buffer), alreadyAdded));
}

TEST_F(DataStreamRegistry, BothAnnouncingFunctionsAddANullHandleLikeAnyOther) {
  OpenDataStreamAndAllAbove();
  buffer = nullptr;
  EXPECT_EQ(proxy.DSAllocAndAnnounceBuffer(dataStream, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AllocLine(&buffer)));
  EXPECT_EQ(proxy.DSAnnounceBuffer(dataStream, nullptr, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(),
              Lines(AnnounceLine(&buffer),
                    "ERROR Buffer object with the handle 0x0000000000000000 has already been added "
                    "on DataStream with handle 0x0000000000004000"));
}

TEST_F(DataStreamRegistry, BothAnnouncingFunctionsReportAnUnknownStream) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  const char* onDevice =
      "ERROR Unable to add Buffer with handle 0x0000000000005000! DataStream with handle "
      "0x0000000000004000 on Device 0x0000000000003000 was not found!";
  const char* onInterface =
      "ERROR Unable to add Buffer with handle 0x0000000000005000! DataStream with handle "
      "0x0000000000004000 on Interface 0x0000000000002000 was not found!";
  const char* onTransportLayer =
      "ERROR Unable to add Buffer with handle 0x0000000000005000! DataStream with handle "
      "0x0000000000004000 on TL 0x0000000000001000 was not found!";
  EXPECT_EQ(proxy.DSAllocAndAnnounceBuffer(dataStream, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AllocLine(&buffer), onDevice, onInterface, onTransportLayer));
  EXPECT_EQ(proxy.DSAnnounceBuffer(dataStream, nullptr, 8, nullptr, &buffer), 0);
  EXPECT_THAT(TakeLines(), Lines(AnnounceLine(&buffer), onDevice, onInterface, onTransportLayer));
}

TEST_F(DataStreamRegistry, FailedAnnouncementsAddNothing) {
  OpenDataStreamAndAllAbove();
  ExpectNoStepOnFailure(&Functions::DSAllocAndAnnounceBuffer, dataStream, 8U, nullptr, &buffer);
  ExpectNoStepOnFailure(&Functions::DSAnnounceBuffer, dataStream, nullptr, 8U, nullptr, &buffer);
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)"));
}

TEST_F(DataStreamRegistry, DSRevokeBufferOfANullHandleIsIllegalAndChangesNothing) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0);
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, nullptr, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x0000000000004000, "
                                 "hBuffer=0x0000000000000000, pBuffer=NULL, pPrivate=NULL)",
                                 "ERROR Illegal Buffer handle!"));
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)",
                                 "ERROR Buffer with handle 0x0000000000000000 on DataStream "
                                 "0x0000000000004000 was not revoked properly using "
                                 "DSRevokeBuffer()"));
}

TEST_F(DataStreamRegistry, DSRevokeBufferOfANullHandleIsIllegalWithoutATransportLayerToo) {
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, nullptr, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x0000000000004000, "
                                 "hBuffer=0x0000000000000000, pBuffer=NULL, pPrivate=NULL)",
                                 "ERROR Illegal Buffer handle!"));
}

TEST_F(DataStreamRegistry, DSRevokeBufferOfABufferNeverAnnounced) {
  OpenDataStreamAndAllAbove();
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, buffer, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(),
              Lines(kRevokeLine,
                    "ERROR Buffer object with the handle 0x0000000000005000 is not defined on "
                    "DataStream with handle 0x0000000000004000",
                    "ERROR Unable to remove Buffer with handle 0x0000000000005000 on any Device on "
                    "Interface 0x0000000000002000!",
                    "ERROR Unable to remove Buffer with handle 0x0000000000005000 on any Interface "
                    "on TL 0x0000000000001000!",
                    kNeverAnnounced));
}

TEST_F(DataStreamRegistry, DSRevokeBufferOnAnUnknownStream) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, buffer, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(),
              Lines(kRevokeLine,
                    "ERROR Unable to remove Buffer with handle 0x0000000000005000 on any "
                    "DataStream on Device 0x0000000000003000!",
                    "ERROR Unable to remove Buffer with handle 0x0000000000005000 on any Device on "
                    "Interface 0x0000000000002000!",
                    "ERROR Unable to remove Buffer with handle 0x0000000000005000 on any Interface "
                    "on TL 0x0000000000001000!",
                    kNeverAnnounced));
}

TEST_F(DataStreamRegistry, DSRevokeBufferRemovesTheBufferAndReportsItsEventsOnce) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0x5000);
  RegisterEvent(0x5000, 1, 0x6000);
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, buffer, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(),
              Lines(kRevokeLine,
                    "WARN Event type EVENT_NEW_BUFFER with handle 0x0000000000006000 on Buffer "
                    "0x0000000000005000 was not unregistered directly using GCUnregisterEvent()"));
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)"));
}

TEST_F(DataStreamRegistry, DSRevokeBufferReleasesNoEventsOfOthersWithThatHandle) {
  OpenDataStreamAndAllAbove();
  RegisterEvent(0x3000, 0, 0x6000);
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, Handle(0x3000), nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DSRevokeBuffer(hDS=0x0000000000004000, "
                    "hBuffer=0x0000000000003000, pBuffer=NULL, pPrivate=NULL)",
                    "ERROR Buffer object with the handle 0x0000000000003000 is not defined on "
                    "DataStream with handle 0x0000000000004000",
                    "ERROR Unable to remove Buffer with handle 0x0000000000003000 on any Device on "
                    "Interface 0x0000000000002000!",
                    "ERROR Unable to remove Buffer with handle 0x0000000000003000 on any Interface "
                    "on TL 0x0000000000001000!",
                    kNeverAnnounced));
}

TEST_F(DataStreamRegistry, FailedDSRevokeBufferLeavesTheBufferAnnounced) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0x5000);
  ExpectNoStepOnFailure(&Functions::DSRevokeBuffer, dataStream, buffer, nullptr, nullptr);
  ExpectNoStepOnFailure(&Functions::DSRevokeBuffer, dataStream, nullptr, nullptr, nullptr);
  EXPECT_EQ(proxy.DSRevokeBuffer(dataStream, buffer, nullptr, nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines(kRevokeLine));
}

TEST_F(DataStreamRegistry, DSQueueBufferNeverComplainsWhileATransportLayerIsOpen) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0x5000);
  EXPECT_EQ(proxy.DSQueueBuffer(Handle(0x4999), buffer), 0);
  EXPECT_EQ(proxy.DSQueueBuffer(dataStream, Handle(0x5999)), 0);
  EXPECT_EQ(proxy.DSQueueBuffer(dataStream, nullptr), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000004999, hB=0x0000000000005000)",
            "INFO GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000004000, hB=0x0000000000005999)",
            "INFO GC_ERR_SUCCESS=DSQueueBuffer(hDS=0x0000000000004000, hB=0x0000000000000000)"));
}

TEST_F(DataStreamRegistry, DSFlushQueueNeverComplainsWhileATransportLayerIsOpen) {
  OpenDataStreamAndAllAbove();
  EXPECT_EQ(proxy.DSFlushQueue(dataStream, 4), 0);
  EXPECT_EQ(proxy.DSFlushQueue(Handle(0x4999), 4), 0);
  EXPECT_EQ(proxy.DSFlushQueue(nullptr, 4), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000004000, "
                                 "QueueType=ACQ_QUEUE_ALL_DISCARD)",
                                 "INFO GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000004999, "
                                 "QueueType=ACQ_QUEUE_ALL_DISCARD)",
                                 "INFO GC_ERR_SUCCESS=DSFlushQueue(hDS=0x0000000000000000, "
                                 "QueueType=ACQ_QUEUE_ALL_DISCARD)"));
}

TEST_F(DataStreamRegistry, DSCloseOfANullHandleIsIllegalAndLeavesTheRegistryUntouched) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  OpenDataStream(0x3000, 0);
  RegisterEvent(0, 1, 0x6000);
  EXPECT_EQ(proxy.DSClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000000000)",
                                 "ERROR Illegal Device handle in DSClose()!"));
  EXPECT_EQ(proxy.DevClose(Handle(0x3000)), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DevClose(hDev=0x0000000000003000)",
                                 "ERROR DataStream with handle 0x0000000000000000 on Device "
                                 "0x0000000000003000 was not closed properly using DSClose()"));
}

TEST_F(DataStreamRegistry, DSCloseOfANullHandleIsIllegalWithoutATransportLayerToo) {
  EXPECT_EQ(proxy.DSClose(nullptr), 0);
  EXPECT_THAT(TakeLines(), Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000000000)",
                                 "ERROR Illegal Device handle in DSClose()!"));
}

TEST_F(DataStreamRegistry, DSCloseOfAnUnknownStream) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)",
                    "ERROR DataStream object with the handle 0x0000000000004000 is not defined on "
                    "Device with handle 0x0000000000003000",
                    "ERROR Unable to remove DataStream with handle 0x0000000000004000 on any "
                    "Device on Interface 0x0000000000002000!",
                    "ERROR Unable to remove DataStream with handle 0x0000000000004000 on any "
                    "Interface on TL 0x0000000000001000!",
                    "ERROR The DataStream with handle 0x0000000000000000 was not previously opened "
                    "correctly using DevOpenDataStream()!"));
}

TEST_F(DataStreamRegistry, DSCloseReleasesItsEventsBeforeItReportsTheBuffers) {
  OpenDataStreamAndAllAbove();
  AnnounceBuffer(0x4000, 0x5000);
  AnnounceBuffer(0x4000, 0x5001);
  RegisterEvent(0x4000, 1, 0x6000);
  RegisterEvent(0x5000, 0, 0x6001);
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(
      TakeLines(),
      Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)",
            "WARN Event with handle 0x0000000000006000 on DataStream 0x0000000000004000 was not "
            "unregistered directly using GCUnregisterEvent()",
            "ERROR Buffer with handle 0x0000000000005000 on DataStream 0x0000000000004000 was not "
            "revoked properly using DSRevokeBuffer()",
            "ERROR Buffer with handle 0x0000000000005001 on DataStream 0x0000000000004000 was not "
            "revoked properly using DSRevokeBuffer()"));
}

TEST_F(DataStreamRegistry, DSCloseReleasesTheEventsBeforeItLooksForTheStream) {
  OpenTransportLayer(0x1000);
  OpenInterface(0x2000);
  OpenDevice(0x2000, 0x3000);
  OpenDevice(0x2000, 0x3001);
  OpenDataStream(0x3001, 0x4000);
  RegisterEvent(0x4000, 1, 0x6000);
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)",
                    "WARN Event with handle 0x0000000000006000 on DataStream 0x0000000000004000 "
                    "was not unregistered directly using GCUnregisterEvent()",
                    "ERROR DataStream object with the handle 0x0000000000004000 is not defined on "
                    "Device with handle 0x0000000000003000"));
}

TEST_F(DataStreamRegistry, FailuresTakeNoStep) {
  OpenDataStreamAndAllAbove();
  RegisterEvent(0x4000, 1, 0x6000);
  ExpectNoStepOnFailure(&Functions::DSClose, dataStream);
  ExpectNoStepOnFailure(&Functions::DSClose, nullptr);
  ExpectNoStepOnFailure(&Functions::DSQueueBuffer, dataStream, buffer);
  ExpectNoStepOnFailure(&Functions::DSFlushQueue, dataStream, 4);
  EXPECT_EQ(proxy.DSClose(dataStream), 0);
  EXPECT_THAT(TakeLines(),
              Lines("INFO GC_ERR_SUCCESS=DSClose(hDS=0x0000000000004000)",
                    "WARN Event with handle 0x0000000000006000 on DataStream 0x0000000000004000 "
                    "was not unregistered directly using GCUnregisterEvent()"));
}

}  // namespace
}  // namespace vextrel_test
