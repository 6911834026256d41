// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(HandleRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"a stream is used when its device is closed", "HND-AFTER error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Close("DSClose", kDS));
         log.Because().Ok(Close("DevClose", kDev));
         log.Here().Fails("INVALID_HANDLE", Close("DevClose", kDev));
         log.Ok(Close("IFClose", kIF)).Ok(Close("TLClose", kTL)).Ok(CloseLib());
       }},
      {"a buffer revoked twice", "HND-AFTER error",
       [](TypedLog& log) {
         log.OpenStream(2).Ok(Announce(kDS, 0x20000, 1, 0xB80)).Ok(Revoke(kDS, 0xB80));
         log.Here().Fails("INVALID_HANDLE", Revoke(kDS, 0xB80)).CloseAll();
       }},
      {"a wait of another thread that was in the target", "",
       [](TypedLog& log) {
         log.OpenStream(1).On("8").Fails("TIMEOUT", Wait(kEvent, 0)).On("7").CloseStream();
         log.On("8").Fails("INVALID_HANDLE", Wait(kEvent, 0)).On("7").CloseAll();
       }},
      {"a wait of another thread that began later", "HND-AFTER error",
       [](TypedLog& log) {
         log.OpenStream(1).On("8").Fails("TIMEOUT", Wait(kEvent, 0)).On("7").CloseStream();
         log.On("8").Fails("ABORT", Wait(kEvent, 0));
         log.Here().Fails("INVALID_HANDLE", Wait(kEvent, 0)).On("7").CloseAll();
       }},
      {"the value of a closed handle comes back", "",
       [](TypedLog& log) { log.StartStream(1).Frame(0).CloseAll().StartStream(1).CloseAll(); }},
      {"a device where a stream is needed", "HND-TYPE error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(GetPort(kDev, kPort));
         log.Here().Fails("INVALID_HANDLE", Flush(kDev, "ALL_DISCARD")).CloseAll();
       }},
      {"the port where a device is needed", "HND-TYPE error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_HANDLE", Close("DevClose", kPort)).CloseAll();
       }},
      {"nothing where a device is needed", "HND-NULL error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Fails("ERROR", OpenDev(kIF, "Cam9", "CONTROL", 0));
         log.Here().Fails("INVALID_HANDLE", Close("DevClose", 0)).CloseAll();
       }},
      {"all bits set where a stream is needed", "HND-NULL error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_HANDLE", Close("DSClose", ~0ULL)).CloseAll();
       }},
      {"a handle that nothing opened", "HND-UNKNOWN warning",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_HANDLE", Close("DSClose", 0xD99)).CloseAll();
       }},
      {"a handle that nothing opened, in a log that begins late", "",
       [](TypedLog& log) { log.Fails("INVALID_HANDLE", Close("DSClose", 0xD99)); }},
      {"a handle that is open is refused", "HND-PRODUCER warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Here().Fails("INVALID_HANDLE", BufferInfo(kDS, kBuffer, "WIDTH", "NULL"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
