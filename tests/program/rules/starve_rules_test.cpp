// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(StarveRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"all buffers held, and a wait times out", "BUF-STARVE error",
       [](TypedLog& log) {
         log.StartStream(2).Frames(6).Because().Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Because().Here().Ok(Wait(kEvent, kBuffer + 1)).Pass(500);
         log.Because().Fails("TIMEOUT", Wait(kEvent, 0)).CloseAll();
       }},
      {"all buffers held for ten frames, which are missing then", "BUF-STARVE error",
       [](TypedLog& log) {
         log.StartStream(1);
         for (int i = 0; i < 4; ++i) {
           log.FrameSaying(0, "FRAMEID", std::to_string(i), "INFO_DATATYPE_UINT64").Pass(30);
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
         log.StartStream(2).Frames(6).Ok(Wait(kEvent, kBuffer)).Pass(30);
         log.Here().Ok(Wait(kEvent, kBuffer + 1)).Pass(300).Ok(Queue(kDS, kBuffer)).Pass(30);
         log.Ok(Wait(kEvent, kBuffer)).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"all buffers held for less than two frames", "",
       [](TypedLog& log) {
         log.StartStream(2).Frames(6).Ok(Wait(kEvent, kBuffer)).Pass(30);
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
