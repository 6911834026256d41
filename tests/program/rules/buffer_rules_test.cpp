// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

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
      {"nothing is queued, and a wait times out", "BUF-FEW error",
       [](TypedLog& log) {
         log.OpenStream(2).Here().Ok(Start(kDS)).Pass(500).Because();
         log.Fails("TIMEOUT", Wait(kEvent, 0, 500)).StopStream().CloseAll();
       }},
      {"nothing is queued until the first wait polled", "ACQ-ORDER info",
       [](TypedLog& log) {
         log.OpenStream(2).Here().Ok(Start(kDS)).Pass(1).Fails("TIMEOUT", Wait(kEvent, 0, 1));
         log.QueueAll().Pass(30).Frame(0).StopStream().CloseAll();
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
  });
}

}  // namespace
}  // namespace vextrel_test
