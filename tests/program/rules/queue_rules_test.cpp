// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(QueueRules, FindWhatTheyAreFor) {
  ExpectFindings({
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
       },
       "while it's queued, and there was no DSFlushQueue(ACQ_QUEUE_ALL_DISCARD) for its stream:"},
      {"queued again after the flush, and revoked", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.StartStream(1).Frame(0).Pass(20).Ok(Stop(kDS)).Because();
         log.Ok(Flush(kDS, "ALL_DISCARD")).Because().Ok(Queue(kDS, kBuffer)).Here();
         log.Fails("-1022", Revoke(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD")).CloseStream();
         log.CloseDevice();
       },
       "while it's queued, since it was queued again after DSFlushQueue(ACQ_QUEUE_ALL_DISCARD):"},
      {"revoked when it was moved to the output", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.OpenStream(1).Because().Ok(Queue(kDS, kBuffer)).Because();
         log.Ok(Flush(kDS, "INPUT_TO_OUTPUT")).Here().Fails("-1022", Revoke(kDS, kBuffer));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       },
       "while it's queued, and DSFlushQueue(ACQ_QUEUE_INPUT_TO_OUTPUT) didn't take it out:"},
      {"revoked when a flush has queued it", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.OpenStream(1).Because().Ok(Flush(kDS, "UNQUEUED_TO_INPUT")).Here();
         log.Fails("-1022", Revoke(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       },
       "while it's queued, and DSFlushQueue(ACQ_QUEUE_UNQUEUED_TO_INPUT) put it there:"},
      {"revoked when the flush has failed", "BUF-REVOKE error",
       [](TypedLog& log) {
         log.OpenStream(1).Because().Ok(Queue(kDS, kBuffer)).Because();
         log.Fails("BUSY", Flush(kDS, "ALL_DISCARD")).Here().Fails("-1022", Revoke(kDS, kBuffer));
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       },
       "while it's queued, since DSFlushQueue(ACQ_QUEUE_ALL_DISCARD) failed with GC_ERR_BUSY:"},
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
      {"nothing is certain after a flush of the output", "",
       [](TypedLog& log) {
         log.OpenStream(1).QueueAll().Ok(Flush(kDS, "OUTPUT_DISCARD"));
         log.Ok(BufferInfo(kDS, kBuffer, "WIDTH", "640")).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
