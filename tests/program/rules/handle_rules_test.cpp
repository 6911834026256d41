// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

std::string OpenDevAt(std::string_view address, std::string_view id, std::uint64_t handle) {
  std::string call = OpenDev(kIF, id, "CONTROL", handle);
  return call.replace(call.find("F040"), 4, address);
}

// A refused opening isn't to blame when a later one has filled the same variable.
TEST(HandleRules, BlameNoOpeningWhoseVariableWasFilled) {
  TypedLog log;
  log.OpenDevice().Fails("ACCESS_DENIED", OpenDev(kIF, "Cam8", "CONTROL", 0));
  log.Ok(OpenDev(kIF, "Cam9", "CONTROL", 0x1000C0FF0)).Ok(GetPort(0x1000C0FF0, 0xC20));
  log.Fails("INVALID_HANDLE", Close("DevClose", 0)).Ok(Close("DevClose", 0x1000C0FF0)).CloseAll();
  const auto report = nlohmann::json::parse(CheckedAsJson(log));
  ASSERT_EQ(report["findings"].size(), 2U);
  EXPECT_EQ(report["findings"][0]["rule"], "HND-NULL");
  EXPECT_EQ(report["findings"][0]["related"].size(), 0U);
  EXPECT_EQ(report["findings"][1]["rule"], "DEV-DENIED");
}

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
       },
       "DSFlushQueue gets DEV1 \"Cam0\" as its hDS: that's a device, not a data stream."},
      {"an interface where a device is needed, and another error", "HND-TYPE error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_PARAMETER", Close("DevClose", kIF)).CloseAll();
       }},
      {"a wait that times out for a value that a device has, too", "",
       [](TypedLog& log) { log.OpenDevice().Fails("TIMEOUT", Wait(kIF, 0)).CloseAll(); }},
      {"the port where a device is needed", "HND-TYPE error",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_HANDLE", Close("DevClose", kPort)).CloseAll();
       }},
      {"nothing where a device is needed", "HND-NULL error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Fails("ERROR", OpenDev(kIF, "Cam9", "CONTROL", 0));
         log.Here().Fails("INVALID_HANDLE", Close("DevClose", 0)).CloseAll();
       }},
      {"nothing, and another opening left something else", "HND-NULL error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Fails("ERROR", OpenDevAt("F048", "Cam8", 0));
         log.Fails("ERROR", OpenDevAt("F050", "Cam9", 0xFFFFFFFF));
         log.Here().Fails("INVALID_HANDLE", Close("DevClose", 0)).CloseAll();
       }},
      {"nothing, and the opening succeeded", "HND-NULL error",
       [](TypedLog& log) {
         log.OpenDevice().Because().Ok(OpenDevAt("F048", "Cam8", 0));
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
