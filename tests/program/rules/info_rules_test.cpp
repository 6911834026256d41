// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

// Each is asked of a frame, three times: often enough for any rule.
TypedLog& Ask(TypedLog& log, std::string_view result, const std::string& question) {
  log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
  log.Fails(result, question).Ok(LastError("no")).Fails(result, question);
  return log.Fails(result, question).Ok(Queue(kDS, kBuffer)).CloseAll();
}

std::string Question(std::string_view command) {
  return BufferInfo(kDS, kBuffer, command, "NULL");
}

TEST(InfoRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"too small three times", "INFO-SMALL warning",
       [](TypedLog& log) { Ask(log, "-1016", Question("(Unknown BUFFER_INFO_CMD: 25)")); }},
      {"too small once", "",
       [](TypedLog& log) {
         log.OpenStream(1).Fails("-1016", StreamInfo(kDS, "ID", "NULL"));
         log.Ok(StreamInfo(kDS, "ID", "'S'")).CloseAll();
       }},
      {"a size of two gigabytes", "INFO-UNINIT warning",
       [](TypedLog& log) {
         std::string question = StreamInfo(kDS, "ID", "NULL");
         question.replace(question.find("iSize=8"), 7, "iSize=2147483648");
         log.OpenStream(1).Here().Fails("INVALID_PARAMETER", question).CloseAll();
       }},
      {"an optional value that isn't there", "INFO-OPTIONAL info",
       [](TypedLog& log) { Ask(log, "NOT_AVAILABLE", Question("YPADDING")); }},
      {"a value that is there", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Ok(BufferInfo(kDS, kBuffer, "YPADDING", "0"));
         log.Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"the width of a frame with parts", "INFO-PART warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "PAYLOADTYPE", "10")).Here();
         log.Fails("NO_DATA", Question("WIDTH")).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"the width of an image", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "PAYLOADTYPE", "1"));
         log.Fails("NO_DATA", Question("WIDTH")).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"no base address", "P-CONF warning",
       [](TypedLog& log) { Ask(log, "NOT_IMPLEMENTED", Question("BASE")); }},
      {"a parameter is blamed for a command", "P-CONF warning",
       [](TypedLog& log) { Ask(log, "INVALID_PARAMETER", Question("YPADDING")); }},
      {"a parameter is blamed for an event", "P-CONF warning",
       [](TypedLog& log) {
         log.OpenDevice().Here().Fails("INVALID_PARAMETER", Register(kTL, "ERROR", 0)).CloseAll();
       }},
      {"an event that isn't there", "",
       [](TypedLog& log) {
         log.OpenDevice().Fails("NOT_IMPLEMENTED", Register(kTL, "ERROR", 0)).CloseAll();
       }},
      {"a frame id of 32 bits as a size", "P-CONF warning",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer)).Here();
         log.Ok(BufferInfo(kDS, kBuffer, "FRAMEID", "1")).Ok(Queue(kDS, kBuffer)).CloseAll();
       }},
      {"frame ids go backward", "P-CONF warning",
       [](TypedLog& log) {
         log.StartStream(2);
         log.Ok(Wait(kEvent, kBuffer)).Because();
         log.Ok(BufferInfo(kDS, kBuffer, "FRAMEID", "9", "INFO_DATATYPE_UINT64"));
         log.Ok(Queue(kDS, kBuffer)).Pass(30).Ok(Wait(kEvent, kBuffer + 1)).Here();
         log.Ok(BufferInfo(kDS, kBuffer + 1, "FRAMEID", "8", "INFO_DATATYPE_UINT64"));
         log.Ok(Queue(kDS, kBuffer + 1)).CloseAll();
       }},
      {"frame ids of 16 bits start again", "",
       [](TypedLog& log) {
         log.StartStream(2).Ok(Wait(kEvent, kBuffer));
         log.Ok(BufferInfo(kDS, kBuffer, "FRAMEID", "65535", "INFO_DATATYPE_UINT64"));
         log.Ok(Queue(kDS, kBuffer)).Pass(30).Ok(Wait(kEvent, kBuffer + 1));
         log.Ok(BufferInfo(kDS, kBuffer + 1, "FRAMEID", "1", "INFO_DATATYPE_UINT64"));
         log.Ok(Queue(kDS, kBuffer + 1)).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
