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
      {"no frame any more, and one wait that's long enough", "EVT-STORM warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Pass(1000).Here();
         log.Fails("TIMEOUT", Wait(kEvent, 0, 1000));
         log.Ok(PortAccess("GCWritePort", kPort, 0x124)).StopStream().CloseAll();
       },
       "is acquiring, but a wait for a frame times out after 1000 ms: likely the camera stopped,"},
      {"one wait that isn't", "",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Pass(900);
         log.Fails("TIMEOUT", Wait(kEvent, 0, 900)).CloseAll();
       }},
      {"a wait for what is left when the camera was stopped", "",
       [](TypedLog& log) {
         log.StartStream(2).Frames(10, 30).Ok(PortAccess("GCWritePort", kPort, 0x124));
         log.Pass(1000).Fails("TIMEOUT", Wait(kEvent, 0, 1000)).CloseAll();
       }},
      {"one wait in vain, and then a frame", "T-STALL warning",
       [](TypedLog& log) {
         log.StartStream(2).Frames(20, 30).Pass(1000).Fails("TIMEOUT", Wait(kEvent, 0, 1000));
         log.Pass(30).Here().Frames(3, 30).CloseAll();
       }},
      {"another device is lost", "EVT-STORM warning",
       [](TypedLog& log) {
         constexpr std::uint64_t other = 0x1000C0FF0;
         log.StartStream(2).Ok(OpenDev(kIF, "Cam1", "CONTROL", other)).Ok(GetPort(other, 0xC20));
         log.Frames(10, 30).Fails("IO", PortAccess("GCReadPort", 0xC20, 0x100)).Pass(1000).Here();
         log.Fails("TIMEOUT", Wait(kEvent, 0, 1000)).Ok(Close("DevClose", other)).CloseAll();
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
