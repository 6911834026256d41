// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

// Frames every 30 ms that are queued again at once.
TypedLog& Frames(TypedLog& log, int count) {
  for (int i = 0; i < count; ++i) {
    log.Frame(i % 2).Pass(29);
  }
  return log;
}

TEST(QueueRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"all buffers held, and a wait times out", "BUF-STARVE error",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 6).Because().Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Because().Here().Ok(Wait(kEvent, kBuffer + 1)).Pass(500);
         log.Because().Fails("TIMEOUT", Wait(kEvent, 0)).CloseAll();
       }},
      {"all buffers held for ten frames, which are missing then", "BUF-STARVE error",
       [](TypedLog& log) {
         Frames(log.StartStream(1), 0);
         for (int i = 0; i < 4; ++i) {
           log.Ok(Wait(kEvent, kBuffer))
               .Ok(BufferInfo(kDS, kBuffer, "FRAMEID", std::to_string(i), "INFO_DATATYPE_UINT64"));
           log.Ok(Queue(kDS, kBuffer)).Pass(30);
         }
         log.Here()
             .Ok(Wait(kEvent, kBuffer))
             .Ok(BufferInfo(kDS, kBuffer, "FRAMEID", "4", "INFO_DATATYPE_UINT64"));
         log.Pass(300).Ok(Queue(kDS, kBuffer)).Pass(30).Ok(Wait(kEvent, kBuffer));
         log.Because().Ok(BufferInfo(kDS, kBuffer, "FRAMEID", "14", "INFO_DATATYPE_UINT64"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"all buffers held for ten frames, and nobody asks", "BUF-STARVE warning",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 6).Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Here().Ok(Wait(kEvent, kBuffer + 1)).Pass(300).Ok(Queue(kDS, kBuffer)).Pass(30);
         log.Ok(Wait(kEvent, kBuffer)).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"all buffers held for less than two frames", "",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 6).Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Ok(Wait(kEvent, kBuffer + 1)).Pass(40).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"all frames that were wanted", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Pass(30).Ok(Wait(kEvent, kBuffer + 1));
         log.Pass(300).CloseAll();
       }},
      {"waits time out with buffers in the queue", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Fails("TIMEOUT", Wait(kEvent, 0, 30)).Pass(30).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"queued twice", "BUF-REQUEUE error",
       [](TypedLog& log) {
         log.OpenStream(1).Because().Ok(Queue(kDS, kBuffer));
         log.Here().Fails("RESOURCE_IN_USE", Queue(kDS, kBuffer)).CloseStream().CloseAll();
       }},
      {"queued again when it's back", "",
       [](TypedLog& log) {
         log.OpenStream(1).Ok(Queue(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD"));
         log.Ok(Queue(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"asked when it's queued again, and refused", "BUF-READ-QUEUED error",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Because().Ok(Queue(kDS, kBuffer)).Here();
         log.Fails("ACCESS_DENIED", BufferInfo(kDS, kBuffer, "WIDTH", "NULL")).CloseAll();
       }},
      {"asked when it's queued again, and answered", "BUF-READ-QUEUED warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Because().Ok(Queue(kDS, kBuffer)).Here();
         log.Ok(BufferInfo(kDS, kBuffer, "WIDTH", "640")).CloseAll();
       }},
      {"asked for what is the buffer's own", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Ok(BufferInfo(kDS, kBuffer, "WIDTH", "640"));
         log.Ok(Queue(kDS, kBuffer)).Ok(BufferInfo(kDS, kBuffer, "SIZE", "256")).CloseAll();
       }},
      {"revoked while it's queued", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.OpenStream(1).Because().Ok(Queue(kDS, kBuffer));
         log.Here().Fails("-1022", Revoke(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"revoked while the stream runs", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Fails("-1022", Revoke(kDS, kBuffer)).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"refused though it's in no queue", "BUF-REVOKE warning",
       [](TypedLog& log) {
         log.StartStream(1).Frame(0).StopStream();
         log.Here().Fails("ERROR", Revoke(kDS, kBuffer)).CloseAll();
       }},
      {"flushed while it runs", "BUF-DROP info",
       [](TypedLog& log) {
         log.StartStream(1).Frame(0).Here().Ok(EventCall("EventFlush", kEvent)).CloseAll();
       }},
      {"flushed when it's stopped", "",
       [](TypedLog& log) {
         log.StartStream(1).Frame(0).StopStream().Ok(EventCall("EventFlush", kEvent)).CloseAll();
       }},
      {"nothing is certain behind a flush of the output", "",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Ok(Flush(kDS, "OUTPUT_DISCARD"));
         log.Ok(BufferInfo(kDS, kBuffer, "WIDTH", "640")).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
