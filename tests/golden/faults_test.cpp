// SPDX-License-Identifier: MIT
// Faults on demand, traced for real, and what the rules make of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program/small_log.h"
#include "support/files.h"
#include "support/process.h"
#include "support/system.h"

namespace vextrel_test {
namespace {

namespace fs = std::filesystem;

enum class Timing { Matters, DependsOnTheMachine };

struct Traced {
  Timing timing = Timing::DependsOnTheMachine;
  const char* rate = "100";  // frames per second
  bool hasTimingLines = false;
};

// "RULE severity" of each finding but the one that every session of the consumer has: it's refused
// one device before it opens another.
std::string FindingsOf(const std::string& name, const std::vector<std::string>& options,
                       const Traced& traced = {}) {
  const fs::path folder = fs::path(SCRATCH_FOLDER) / name;
  fs::remove_all(folder);
  fs::create_directories(folder);
  const fs::path configuration = folder / "log.properties";
  const fs::path log = folder / "calls.log";
  WriteFile(configuration,
            LogConfig{.file = log.generic_string(),
                      .rootCategory = traced.hasTimingLines ? "DEBUG, file" : "INFO, file",
                      .pattern = "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n"}
                .Text());
  const auto native = [](fs::path path) { return path.make_preferred().string(); };
  SetVariable("GENICAM_GENTL64_PATH", native(VEXTREL_EXTENDED_MODULE).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER", native(SIMULATED_CAMERA_EXTENDED).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", native(configuration).c_str());
  SetVariable("VEXTREL_CAMERA_RATE", traced.rate);
  SetVariable("VEXTREL_CAMERA_WIDTH", "32");
  SetVariable("VEXTREL_CAMERA_HEIGHT", "32");
  std::vector<std::string> arguments = {"--frames", "12"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const Outcome outcome = RunProgram(GRAB_PROGRAM, arguments, folder);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  const ProgramResult result = RunVextrel({"check", "--json", log.generic_string()});
  EXPECT_LE(result.status, 1) << result.errors;
  std::string found;
  const nlohmann::json report = nlohmann::json::parse(result.output);
  for (const nlohmann::json& each : report["findings"]) {
    const std::string text =
        each["rule"].get<std::string>() + " " + each["severity"].get<std::string>();
    const bool isOfMachine = traced.timing == Timing::DependsOnTheMachine && text.starts_with("T-");
    if (text != "DEV-DENIED info" && !isOfMachine) {
      found += (found.empty() ? "" : ", ") + text;
    }
  }
  return found;
}

TEST(Faults, RaiseTheirRule) {
  struct Case {
    const char* fault;
    const char* expected;
  };
  constexpr Case cases[] = {
      {"announce-ever-more", "BUF-LEAK warning"},
      {"ask-on-other-thread", "ERR-STALE info"},
      {"ask-optional", "INFO-OPTIONAL info"},
      {"ask-too-small", "INFO-SMALL warning"},
      {"close-nothing", "HND-NULL error"},
      {"close-twice", "HND-AFTER error"},
      {"close-while-running", "MOD-CLOSE-LIVE error"},
      {"count-unlisted", "LIST-FIRST error"},
      {"flush-while-running", "BUF-DROP info"},
      {"ignore-errors", "ERR-IGNORED warning"},
      {"index-behind-end", "LIST-INDEX warning"},
      {"init-twice", "LIB-PAIR warning"},
      {"keep-all-buffers", "BUF-STARVE error"},
      {"kill-without-wait", "EVT-KILL warning"},
      {"leave-buffers", "MOD-ORDER info"},
      {"leave-open", "MOD-LEAK warning"},
      {"leave-size-unset", "INFO-UNINIT warning"},
      {"mix-buffers", "BUF-MIX warning"},
      {"open-twice", "MOD-INUSE error"},
      {"queue-late", "ACQ-ORDER info"},
      {"queue-nothing", "BUF-FEW error"},
      {"queue-twice", "BUF-REQUEUE error"},
      {"read-queued", "BUF-READ-QUEUED warning"},
      {"register-twice", "EVT-DUP error"},
      {"revoke-queued", "BUF-REVOKE error"},
      {"share-memory", "BUF-DUP warning"},
      {"start-twice", "ACQ-PAIR warning"},
      {"start-with-small-buffer", "BUF-SIZE error"},
      {"start-wrongly", "ACQ-START-FAIL error"},
      {"stop-twice", "ACQ-PAIR warning"},
      {"unknown-handle", "HND-UNKNOWN warning"},
      {"update-briefly", "LIST-TIMEOUT warning"},
      {"update-while-reading", "LIST-RACE warning"},
      {"use-closed-library", "LIB-INIT error"},
      {"wait-for-nothing", "EVT-STORM warning"},
      {"write-read-only", "DEV-RO-WRITE error"},
      {"wrong-kind", "HND-TYPE error"},
  };
  EXPECT_EQ(FindingsOf("none", {}), "");
  EXPECT_EQ(FindingsOf("newer", {"--genTL", "1.5"}), "");
  for (const Case& each : cases) {
    EXPECT_EQ(FindingsOf(each.fault, {"--fault", each.fault}), each.expected) << each.fault;
  }
  SetVariable("VEXTREL_CAMERA_LOSE", "5");
  EXPECT_EQ(FindingsOf("lose", {}, {.timing = Timing::Matters}), "T-GAP warning");
  SetVariable("VEXTREL_CAMERA_LOSE", nullptr);
  SetVariable("VEXTREL_CAMERA_INCOMPLETE", "5");
  EXPECT_EQ(FindingsOf("incomplete", {}), "BUF-INCOMPLETE warning");
  SetVariable("VEXTREL_CAMERA_INCOMPLETE", nullptr);
}

TEST(Faults, RaiseTheirRuleByTheTimesOfCalls) {
  const auto findingsOf = [](const char* fault, const Traced& traced) {
    return FindingsOf(fault, {"--fault", fault}, traced);
  };
  EXPECT_EQ(findingsOf("wait-briefly", {.rate = "40"}), "EVT-SHORT info");
  // The same waits are long enough for a faster camera.
  EXPECT_EQ(findingsOf("wait-briefly", {.rate = "400"}), "");
  EXPECT_EQ(FindingsOf("timed", {}, {.hasTimingLines = true}), "");
  EXPECT_EQ(findingsOf("wait-under-lock", {.timing = Timing::Matters, .hasTimingLines = true}),
            "T-SERIAL warning");
  EXPECT_EQ(findingsOf("end-while-waiting", {.hasTimingLines = true}), "END-INFLIGHT info");
  // Without timing lines, nobody knows of the wait.
  EXPECT_EQ(findingsOf("end-while-waiting", {}), "MOD-LEAK warning");
}

}  // namespace
}  // namespace vextrel_test
