// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

// Frames each 30 ms, with their ids.
TypedLog& Frames(TypedLog& log, int first, int count) {
  for (int i = first; i < first + count; ++i) {
    log.FrameSaying(i % 2, "FRAMEID", std::to_string(i), "INFO_DATATYPE_UINT64").Pass(30);
  }
  return log;
}

TEST(TimeRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"frames in order", "", [](TypedLog& log) { Frames(log.StartStream(2), 0, 20).CloseAll(); }},
      {"two frames are missing", "T-GAP warning",
       [](TypedLog& log) { Frames(Frames(log.StartStream(2), 0, 20), 22, 5).CloseAll(); }},
      {"a pause of 500 ms", "T-STALL warning",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 0, 20).Pass(470).Here();
         Frames(log, 20, 3).CloseAll();
       }},
      {"a pause of 150 ms", "",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 0, 20).Pass(120);
         Frames(log, 20, 3).CloseAll();
       }},
      {"each buffer is held for two frames", "T-HOLD warning",
       [](TypedLog& log) {
         log.StartStream(4);
         for (int i = 0; i < 20; ++i) {
           log.Ok(Wait(kEvent, kBuffer + static_cast<std::uint64_t>(i % 4)));
           if (i >= 2) {
             log.Ok(Queue(kDS, kBuffer + static_cast<std::uint64_t>((i - 2) % 4)));
           }
           log.Pass(30);
         }
         log.CloseAll();
       }},
      {"queueing takes 150 ms", "T-SLOW warning",
       [](TypedLog& log) {
         log.OpenStream(1);
         // The line of the call follows its two timing lines.
         log.Line("Call 1 enters DSQueueBuffer(0x0000000000000D50)", "DEBUG").Pass(150);
         log.Line("Call 1 leaves DSQueueBuffer after 150000.000 us", "DEBUG").Here();
         log.Ok(Queue(kDS, kBuffer)).Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"queueing takes 50 ms", "",
       [](TypedLog& log) {
         log.OpenStream(1).Timed(Queue(kDS, kBuffer), "50000.000");
         log.Ok(Flush(kDS, "ALL_DISCARD")).CloseAll();
       }},
      {"the producer counts lost frames", "T-COUNTERS warning",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 0, 5).Here().Ok(StreamInfo(kDS, "NUM_UNDERRUN", "3"));
         log.CloseAll();
       }},
      {"the producer counts none", "",
       [](TypedLog& log) {
         Frames(log.StartStream(2), 0, 5).Ok(StreamInfo(kDS, "NUM_UNDERRUN", "0"));
         log.Ok(StreamInfo(kDS, "NUM_DELIVERED", "5")).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
