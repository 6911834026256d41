// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(ModuleRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"a device opened twice", "MOD-INUSE error",
       [](TypedLog& log) {
         log.OpenDevice()
             .Here()
             .Fails("RESOURCE_IN_USE", OpenDev(kIF, "Cam0", "EXCLUSIVE", 0))
             .CloseAll();
       }},
      {"a device opened again when it's closed", "",
       [](TypedLog& log) {
         log.OpenDevice()
             .Ok(Close("DevClose", kDev))
             .Ok(OpenDev(kIF, "Cam0", "EXCLUSIVE", kDev))
             .CloseAll();
       }},
      {"an interface opened twice", "MOD-INUSE error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("RESOURCE_IN_USE", OpenIF(kTL, "If0", 0)).CloseAll();
       }},
      {"an interface that nobody here holds", "MOD-INUSE warning",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("RESOURCE_IN_USE", OpenIF(kTL, "If1", 0)).CloseAll();
       }},
      {"everything left open", "MOD-LEAK warning",
       [](TypedLog& log) { log.Ok(InitLib()).Because().Ok(OpenTL(kTL)).Here().Ok(CloseLib()); }},
      {"the log ends in the middle", "MOD-LEAK warning", [](TypedLog& log) { log.OpenStream(1); }},
      {"the log ends in the middle of a line", "LOG-CUT info",
       [](TypedLog& log) { log.OpenStream(1).Cut(); }},
      {"the log ends in the middle of a wait", "END-INFLIGHT info",
       [](TypedLog& log) { log.StartStream(1).Enters(Wait(kEvent, 0)); }},
      {"the library is closed in the middle of a wait", "MOD-LEAK warning",
       [](TypedLog& log) {
         log.Ok(InitLib()).Ok(OpenTL(kTL)).Ok(Register(kTL, "ERROR", kEvent)).On("8");
         log.Enters(Wait(kEvent, 0)).On("7").Here().Ok(CloseLib());
       }},
      {"a stream closed with its buffer", "MOD-ORDER info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS));
         log.Because().Ok(Announce(kDS, 0x10000, 0x100, kBuffer));
         log.Here().Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a stream closed without anything", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a device closed while its stream runs", "MOD-CLOSE-LIVE error",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Because().Ok(Start(kDS)).Pass(100).Frame(0).Pass(30);
         log.Here().Ok(Close("DevClose", kDev));
         log.Ok(Close("IFClose", kIF)).Ok(Close("TLClose", kTL)).Ok(CloseLib());
       }},
      {"another device closed while a stream runs", "",
       [](TypedLog& log) {
         log.StartStream(1).Ok(OpenDev(kIF, "Cam1", "EXCLUSIVE", 0x1000C0FF0));
         log.Ok(GetPort(0x1000C0FF0, 0xC20)).Ok(Close("DevClose", 0x1000C0FF0)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
