// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

constexpr std::uint64_t kDS2 = 0xD60;

TypedLog& Cycle(TypedLog& log, std::uint64_t buffer) {
  return log.Ok(Announce(kDS, buffer << 8U, 0x100, buffer)).Ok(Queue(kDS, buffer));
}

TEST(BufferRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"fewer than the producer wants", "BUF-FEW error",
       [](TypedLog& log) {
         log.OpenStream(2).Because().Ok(StreamInfo(kDS, "NUM_ANNOUNCE_MIN", "3")).QueueAll();
         log.Here().Ok(Start(kDS)).Pass(50).StopStream().CloseAll();
       }},
      {"as many as the producer wants", "",
       [](TypedLog& log) {
         log.OpenStream(3).Ok(StreamInfo(kDS, "NUM_ANNOUNCE_MIN", "3")).QueueAll();
         log.Ok(Start(kDS)).Pass(50).StopStream().CloseAll();
       }},
      {"refused as too few", "BUF-FEW error",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Here().Fails("INVALID_BUFFER", Start(kDS));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"smaller than a frame", "BUF-SIZE error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
         log.Because().Ok(Announce(kDS, 0x10000, 256, kBuffer)).Ok(Queue(kDS, kBuffer));
         log.Because().Ok(StreamInfo(kDS, "PAYLOAD_SIZE", "300")).Here().Ok(Start(kDS)).Pass(50);
         log.StopStream().Ok(Revoke(kDS, kBuffer)).Ok(Unregister(kDS, "NEW_BUFFER"));
         log.Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"as large as a frame", "",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Ok(StreamInfo(kDS, "PAYLOAD_SIZE", "256")).Ok(Start(kDS));
         log.Pass(50).StopStream().CloseAll();
       }},
      {"refused as too small", "BUF-SIZE error",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Here().Fails("-1016", Start(kDS));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"a frame says so", "BUF-SIZE error",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Ok(
             BufferInfo(kDS, kBuffer, "(Unknown BUFFER_INFO_CMD: 29)", "1", "INFO_DATATYPE_BOOL8"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"one more at each start", "BUF-LEAK warning, MOD-ORDER info",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
         Cycle(log, 0xB01).Because().Ok(Start(kDS)).StopStream();
         Cycle(log, 0xB02).Ok(Start(kDS)).StopStream();
         Cycle(log, 0xB03).Ok(Start(kDS)).StopStream();
         Cycle(log, 0xB04).Here().Ok(Start(kDS)).StopStream();
         log.Ok(Unregister(kDS, "NEW_BUFFER")).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"as many at each start", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS)).Ok(Register(kDS, "NEW_BUFFER", kEvent));
         for (int i = 0; i < 5; ++i) {
           Cycle(log, 0xB01).Ok(Start(kDS)).StopStream().Ok(Revoke(kDS, 0xB01));
         }
         log.Ok(Unregister(kDS, "NEW_BUFFER")).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a buffer of another stream", "BUF-FOREIGN error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(OpenDS(kDev, "S1", kDS2));
         log.Because().Ok(Announce(kDS, 0x10000, 0x100, kBuffer));
         log.Here().Fails("INVALID_HANDLE", Queue(kDS2, kBuffer)).Ok(Revoke(kDS, kBuffer));
         log.Ok(Close("DSClose", kDS2)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"a buffer of its own stream", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "S0", kDS)).Ok(OpenDS(kDev, "S1", kDS2));
         log.Ok(Announce(kDS, 0x10000, 0x100, kBuffer)).Ok(Announce(kDS2, 0x20000, 8, 0xB80));
         log.Ok(Revoke(kDS, kBuffer)).Ok(Revoke(kDS2, 0xB80));
         log.Ok(Close("DSClose", kDS2)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"both kinds on one stream", "BUF-MIX warning",
       [](TypedLog& log) {
         log.OpenStream(1).Here().Ok(Alloc(kDS, 0x100, 0xB80)).Ok(Revoke(kDS, 0xB80)).CloseAll();
       }},
      {"each kind on its stream", "",
       [](TypedLog& log) {
         log.OpenStream(1).Ok(OpenDS(kDev, "S1", kDS2)).Ok(Alloc(kDS2, 0x100, 0xB80));
         log.Ok(Revoke(kDS2, 0xB80)).Ok(Close("DSClose", kDS2)).CloseAll();
       }},
      {"the same memory twice", "BUF-DUP warning",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS));
         log.Because().Ok(Announce(kDS, 0x10000, 0x100, kBuffer));
         log.Here().Ok(Announce(kDS, 0x100FF, 0x100, 0xB80)).Ok(Revoke(kDS, 0xB80));
         log.Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"memory side by side", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(OpenDS(kDev, "Stream0", kDS));
         log.Ok(Announce(kDS, 0x10000, 0x100, kBuffer)).Ok(Announce(kDS, 0x10100, 0x100, 0xB80));
         log.Ok(Revoke(kDS, 0xB80)).Ok(Revoke(kDS, kBuffer)).Ok(Close("DSClose", kDS)).CloseAll();
       }},
      {"an incomplete frame", "BUF-INCOMPLETE warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Ok(BufferInfo(kDS, kBuffer, "IS_INCOMPLETE", "1", "INFO_DATATYPE_BOOL8"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"a complete frame", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "IS_INCOMPLETE", "0", "INFO_DATATYPE_BOOL8"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
