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

TEST(StarveRules, FindWhatTheyAreFor) {
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
  });
}

}  // namespace
}  // namespace vextrel_test
