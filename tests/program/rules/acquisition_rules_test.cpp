// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(AcquisitionRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"started twice", "ACQ-PAIR warning",
       [](TypedLog& log) {
         log.StartStream(1).Here().Fails("RESOURCE_IN_USE", Start(kDS)).CloseAll();
       }},
      {"stopped twice", "ACQ-PAIR warning",
       [](TypedLog& log) {
         log.StartStream(1).StopStream().Here().Fails("RESOURCE_IN_USE", Stop(kDS)).CloseAll();
       }},
      {"closed while it runs", "ACQ-PAIR info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
         log.Ok(Announce(kDS, 0x10000, 256, kBuffer)).Ok(Queue(kDS, kBuffer));
         log.Because().Ok(Start(kDS)).Pass(50).Ok(Flush(kDS, "UNQUEUED_TO_INPUT"));
         log.Ok(Wait(kEvent, kBuffer)).Ok(Revoke(kDS, kBuffer)).Ok(Unregister(kDS, "NEW_BUFFER"));
         log.Here().Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"started and stopped, twice", "",
       [](TypedLog& log) {
         log.StartStream(1).StopStream().QueueAll().Ok(Start(kDS)).StopStream().CloseAll();
       }},
      {"refused, and another call failed before", "ACQ-START-FAIL error",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Because();
         log.Fails("ACCESS_DENIED", PortAccess("GCWritePort", kPort, 0x100));
         log.Here().Fails("ERROR", Start(kDS)).Because().Ok(LastError("no stream channel"));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"started without an event", "ACQ-ORDER info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(Announce(kDS, 0x10000, 256, kBuffer));
         log.Ok(Queue(kDS, kBuffer)).Here().Ok(Start(kDS)).StopStream().Ok(Revoke(kDS, kBuffer));
         log.Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"started with an empty queue", "ACQ-ORDER info",
       [](TypedLog& log) { log.OpenStream(1).Here().Ok(Start(kDS)).StopStream().CloseAll(); }},
      {"stopped after 5 ms", "ACQ-RACE info",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Because().Ok(Start(kDS)).Pass(5).Here().Ok(Stop(kDS));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"stopped after 15 ms", "",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Ok(Start(kDS)).Pass(15).Ok(Stop(kDS));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
