// SPDX-License-Identifier: MIT
// The call logs of whole sessions, every byte of them.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "camera_xml.h"
#include "comparison.h"
#include "support/files.h"
#include "support/system.h"
#include "traced_run.h"

namespace vextrel_test {
namespace {

// A frame takes longer than the consumer is ever kept from running, so a buffer always waits for
// the next one and no frame number is skipped.
constexpr const char* kSlow = "5";

[[nodiscard]] std::string Dump(std::string_view bytes) {
  constexpr std::size_t itemsPerLine = 16;
  std::string dump;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    char item[sizeof "0x00"];
    std::snprintf(item, sizeof item, "0x%02x", unsigned{static_cast<std::uint8_t>(bytes[index])});
    dump += item;
    if (index + 1 < bytes.size()) {
      dump += ',';
    }
    if (index % itemsPerLine == itemsPerLine - 1) {
      dump += '\n';
    }
  }
  return dump;
}

[[nodiscard]] std::string Hex(std::size_t number) {
  char digits[2 * sizeof number + 1];
  std::snprintf(digits, sizeof digits, "%zx", number);
  return digits;
}

void ExpectLog(const char* goldenLog, const TracedRun& run, Edition edition = Edition::Plain) {
  EXPECT_EQ(run.outcome.exitCode, 0);
  // The default log channel may have written there, but not the consumer.
  EXPECT_EQ(run.outcome.err.find("grab: "), std::string::npos) << run.outcome.err;
  const std::string expected = ReadFile(std::filesystem::path(GOLDEN_FOLDER) / goldenLog);
  ASSERT_NE(expected, "") << "no file " << goldenLog;
  const std::string camera = CameraPath(edition);
  const std::string xml = ReadCameraXml(camera);
  const Texts texts = {{"PRODUCER", camera},
                       {"XML", xml},
                       {"XML DUMP", Dump(xml)},
                       {"XML SIZE", std::to_string(xml.size())},
                       {"XML SIZE IN HEX", Hex(xml.size())}};
  EXPECT_EQ(FindDifference(expected, run.log, texts), "") << goldenLog;
}

TEST(GoldenTest, GrabbingTenFramesIsLoggedToTheLetter) {
  ExpectLog("grab.log", Trace("grab", {"--frames", "10", "--mix-buffers"}, kSlow));
}

TEST(GoldenTest, ClosingBadlyIsLoggedAndReportedToTheLetter) {
  // The consumer leaks what it leaves open on purpose.
  SetVariable("LSAN_OPTIONS", "detect_leaks=0");
  ExpectLog("misuse.log", Trace("misuse", {"--frames", "3", "--misuse"}, kSlow));
}

TEST(GoldenTest, GrabbingPartsAndChunksIsLoggedToTheLetter) {
  ExpectLog("grab_gentl_1_5.log",
            Trace("grab_gentl_1_5", {"--genTL", "1.5", "--frames", "2", "--mix-buffers"}, kSlow,
                  Edition::Extended),
            Edition::Extended);
}

}  // namespace
}  // namespace vextrel_test
