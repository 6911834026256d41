// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(CloseWaitRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"unregistering takes 1500 ms beside a wait", "EVT-CLOSE-WAIT error",
       [](TypedLog& log) {
         log.StartStream(1).StopStream().On("8").Because().Enters(Wait(kEvent, 0)).On("7");
         log.Because().Enters(Unregister(kDS, "NEW_BUFFER")).Pass(1500);
         log.On("8").Returns("TIMEOUT", Wait(kEvent, 0), "1500000.000").On("7");
         log.Line("Call 2 leaves GCUnregisterEvent after 1500000.000 us", "DEBUG").Here();
         log.Ok(Unregister(kDS, "NEW_BUFFER")).Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS));
         log.CloseDevice();
       }},
      {"unregistering ends a wait at once", "",
       [](TypedLog& log) {
         log.StartStream(1).StopStream().On("8").Enters(Wait(kEvent, 0)).On("7");
         log.Enters(Unregister(kDS, "NEW_BUFFER")).Pass(2).On("8");
         log.Returns("ABORT", Wait(kEvent, 0), "2000.000").On("7");
         log.Returns("SUCCESS", Unregister(kDS, "NEW_BUFFER"), "2500.000");
         log.Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS)).CloseDevice();
       }},
      {"stopping never returns beside a wait", "EVT-CLOSE-WAIT error, END-INFLIGHT error",
       [](TypedLog& log) {
         log.StartStream(1).On("8").Because().Enters(Wait(kEvent, 0)).On("7").Here();
         log.Enters(Stop(kDS));
       }},
      {"stopping never returns, and the wait did", "END-INFLIGHT error",
       [](TypedLog& log) {
         log.StartStream(1).On("8").Enters(Wait(kEvent, 0)).On("7").Enters(Stop(kDS)).Pass(500);
         log.On("8").Returns("TIMEOUT", Wait(kEvent, 0), "500000.000");
       }},
      {"stopping takes 1500 ms beside a wait for another stream", "T-SLOW warning",
       [](TypedLog& log) {
         log.StartStream(1).Ok(OpenDS(kDev, "S1", 0xD60)).Ok(Register(0xD60, "NEW_BUFFER", 0xE20));
         log.On("8").Enters(Wait(0xE20, 0, 2000)).On("7").Enters(Stop(kDS)).Pass(1500);
         log.Returns("SUCCESS", Stop(kDS), "1500000.000").Pass(500).On("8");
         log.Returns("TIMEOUT", Wait(0xE20, 0, 2000), "2000000.000").On("7");
         log.Ok(Unregister(0xD60, "NEW_BUFFER")).Ok(Close("DSClose", 0xD60));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseStream().CloseDevice();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
