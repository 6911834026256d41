// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

constexpr const char* kNanoseconds = "(Unknown BUFFER_INFO_CMD: 28)";

std::string DevInfo(std::string_view command, std::string_view value) {
  return "DevGetInfo(hDev=0x00000001000C0DE0, iID=" + std::string(command) +
         ", 0x000000000000F010->(iType=INFO_DATATYPE_UINT64) 0x000000000000F018->(Buffer=" +
         std::string(value) + "), 0x000000000000F020->(iSize=8))";
}

// So many frames from that number on, each so many ticks of the camera's clock after the one
// before and so many ms on the computer's. The stamps begin close below the end of 32 bits.
TypedLog& Frames(TypedLog& log, std::string_view command, std::uint32_t ticks, int milliseconds,
                 int count, int first = 0) {
  for (int i = first; i < first + count; ++i) {
    const std::uint32_t stamp = 0xFFFFFF00U + ticks * static_cast<std::uint32_t>(i);
    log.FrameSaying(i % 4, command, std::to_string(stamp), "INFO_DATATYPE_UINT64");
    log.Pass(milliseconds);
  }
  return log;
}

TEST(LagRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"the camera takes 33 frames a second, and the application 20", "T-LAG warning",
       [](TypedLog& log) {
         Frames(log.StartStream(4), kNanoseconds, 30'000'000, 50, 40).CloseAll();
       }},
      {"the application is as fast as the camera", "",
       [](TypedLog& log) {
         Frames(log.StartStream(4), kNanoseconds, 30'000'000, 30, 40).CloseAll();
       }},
      {"one frame is late, and those after it make up for it", "",
       [](TypedLog& log) {
         log.StartStream(4);
         Frames(log, kNanoseconds, 30'000'000, 30, 20);
         // Eight frames wait meanwhile.
         Frames(log.Pass(240), kNanoseconds, 30'000'000, 1, 8, 20);
         Frames(log, kNanoseconds, 30'000'000, 30, 10, 28).CloseAll();
       }},
      {"in ticks of the camera's clock", "T-LAG warning",
       [](TypedLog& log) {
         log.StartStream(4).Ok(DevInfo("(Unknown DEVICE_INFO_CMD: 9)", "1000"));
         Frames(log, "TIMESTAMP", 30, 50, 40).CloseAll();
       }},
      {"in ticks of an unknown length", "",
       [](TypedLog& log) { Frames(log.StartStream(4), "TIMESTAMP", 30, 50, 40).CloseAll(); }},
      {"the camera's clock is set back", "",
       [](TypedLog& log) {
         log.StartStream(4);
         Frames(log, kNanoseconds, 30'000'000, 30, 20, 100);
         Frames(log, kNanoseconds, 30'000'000, 30, 20).CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
