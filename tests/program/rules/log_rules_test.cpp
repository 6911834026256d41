// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

constexpr std::uint64_t kDev2 = 0x1000C0FF0;

TEST(LogRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"stopping never returns", "END-INFLIGHT error",
       [](TypedLog& log) {
         log.StartStream(1).Line("Call 1 enters DSStopAcquisition(0x0000000000000D50)", "DEBUG");
       }},
      {"only a wait doesn't return", "END-INFLIGHT info",
       [](TypedLog& log) { log.StartStream(1).Here().Enters(Wait(kEvent, 0)); },
       "EventGetData of EV1 NEW_BUFFER of DS1 was still waiting when the log ended."},
      {"every wait returns", "MOD-LEAK warning",
       [](TypedLog& log) {
         log.StartStream(1)
             .Enters(Wait(kEvent, 0))
             .Returns("TIMEOUT", Wait(kEvent, 0), "500000.000");
       }},
      {"the last line is cut", "LOG-CUT info",
       [](TypedLog& log) { log.Ok(InitLib()).Ok(CloseLib()).Cut(); }},
      {"the clock goes back by an hour", "LOG-TIME info",
       [](TypedLog& log) {
         log.Pass(3'600'000 - 60'000).Ok(InitLib()).Pass(-3'000'000).Here().Ok(CloseLib());
       }},
      {"a line of another program", "LOG-UNREADABLE info",
       [](TypedLog& log) {
         log.Ok(InitLib()).Here().Line("Hello from the application").Ok(CloseLib());
       }},
      {"a stream of the second interface", "LOG-REPORT info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenIF(kTL, "If1", kIF2));
         log.Ok(OpenDev(kIF2, "Cam1", "EXCLUSIVE", kDev2)).Ok(GetPort(kDev2, 0xC20));
         log.Because().Ok(OpenDS(kDev2, "S1", kDS2)).Here();
         log.Line(
             "Unable to add DataStream with handle 0x0000000000000D60! Device with handle "
             "0x00000001000C0FF0 on Interface 0x0000000000000A20 was not found!",
             "ERROR");
         log.Ok(Close("DSClose", kDS2)).Ok(Close("DevClose", kDev2)).Ok(Close("IFClose", kIF2));
         log.CloseAll();
       }},
      {"a buffer of the second device", "LOG-REPORT info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDev(kIF, "Cam1", "EXCLUSIVE", kDev2)).Ok(GetPort(kDev2, 0xC20));
         log.Ok(OpenDS(kDev2, "S1", kDS2)).Because().Ok(Announce(kDS2, 0x20000, 1, 0xB80)).Here();
         log.Line(
             "Unable to add Buffer with handle 0x0000000000000B80! DataStream with handle "
             "0x0000000000000D60 on Device 0x00000001000C0DE0 was not found!",
             "ERROR");
         log.Ok(Revoke(kDS2, 0xB80)).Ok(Close("DSClose", kDS2)).Ok(Close("DevClose", kDev2));
         log.CloseAll();
       },
       "BUF1 is open, and nothing is wrong with it: Vextrel looks for it on one device after the "
       "other, and reports each that doesn't have it."},
      {"a device that the producer didn't close", "MOD-ORDER info, LOG-REPORT info",
       [](TypedLog& log) {
         log.OpenDevice().Fails("NOT_IMPLEMENTED", Close("DevClose", kDev));
         log.Ok(Close("IFClose", kIF));
         log.Line(
             "Device with handle 0x00000001000C0DE0 on interface 0x0000000000000A20 was not "
             "closed properly using DevClose()",
             "ERROR");
         log.Ok(Close("TLClose", kTL)).Ok(CloseLib());
       }},
      {"an event of another module", "LOG-REPORT info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(Register(kDev, "ERROR", 0xE20));
         log.Because().Ok(Unregister(kDev, "ERROR")).Ok(Close("DevClose", kDev)).Here();
         log.Line(
             "Event type EVENT_ERROR with handle 0x0000000000000E20 on device "
             "0x00000001000C0DE0 was not unregistered directly using GCUnregisterEvent()",
             "WARN");
         log.Ok(Close("IFClose", kIF)).Ok(Close("TLClose", kTL)).Ok(CloseLib());
       }},
      {"a library that couldn't be loaded", "LIB-LOAD error, LOG-REPORT info",
       [](TypedLog& log) {
         log.Line("Loading GenTL Producer '/opt/a.cti'").Here();
         log.Line("Error 126 when loading the GenTL producer dll: '/opt/a.cti'", "ERROR");
         log.Fails("NOT_IMPLEMENTED", OpenTL(0));
         log.Line("GCInitLib has not been called yet!", "ERROR");
         log.Fails("NOT_IMPLEMENTED", CloseLib());
       }},
      {"four reports of one wrong revoke", "HND-AFTER error",
       [](TypedLog& log) {
         log.OpenStream(1).Ok(Announce(kDS, 0x20000, 1, 0xB80)).Because().Ok(Revoke(kDS, 0xB80));
         log.Here().Fails("INVALID_HANDLE", Revoke(kDS, 0xB80)).Because();
         for (const char* const where :
              {"DataStream on Device", "Device on Interface", "Interface on TL"}) {
           log.Line("Unable to remove Buffer with handle 0x0000000000000B80 on any " +
                        std::string(where) + " 0x0000000000000A10!",
                    "ERROR");
         }
         log.CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
