// SPDX-License-Identifier: MIT
// Which step each function takes in the handle registry, as far as the registry's lines tell.
// Handles: transport layers are 0x1000 and on, interfaces 0x2000, devices 0x3000, data streams
// 0x4000, buffers 0x5000, events 0x6000.
#include "exports/registry_steps.h"

#include "model/log.h"
#include "model/messages.h"

namespace vextrel_test {
namespace {

using model::Error;
using model::kBuffer;
using model::kDataStream;
using model::kDevice;
using model::kInterface;
using model::kTransportLayer;
using model::Warn;

const Step kOpenDevNowhere =
    Calling(&Functions::IFOpenDevice, Handle(0x2000), "device", 4, nullptr);

TEST_P(RegistrySteps, AreReportedAsExpected) {
  Tell(GetParam());
}

std::string NameOf(const ::testing::TestParamInfo<Story>& story) {
  return story.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    TransportLayer, RegistrySteps,
    ::testing::Values(
        Story{"FailedOpenOpensNothing",
              {Failed(OpenTl(0x1000)), Queue(0x4000, 1).Says({kNotOpened})}},
        Story{"FailedOpenLeavesTheOpenOneAsItIs",
              {OpenTl(0x1000), OpenIf(0x2000), Failed(OpenTl(0x1001)),
               CloseTl(0x1000).Says({Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000})})}},
        Story{"SecondOpenForgetsTheFirstWithoutAWord",
              {OpenTl(0x1000), OpenIf(0x2000), OpenTl(0x1001), OpenIf(0x2002),
               CloseTl(0x1001).Says({Error(kTransportLayer.childLeftOpen, {0x2002, 0x1001})}),
               CloseTl(0x1000)}},
        Story{"CloseWithAnyHandleEndsTheTreeWithALineForEachInterface",
              {OpenTl(0x1000), OpenIf(0x2000), OpenIf(0x2001), OpenDev(0x2000, 0x3000),
               CloseTl(0x9999).Says({Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000}),
                                     Error(kTransportLayer.childLeftOpen, {0x2001, 0x1000})}),
               Queue(0x4000, 0x5000).Says({kNotOpened})}},
        Story{"CloseOfANullHandleEndsTheTreeToo",
              {OpenTl(0x1000), CloseTl(0), Queue(0x4000, 0x5000).Says({kNotOpened})}},
        Story{"CloseWithoutATransportLayerIsSilent", {CloseTl(0x1000)}},
        Story{"CloseReleasesItsEventsBeforeItReportsTheInterfaces",
              {OpenTl(0x1000), OpenIf(0x2000), Register(0x1000, 0, 0x6000),
               Register(0x1000, 1000, 0x6001),
               CloseTl(0x1000).Says(
                   {Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", 0x6000, 0x1000}),
                    Warn(kTransportLayer.eventLeft, {"EVENT_CUSTOM_ID", 0x6001, 0x1000}),
                    Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000})})}},
        Story{"CloseWithAnotherHandleReportsTheEventsAfterTheInterfaces",
              {OpenTl(0x1000), OpenIf(0x2000), Register(0x1000, 0, 0x6000),
               Register(0x2000, 1, 0x6001),
               CloseTl(0x2000).Says(
                   {Warn(kInterface.eventLeft, {"EVENT_NEW_BUFFER", 0x6001, 0x2000}),
                    Error(kTransportLayer.childLeftOpen, {0x2000, 0x1000}),
                    Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", 0x6000, 0x1000})})}},
        Story{"FailedCloseLeavesItOpen",
              {OpenTl(0x1000), OpenIf(0x2000), Register(0x1000, 0, 0x6000), Failed(CloseTl(0x1000)),
               Queue(0x4000, 0x5000)}}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Interface, RegistrySteps,
    ::testing::Values(
        Story{"IsAddedOnce",
              {OpenTl(0x1000), OpenIf(0x2000),
               OpenIf(0x2000).Says({Error(kTransportLayer.childAddedTwice, {0x2000, 0x1000})})}},
        Story{"OfANullHandleIsAddedLikeAnyOther",
              {OpenTl(0x1000), OpenIf(0),
               CloseTl(0x1000).Says({Error(kTransportLayer.childLeftOpen, {0, 0x1000})})}},
        Story{"FailedOpenAddsNothing", {OpenTl(0x1000), Failed(OpenIf(0x2000)), CloseTl(0x1000)}},
        Story{"CloseOfANullHandleIsIllegalAndChangesNothing",
              {OpenTl(0x1000), OpenIf(0), Register(0, 0, 0x6000),
               CloseIf(0).Says({Error(model::kIllegalInterface)}),
               CloseTl(0x1000).Says({Error(kTransportLayer.childLeftOpen, {0, 0x1000})})}},
        Story{"CloseOfANullHandleIsIllegalWithoutATransportLayerToo",
              {CloseIf(0).Says({Error(model::kIllegalInterface)})}},
        Story{"CloseOfAnUnknownHandle",
              {OpenTl(0x1000), OpenIf(0x2000),
               CloseIf(0x2001).Says({Error(kTransportLayer.childNotDefined, {0x2001, 0x1000}),
                                     Error(model::kInterfaceNotOpened)})}},
        Story{"CloseRemovesIt", {OpenTl(0x1000), OpenIf(0x2000), CloseIf(0x2000), CloseTl(0x1000)}},
        Story{"CloseReleasesItsEventsBeforeItReportsTheDevices",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDev(0x2000, 0x3001),
               Register(0x2000, 2, 0x6000),
               CloseIf(0x2000).Says({Warn(kInterface.eventLeft,
                                          {"EVENT_FEATURE_INVALIDATE", 0x6000, 0x2000}),
                                     Error(kInterface.childLeftOpen, {0x3000, 0x2000}),
                                     Error(kInterface.childLeftOpen, {0x3001, 0x2000})})}},
        Story{
            "CloseReleasesTheEventsOfWhateverHasTheHandle",
            {OpenTl(0x1000), OpenIf(0x2000), Register(0x1000, 0, 0x6000),
             CloseIf(0x1000).Says({Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", 0x6000, 0x1000}),
                                   Error(kTransportLayer.childNotDefined, {0x1000, 0x1000}),
                                   Error(model::kInterfaceNotOpened)})}},
        Story{
            "FailedCloseLeavesItOpen",
            {OpenTl(0x1000), OpenIf(0x2000), Register(0x2000, 0, 0x6000), Failed(CloseIf(0x2000)),
             Failed(CloseIf(0)),
             CloseIf(0x2000).Says({Warn(kInterface.eventLeft, {"EVENT_ERROR", 0x6000, 0x2000})})}}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Device, RegistrySteps,
    ::testing::Values(
        Story{"OpenedWithoutRoomForAHandleIsNotAdded",
              {OpenTl(0x1000), OpenIf(0x2000),
               Step(kOpenDevNowhere).Says({Error(model::kNoDeviceSlot)}), CloseIf(0x2000)}},
        Story{"IsAddedOnce",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0xFFFFFFFF00003000),
               OpenDev(0x2000, 0xFFFFFFFF00003000)
                   .Says({Error(kInterface.childAddedTwice, {0xFFFFFFFF00003000, 0x2000})})}},
        Story{"OnAnUnknownInterfaceIsReported",
              {OpenTl(0x1000), OpenIf(0x2000),
               OpenDev(0x2001, 0x3000)
                   .Says({Error(kTransportLayer.deviceNotAdded, {0x3000, 0x2001, 0x1000})})}},
        Story{"FailedOpenAddsNothing",
              {OpenTl(0x1000), OpenIf(0x2000), Failed(OpenDev(0x2000, 0x3000)),
               Failed(kOpenDevNowhere), CloseIf(0x2000)}},
        Story{"CloseOfANullHandleIsIllegalAndChangesNothing",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0), Register(0, 0, 0x6000),
               CloseDev(0).Says({Error(model::kIllegalDevice)}),
               CloseIf(0x2000).Says({Error(kInterface.childLeftOpen, {0, 0x2000})})}},
        Story{"CloseOfANullHandleIsIllegalWithoutATransportLayerToo",
              {CloseDev(0).Says({Error(model::kIllegalDevice)})}},
        Story{"CloseOfAnUnknownHandle",
              {OpenTl(0x1000), OpenIf(0x2000),
               CloseDev(0x3000).Says({Error(kInterface.childNotDefined, {0x3000, 0x2000}),
                                      Error(kTransportLayer.deviceNotRemoved, {0x3000, 0x1000}),
                                      Error(model::kDeviceNotOpened)})}},
        Story{"CloseReleasesItsEventsBeforeItReportsTheStreams",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDs(0x3000, 0x4000),
               Register(0x3000, 3, 0x6000), Register(0x3000, 0, 0x6001),
               CloseDev(0x3000).Says({Warn(kDevice.eventLeft,
                                           {"EVENT_FEATURE_CHANGE", 0x6000, 0x3000}),
                                      Warn(kDevice.eventLeft, {"EVENT_ERROR", 0x6001, 0x3000}),
                                      Error(kDevice.childLeftOpen, {0x4000, 0x3000})})}},
        Story{"CloseReleasesTheEventsBeforeItLooksForTheDevice",
              {OpenTl(0x1000), OpenIf(0x2000), OpenIf(0x2001), OpenDev(0x2001, 0x3000),
               Register(0x3000, 0, 0x6000),
               CloseDev(0x3000).Says({Warn(kDevice.eventLeft, {"EVENT_ERROR", 0x6000, 0x3000}),
                                      Error(kInterface.childNotDefined, {0x3000, 0x2000})})}},
        Story{"FailedCloseLeavesItOpen",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), Register(0x3000, 0, 0x6000),
               Failed(CloseDev(0x3000)), Failed(CloseDev(0)),
               CloseDev(0x3000).Says({Warn(kDevice.eventLeft, {"EVENT_ERROR", 0x6000, 0x3000})})}}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    DataStream, RegistrySteps,
    ::testing::Values(
        Story{"OnANullDeviceIsReportedThoughItIsValid",
              {OpenTl(0x1000), OpenDs(0, 0x4000).Says({Error(model::kNoDeviceForDataStream)})}},
        Story{"OnANullDeviceIsReportedWithoutATransportLayerToo",
              {OpenDs(0, 0x4000).Says({Error(model::kNoDeviceForDataStream)})}},
        Story{"IsAddedOnceANullHandleLikeAnyOther",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDs(0x3000, 0),
               OpenDs(0x3000, 0).Says({Error(kDevice.childAddedTwice, {0, 0x3000})})}},
        Story{"OnAnUnknownDevice",
              {OpenTl(0x1000), OpenIf(0x2000),
               OpenDs(0x3000, 0x4000)
                   .Says({Error(kInterface.dataStreamNotAdded, {0x4000, 0x3000, 0x2000})})}},
        Story{"WithoutAnyInterface",
              {OpenTl(0x1000),
               OpenDs(0x3000, 0x4000)
                   .Says({Error(kTransportLayer.dataStreamNotAdded, {0x4000, 0x3000, 0x1000})})}},
        Story{"FailedOpenAddsNothing",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000),
               Failed(OpenDs(0x3000, 0x4000)), Failed(OpenDs(0, 0x4000)), CloseDev(0x3000)}},
        Story{"CloseOfANullHandleIsIllegalAndChangesNothing",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDs(0x3000, 0),
               Register(0, 1, 0x6000), CloseDs(0).Says({Error(model::kIllegalDataStream)}),
               CloseDev(0x3000).Says({Error(kDevice.childLeftOpen, {0, 0x3000})})}},
        Story{"CloseOfANullHandleIsIllegalWithoutATransportLayerToo",
              {CloseDs(0).Says({Error(model::kIllegalDataStream)})}},
        Story{"CloseOfAnUnknownHandle",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000),
               CloseDs(0x4000).Says({Error(kDevice.childNotDefined, {0x4000, 0x3000}),
                                     Error(kInterface.dataStreamNotRemoved, {0x4000, 0x2000}),
                                     Error(kTransportLayer.dataStreamNotRemoved, {0x4000, 0x1000}),
                                     Error(model::kDataStreamNotOpened)})}},
        Story{"CloseReleasesItsEventsBeforeItReportsTheBuffers",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDs(0x3000, 0x4000),
               Announce(0x4000, 0x5000), Announce(0x4000, 0x5001), Register(0x4000, 1, 0x6000),
               Register(0x5000, 0, 0x6001),
               CloseDs(0x4000).Says({Warn(kDataStream.eventLeft, {0x6000, 0x4000}),
                                     Error(kDataStream.childLeftOpen, {0x5000, 0x4000}),
                                     Error(kDataStream.childLeftOpen, {0x5001, 0x4000})})}},
        Story{"CloseReleasesTheEventsBeforeItLooksForTheStream",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDev(0x2000, 0x3001),
               OpenDs(0x3001, 0x4000), Register(0x4000, 1, 0x6000),
               CloseDs(0x4000).Says({Warn(kDataStream.eventLeft, {0x6000, 0x4000}),
                                     Error(kDevice.childNotDefined, {0x4000, 0x3000})})}},
        Story{"FailedCallsLeaveItAsItIs",
              {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000), OpenDs(0x3000, 0x4000),
               Register(0x4000, 1, 0x6000), Failed(CloseDs(0x4000)), Failed(CloseDs(0)),
               Failed(Queue(0x4000, 0x5000)), Failed(Flush(0x4000, 4)),
               CloseDs(0x4000).Says({Warn(kDataStream.eventLeft, {0x6000, 0x4000})})}}),
    NameOf);

// The stories of buffers, which begin alike.
Story WithStream(const char* name, std::vector<Step> steps) {
  std::vector<Step> all = {OpenTl(0x1000), OpenIf(0x2000), OpenDev(0x2000, 0x3000),
                           OpenDs(0x3000, 0x4000)};
  all.insert(all.end(), steps.begin(), steps.end());
  return {name, all};
}

INSTANTIATE_TEST_SUITE_P(
    Buffer, RegistrySteps,
    ::testing::Values(
        WithStream(
            "IsAddedOnceByBothFunctions",
            {Announce(0x4000, 0x5000),
             AllocAndAnnounce(0x4000, 0x5000)
                 .Says({Error(kDataStream.childAddedTwice, {0x5000, 0x4000})}),
             Announce(0x4000, 0x5000).Says({Error(kDataStream.childAddedTwice, {0x5000, 0x4000})}),
             AllocAndAnnounce(0x4000, 0),
             Announce(0x4000, 0).Says({Error(kDataStream.childAddedTwice, {0, 0x4000})})}),
        WithStream("OnAnUnknownStream",
                   {Announce(0x4001, 0x5000)
                        .Says({Error(kDevice.bufferNotAdded, {0x5000, 0x4001, 0x3000}),
                               Error(kInterface.bufferNotAdded, {0x5000, 0x4001, 0x2000}),
                               Error(kTransportLayer.bufferNotAdded, {0x5000, 0x4001, 0x1000})}),
                    AllocAndAnnounce(0x4001, 0x5000)
                        .Says({Error(kDevice.bufferNotAdded, {0x5000, 0x4001, 0x3000}),
                               Error(kInterface.bufferNotAdded, {0x5000, 0x4001, 0x2000}),
                               Error(kTransportLayer.bufferNotAdded, {0x5000, 0x4001, 0x1000})})}),
        WithStream("FailedAnnouncementsAddNothing",
                   {Failed(Announce(0x4000, 0x5000)), Failed(AllocAndAnnounce(0x4000, 0x5000)),
                    CloseDs(0x4000)}),
        WithStream("RevokeOfANullHandleIsIllegalAndChangesNothing",
                   {Announce(0x4000, 0), Revoke(0x4000, 0).Says({Error(model::kIllegalBuffer)}),
                    CloseDs(0x4000).Says({Error(kDataStream.childLeftOpen, {0, 0x4000})})}),
        Story{"RevokeOfANullHandleIsIllegalWithoutATransportLayerToo",
              {Revoke(0x4000, 0).Says({Error(model::kIllegalBuffer)})}},
        WithStream("RevokeOfOneNeverAnnounced",
                   {Revoke(0x4000, 0x5000)
                        .Says({Error(kDataStream.childNotDefined, {0x5000, 0x4000}),
                               Error(kInterface.bufferNotRemoved, {0x5000, 0x2000}),
                               Error(kTransportLayer.bufferNotRemoved, {0x5000, 0x1000}),
                               Error(model::kBufferNotAnnounced)})}),
        WithStream("RevokeOnAnUnknownStream",
                   {Revoke(0x4001, 0x5000)
                        .Says({Error(kDevice.bufferNotRemoved, {0x5000, 0x3000}),
                               Error(kInterface.bufferNotRemoved, {0x5000, 0x2000}),
                               Error(kTransportLayer.bufferNotRemoved, {0x5000, 0x1000}),
                               Error(model::kBufferNotAnnounced)})}),
        WithStream("RevokeRemovesItAndReportsItsEventsOnce",
                   {Announce(0x4000, 0x5000), Register(0x5000, 1, 0x6000),
                    Revoke(0x4000, 0x5000)
                        .Says({Warn(kBuffer.eventLeft, {"EVENT_NEW_BUFFER", 0x6000, 0x5000})}),
                    CloseDs(0x4000)}),
        WithStream("RevokeReleasesNoEventsOfOthersWithThatHandle",
                   {Register(0x3000, 0, 0x6000),
                    Revoke(0x4000, 0x3000)
                        .Says({Error(kDataStream.childNotDefined, {0x3000, 0x4000}),
                               Error(kInterface.bufferNotRemoved, {0x3000, 0x2000}),
                               Error(kTransportLayer.bufferNotRemoved, {0x3000, 0x1000}),
                               Error(model::kBufferNotAnnounced)})}),
        WithStream("FailedRevokeLeavesItAnnounced",
                   {Announce(0x4000, 0x5000), Failed(Revoke(0x4000, 0x5000)),
                    Failed(Revoke(0x4000, 0)), Revoke(0x4000, 0x5000)}),
        WithStream("IsQueuedAndFlushedWithoutAWord",
                   {Announce(0x4000, 0x5000), Queue(0x4999, 0x5000), Queue(0x4000, 0x5999),
                    Queue(0x4000, 0), Flush(0x4000, 4), Flush(0x4999, 4), Flush(0, 4)})),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Event, RegistrySteps,
    ::testing::Values(
        Story{"BeforeAnyTLOpenIsReportedAndNotRecorded",
              {Register(0x1000, 1, 0x6000).Says({kNotOpened}), OpenTl(0x1000), CloseTl(0x1000)}},
        WithStream("IsRegisteredOnceOnADevice",
                   {Register(0x3000, 1, 0x6000),
                    Register(0x3000, 1, 0x6001)
                        .Says({Error(kDevice.eventTwice, {"EVENT_NEW_BUFFER", 0x3000}),
                               Error(model::kEventSourceNotFound, {"EVENT_NEW_BUFFER", 0x3000})})}),
        Story{"OnAnUnknownSource",
              {OpenTl(0x1000),
               Register(0x4000, 0, 0x6000)
                   .Says({Error(model::kEventSourceNotFound, {"EVENT_ERROR", 0x4000})})}},
        Story{
            "OfANullHandleIsRegisteredLikeAnyOther",
            {OpenTl(0x1000), Register(0x1000, 0, 0),
             CloseTl(0x1000).Says({Warn(kTransportLayer.eventLeft, {"EVENT_ERROR", 0, 0x1000})})}},
        WithStream("UnregisteredOnANullSourceIsIllegalAndStays",
                   {Register(0x2000, 1, 0x6000),
                    Unregister(0, 1).Says({Error(model::kIllegalInterface)}),
                    Unregister(0x2000, 1)}),
        Story{"UnregisteredOnANullSourceIsIllegalWithoutATransportLayerToo",
              {Unregister(0, 0).Says({Error(model::kIllegalInterface)})}},
        WithStream("NeverRegisteredIsShownAsANumber",
                   {Unregister(0x4000, 1).Says({Error(model::kEventNotFound,
                                                      {"EVENT_NEW_BUFFER", 0x4000}),
                                                Error(model::kEventNotRegistered, {1})}),
                    Unregister(0x1000, -5)
                        .Says({Error(model::kEventNotAdded, {"(Unknown EVENT_TYPE: -5)", 0x1000}),
                               Error(model::kEventNotRegistered, {-5})})}),
        WithStream(
            "OfADeviceThatIsClosedIsGone",
            {Register(0x3000, 1, 0x6000), CloseDs(0x4000),
             CloseDev(0x3000).Says({Warn(kDevice.eventLeft, {"EVENT_NEW_BUFFER", 0x6000, 0x3000})}),
             Unregister(0x3000, 1).Says({Error(model::kEventNotFound, {"EVENT_NEW_BUFFER", 0x3000}),
                                         Error(model::kEventNotRegistered, {1})})}),
        WithStream("IsDeliveredWithoutAWord",
                   {Announce(0x4000, 0x5000), Register(0x4000, 1, 0x6000),
                    GetData(0x6000, 0x5000)}),
        Story{"IsFlushedAndKilledAndStaysRegistered",
              {OpenTl(0x1000), Register(0x1000, 0, 0x6000),
               Calling(&Functions::EventFlush, Handle(0x6000)),
               Calling(&Functions::EventKill, Handle(0x6000)),
               CloseTl(0x1000).Says({Warn(kTransportLayer.eventLeft,
                                          {"EVENT_ERROR", 0x6000, 0x1000})})}},
        Story{"FailedCallsTakeNoStep",
              {OpenTl(0x1000), Failed(Register(0x1000, 0, 0x6000)), Failed(Unregister(0x1000, 0)),
               Failed(Unregister(0, 0)), Failed(GetData(0x6000, 0x5000)), CloseTl(0x1000)}}),
    NameOf);

using OpenedHandle = ExportsTest;

// Not the one that the consumer's variable held before the call.
TEST_F(OpenedHandle, OfATransportLayerIsTheOneThatTheTargetReturned) {
  TL_HANDLE handle = nullptr;
  TargetDoes(&Functions::TLOpen, 0, [&] { handle = Handle(0x1234567890ABCDEF); });
  EXPECT_EQ(proxy.TLOpen(&handle), 0);
  static_cast<void>(TakeLines());
  EXPECT_EQ(proxy.IFClose(Handle(0x2000)), 0);
  EXPECT_THAT(TakeLines(), ::testing::Contains(Error(kTransportLayer.childNotDefined,
                                                     {0x2000, 0x1234567890ABCDEF})));
}

}  // namespace
}  // namespace vextrel_test
