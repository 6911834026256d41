// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

// A stacked question for two values.
std::string Stacked(std::string_view first, std::string_view value, std::string_view second,
                    std::string_view other) {
  const auto info = [](int index, std::string_view command, std::string_view answer) {
    const std::string result = answer == "NULL" ? "NOT_AVAILABLE" : "SUCCESS";
    return "Info[" + std::to_string(index) + "]=(iCmd=BUFFER_INFO_" + std::string(command) +
           ", iType=INFO_DATATYPE_SIZET, Buffer=" + std::string(answer) +
           ", iSize=8, iResult=GC_ERR_" + result + ");";
  };
  return "DSGetBufferInfoStacked(hDS=0x0000000000000D50, hBuffer=0x0000000000000B00, "
         "0x000000000000F000->(Infos=" +
         info(0, first, value) + info(1, second, other) + "), iNumInfos=2)";
}

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
      {"an incomplete frame, asked among others", "BUF-INCOMPLETE warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Ok(Stacked("FRAMEID", "7", "IS_INCOMPLETE", "1")).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"a complete frame, asked among others", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(Stacked("FRAMEID", "7", "IS_INCOMPLETE", "0")).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"both sizes in one call", "BUF-INCOMPLETE warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Ok(Stacked("DATA_SIZE", "1024", "SIZE_FILLED", "512")).Ok(Queue(kDS, kBuffer));
         log.CloseAll();
       }},
      {"an answer among others that is refused", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(Stacked("FRAMEID", "7", "IS_INCOMPLETE", "NULL")).Ok(Queue(kDS, kBuffer));
         log.CloseAll();
       }},
      {"a buffer that was queued before it was asked", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Ok(Queue(kDS, kBuffer));
         log.Ok(Stacked("FRAMEID", "7", "IS_INCOMPLETE", "1")).CloseAll();
       }},
      {"the size of an answer", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "IS_INCOMPLETE", "NULL", "INFO_DATATYPE_BOOL8"));
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
            "3 frames of DS1 \"Stream0\" came incomplete, up to 3 in a row: likely data is lost on "
            "the way.");
}

}  // namespace
}  // namespace vextrel_test
