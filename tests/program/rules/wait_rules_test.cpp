// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(WaitRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"polled each 2 ms", "EVT-POLL warning",
       [](TypedLog& log) {
         log.StartStream(2).Here();
         for (int i = 0; i < 1600; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 1)).Pass(2);
           if (i % 20 == 19) {
             log.Frame(i / 20 % 2);
           }
         }
         log.CloseAll();
       }},
      {"asked each 10 ms without a time-out", "",
       [](TypedLog& log) {
         log.StartStream(2);
         for (int i = 0; i < 400; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 0)).Pass(10);
           if (i % 4 == 3) {
             log.Frame(i / 4 % 2);
           }
         }
         log.CloseAll();
       }},
      {"no frame ever", "EVT-STORM warning",
       [](TypedLog& log) {
         log.OpenStream(2).QueueAll().Because().Ok(Start(kDS)).Pass(500).Here();
         for (int i = 0; i < 4; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 500)).Pass(500);
         }
         log.StopStream().CloseAll();
       }},
      {"no frame any more", "EVT-STORM warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Pass(300).Here();
         for (int i = 0; i < 4; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 300)).Pass(300);
         }
         log.CloseAll();
       }},
      {"a slow camera", "",
       [](TypedLog& log) {
         log.StartStream(2);
         for (int i = 0; i < 8; ++i) {
           log.Pass(400).Fails("TIMEOUT", Wait(kEvent, 0, 400)).Pass(50).Frame(i % 2);
           log.Frame((i + 1) % 2).Pass(10).Frame(i % 2).Pass(10);
         }
         log.CloseAll();
       }},
      {"waits shorter than a frame takes", "EVT-SHORT info",
       [](TypedLog& log) {
         log.StartStream(2).Here();
         for (int i = 0; i < 8; ++i) {
           log.Fails("TIMEOUT", Wait(kEvent, 0, 100)).Pass(50).Frame(i % 2).Pass(99);
         }
         log.CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
