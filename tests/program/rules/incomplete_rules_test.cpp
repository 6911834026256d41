// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

TEST(IncompleteRules, FindWhatTheyAreFor) {
  ExpectFindings({
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
      {"fewer bytes than the frame has", "BUF-INCOMPLETE warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "SIZE_FILLED", "512")).Here();
         log.Ok(BufferInfo(kDS, kBuffer, "(Unknown BUFFER_INFO_CMD: 27)", "1024"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"as many bytes as the frame has", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "(Unknown BUFFER_INFO_CMD: 27)", "1024"));
         log.Ok(BufferInfo(kDS, kBuffer, "SIZE_FILLED", "1024"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"the sizes of two frames", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "SIZE_FILLED", "512")).Ok(Queue(kDS, kBuffer)).Pass(30);
         log.Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "(Unknown BUFFER_INFO_CMD: 27)", "1024"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
  });
}

// A frame counts once, whatever says that it's incomplete.
TEST(IncompleteRules, CountFrames) {
  TypedLog log;
  log.StartStream(2);
  for (int i = 0; i < 3; ++i) {
    log.Ok(Wait(kEvent, kBuffer)).Ok(BufferInfo(kDS, kBuffer, "SIZE_FILLED", "512"));
    log.Ok(BufferInfo(kDS, kBuffer, "(Unknown BUFFER_INFO_CMD: 27)", "1024"));
    log.Ok(BufferInfo(kDS, kBuffer, "IS_INCOMPLETE", "1", "INFO_DATATYPE_BOOL8"));
    log.Ok(Queue(kDS, kBuffer)).Pass(30);
  }
  const auto report = nlohmann::json::parse(CheckedAsJson(log.CloseAll()));
  ASSERT_EQ(report["findings"].size(), 1U);
  EXPECT_EQ(report["findings"][0]["count"], 3);
  EXPECT_EQ(report["findings"][0]["message"],
            "DS1 \"Stream0\" delivered incomplete frames, up to 3 in a row: likely data is lost on "
            "the way.");
}

}  // namespace
}  // namespace vextrel_test
