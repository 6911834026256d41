// SPDX-License-Identifier: MIT
// Faults on demand, traced for real, and what the rules make of them. Each has a close relative,
// which raises nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
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

struct Setting {
  const char* variable = nullptr;
  const char* value = nullptr;
};

struct Traced {
  Timing timing = Timing::DependsOnTheMachine;
  const char* rate = "100";  // frames per second
  const char* frames = "4";
  bool hasTimingLines = false;
  Setting camera = {};
  int exitCode = 0;
  const char* pattern = "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n";
  const char* target = SIMULATED_CAMERA_EXTENDED;
};

// The running test's own: others run at the same time.
fs::path FolderOf(const std::string& name) {
  const fs::path folder = fs::path(SCRATCH_FOLDER) /
                          ::testing::UnitTest::GetInstance()->current_test_info()->name() / name;
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

// Returns the log's path.
std::string Trace(const std::string& name, const std::vector<std::string>& options,
                  const Traced& traced = {}) {
  const fs::path folder = FolderOf(name);
  const fs::path configuration = folder / "log.properties";
  const fs::path log = folder / "calls.log";
  WriteFile(configuration,
            LogConfig{.file = log.generic_string(),
                      .rootCategory = traced.hasTimingLines ? "DEBUG, file" : "INFO, file",
                      .pattern = traced.pattern}
                .Text());
  const auto native = [](fs::path path) { return path.make_preferred().string(); };
  SetVariable("GENICAM_GENTL64_PATH", native(VEXTREL_EXTENDED_MODULE).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_PRODUCER", native(traced.target).c_str());
  SetVariable("GENICAM_GENTL64_VEXTREL_LOG_CONFIG", native(configuration).c_str());
  SetVariable("VEXTREL_CAMERA_RATE", traced.rate);
  SetVariable("VEXTREL_CAMERA_WIDTH", "32");
  SetVariable("VEXTREL_CAMERA_HEIGHT", "32");
  if (traced.camera.variable != nullptr) {
    SetVariable(traced.camera.variable, traced.camera.value);
  }
  std::vector<std::string> arguments = {"--frames", traced.frames};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const Outcome outcome = RunProgram(GRAB_PROGRAM, arguments, folder);
  EXPECT_EQ(outcome.exitCode, traced.exitCode) << name << ": " << outcome.err;
  if (traced.camera.variable != nullptr) {
    SetVariable(traced.camera.variable, nullptr);
  }
  return log.generic_string();
}

// "RULE severity" of each finding.
std::vector<std::string> AllFindingsIn(const std::string& log) {
  const ProgramResult result = RunVextrel({"check", "--json", log});
  EXPECT_LE(result.status, 1) << result.errors;
  std::vector<std::string> found;
  const nlohmann::json report = nlohmann::json::parse(result.output);
  for (const nlohmann::json& each : report["findings"]) {
    found.push_back(each["rule"].get<std::string>() + " " + each["severity"].get<std::string>());
  }
  return found;
}

// Of each finding but the one that every session of the consumer has: it's refused one device
// before it opens another.
std::string FindingsIn(const std::string& log, Timing timing = Timing::DependsOnTheMachine) {
  std::string found;
  for (const std::string& each : AllFindingsIn(log)) {
    const bool isOfMachine = timing == Timing::DependsOnTheMachine && each.starts_with("T-");
    if (each != "DEV-DENIED info" && !isOfMachine) {
      found += (found.empty() ? "" : ", ") + each;
    }
  }
  return found;
}

std::string FindingsOf(const std::string& name, const std::vector<std::string>& options,
                       const Traced& traced = {}) {
  return FindingsIn(Trace(name, options, traced), traced.timing);
}

constexpr std::string_view kMended;  // the same fault, mended
constexpr std::string_view kPlain = "no fault at all";
constexpr std::string_view kFaster = "the same with a faster camera";

struct Case {
  const char* fault;
  const char* expected;
  Traced traced = {};
  // What raises nothing: itself mended or with another camera, a session without a fault, or
  // another fault mended.
  std::string_view relative = kMended;
};

constexpr Traced WithQuirk(const char* quirk, const char* frames = "4", int exitCode = 0) {
  return {.frames = frames, .camera = {"VEXTREL_CAMERA_QUIRK", quirk}, .exitCode = exitCode};
}

constexpr Traced kWithFive{.camera = {"VEXTREL_CAMERA_DEVICES", "5"}};
constexpr Traced kWithTimingLines{.hasTimingLines = true};
constexpr Traced kWaitingForWaits{.timing = Timing::Matters,
                                  .hasTimingLines = true,
                                  .camera = {"VEXTREL_CAMERA_QUIRK", "waits-for-waits"}};
constexpr Traced kTimed{.timing = Timing::Matters, .rate = "50", .frames = "3"};

// Of all that `grab --fault list` names.
constexpr Case kCases[] = {
    {"announce-ever-more", "BUF-LEAK warning"},
    {"ask-counters", "T-COUNTERS warning", kTimed},
    {"ask-for-one-image", "INFO-PART warning", WithQuirk("strict-parts", "2")},
    {"ask-on-other-thread", "ERR-STALE info"},
    {"ask-optional", "INFO-OPTIONAL info"},
    {"ask-too-small", "INFO-SMALL warning"},
    {"ask-unplugged", "DEV-LOST warning", WithQuirk("unplugged", "10")},
    {"close-nothing", "HND-NULL error", {}, "open-twice"},
    {"close-twice", "HND-AFTER error"},
    {"close-while-running", "MOD-CLOSE-LIVE error", {}, kPlain},
    {"count-unlisted", "LIST-FIRST error"},
    {"end-while-waiting", "END-INFLIGHT info", kWithTimingLines},
    {"flush-while-running", "BUF-DROP info"},
    {"hold-buffers", "T-HOLD warning", {.timing = Timing::Matters, .frames = "3"}},
    {"ignore-errors", "ERR-IGNORED warning"},
    {"index-behind-end", "LIST-INDEX warning"},
    {"init-twice", "LIB-PAIR warning", {}, "use-closed-library"},
    {"keep-all-buffers", "BUF-STARVE error"},
    {"kill-without-wait", "EVT-KILL warning", {}, "end-while-waiting"},
    {"lag-behind", "T-LAG warning", kTimed},
    {"leave-buffers", "MOD-ORDER info", {}, kPlain},
    {"leave-open", "MOD-LEAK warning", {}, kPlain},
    {"leave-size-unset", "INFO-UNINIT warning"},
    {"mix-buffers", "BUF-MIX warning"},
    {"open-twice", "MOD-INUSE error"},
    {"open-unlisted", "LIST-OPEN warning", WithQuirk("needs-list")},
    {"poll-event", "EVT-POLL warning"},
    {"poll-register", "PORT-POLL info"},
    {"queue-foreign", "BUF-FOREIGN error", kWithFive},
    {"queue-late", "ACQ-ORDER info"},
    {"queue-nothing", "BUF-FEW error", {}, "queue-late"},
    {"queue-revoked", "HND-AFTER error"},
    {"queue-twice", "BUF-REQUEUE error"},
    {"read-closed", "HND-AFTER error"},
    {"read-queued", "BUF-READ-QUEUED warning"},
    {"register-twice", "EVT-DUP error", {}, "wait-unregistered"},
    {"revoke-queued", "BUF-REVOKE error"},
    {"share-memory", "BUF-DUP warning"},
    {"start-twice", "ACQ-PAIR warning"},
    {"start-with-small-buffer", "BUF-SIZE error"},
    {"start-wrongly", "ACQ-START-FAIL error", {}, "stop-at-once"},
    {"stop-at-once", "ACQ-RACE info"},
    {"stop-twice", "ACQ-PAIR warning", {}, "start-twice"},
    {"stop-while-waiting", "EVT-CLOSE-WAIT error", kWaitingForWaits},
    {"unknown-handle", "HND-UNKNOWN warning", {}, "wrong-kind"},
    {"update-briefly", "LIST-TIMEOUT warning"},
    {"update-while-reading", "LIST-RACE warning"},
    {"use-closed-library", "LIB-INIT error"},
    {"use-second-interface", "LOG-REPORT info", kWithFive},
    {"wait-briefly", "EVT-SHORT info", {.rate = "20", .frames = "2"}, kFaster},
    {"wait-for-nothing", "EVT-STORM warning"},
    // The event is open when its stream is closed, too.
    {"wait-forever", "MOD-ORDER info, EVT-INF info"},
    {"wait-under-lock", "T-SERIAL warning", {.timing = Timing::Matters, .hasTimingLines = true}},
    {"wait-unregistered", "HND-AFTER error"},
    {"write-read-only", "DEV-RO-WRITE error"},
    {"wrong-kind", "HND-TYPE error"},
};

// Faults of the camera, and what it does when it does it less, or not at all.
struct CameraCase {
  const char* value;
  const char* expected;
  Traced traced;
  const char* less = nullptr;
};

constexpr Traced With(const char* variable, const char* frames = "4") {
  return {.timing = Timing::Matters,
          .rate = "50",
          .frames = frames,
          .hasTimingLines = true,
          .camera = {variable, nullptr}};
}

constexpr CameraCase kCameraCases[] = {
    {"5", "T-GAP warning", With("VEXTREL_CAMERA_LOSE", "12")},
    {"5", "BUF-INCOMPLETE warning", With("VEXTREL_CAMERA_INCOMPLETE", "6")},
    {"500", "T-STALL warning", With("VEXTREL_CAMERA_STALL", "13"), "150"},
    {"150", "T-SLOW warning", With("VEXTREL_CAMERA_SLOW"), "15"},
    // The consumer gives up.
    {"long-description", "PORT-XML error", WithQuirk(nullptr, "4", 1)},
    {"lost-buffer", "HND-PRODUCER warning", WithQuirk(nullptr, "4", 1)},
    {"typed-wrongly", "P-CONF warning", WithQuirk(nullptr)},
    {"counts-down", "P-CONF warning", WithQuirk(nullptr)},
    {"no-base", "P-CONF warning", WithQuirk(nullptr)},
};

TEST(Faults, AreAllHere) {
  const std::string list = RunProgram(GRAB_PROGRAM, {"--fault", "list"}, FolderOf("list")).out;
  std::string here;
  for (const Case& each : kCases) {
    here += std::string(each.fault) + "\n";
    const bool hasRelative = each.relative == kMended || each.relative == kPlain ||
                             each.relative == kFaster ||
                             std::ranges::any_of(kCases, [&](const Case& other) {
                               return other.fault == each.relative && other.relative == kMended;
                             });
    EXPECT_TRUE(hasRelative) << each.fault;
  }
  EXPECT_EQ(here, list);
}

TEST(Faults, RaiseTheirRule) {
  for (const Case& each : kCases) {
    EXPECT_EQ(FindingsOf(each.fault, {"--fault", each.fault}, each.traced), each.expected)
        << each.fault;
  }
}

// Its header, and what another program writes.
std::string WithForeignLine(std::string log) {
  constexpr std::string_view priority = "INFO  ";
  const std::string header = log.substr(0, log.find(priority) + priority.size());
  return log.insert(log.find('\n') + 1, header + "The conveyor is running\n");
}

// Of whole sessions, of which a log has more or less than it should.
TEST(Faults, OfTheCameraAndTheLogRaiseTheirRule) {
  const std::string first = ReadFile(Trace("first", {}));
  // Takes more than a second.
  for (const CameraCase& each : kCameraCases) {
    Traced traced = each.traced;
    traced.camera.value = each.value;
    EXPECT_EQ(FindingsOf(each.value, {}, traced), each.expected) << each.value;
  }
  const std::string second = ReadFile(Trace("second", {}));
  const auto findingsIn = [](const std::string& log) {
    return FindingsIn(ScratchFile(log).Path());
  };
  EXPECT_EQ(findingsIn(second + first), "LOG-TIME info");
  EXPECT_EQ(findingsIn(first + second), "");
  EXPECT_EQ(findingsIn(first.substr(0, first.size() - 5)), "LOG-CUT info");
  EXPECT_EQ(findingsIn(first), "");
  EXPECT_EQ(findingsIn(WithForeignLine(first)), "LOG-UNREADABLE info");
}

TEST(Faults, RaiseTheirRuleIfTheLogHasWhatItNeeds) {
  const auto findingsOf = [](const char* fault, const Traced& traced) {
    return FindingsOf(fault, {"--fault", fault}, traced);
  };
  // Without timing lines, nobody knows of the wait.
  EXPECT_EQ(findingsOf("end-while-waiting", {}), "MOD-LEAK warning");
  // Without times, nobody knows when it's stopped; without threads, that there are two.
  EXPECT_EQ(findingsOf("stop-at-once", {.pattern = "%p %m%n"}), "");
  EXPECT_EQ(findingsOf("ask-on-other-thread", {.pattern = "%d %m%n"}), "");
}

TEST(Faults, OfTheConsumerThatIsRefusedADevice) {
  EXPECT_EQ(AllFindingsIn(Trace("refused", {})), std::vector<std::string>{"DEV-DENIED info"});
  const Traced traced{.camera = {"VEXTREL_CAMERA_DEVICES", "2"}};
  EXPECT_EQ(AllFindingsIn(Trace("not_refused", {}, traced)), std::vector<std::string>{});
}

TEST(Faults, HaveRelativesThatRaiseNothing) {
  EXPECT_EQ(FindingsOf("none", {}, {.frames = "12"}), "");
  EXPECT_EQ(FindingsOf("newer", {"--genTL", "1.5"}, {.frames = "12"}), "");
  EXPECT_EQ(FindingsOf("timed", {}, {.frames = "12", .hasTimingLines = true}), "");
  // Its waits are long enough for a faster camera.
  EXPECT_EQ(FindingsOf("wait-briefly", {"--fault", "wait-briefly"}, {.rate = "400"}), "");
  for (const Case& each : kCases) {
    if (each.relative == kMended) {
      EXPECT_EQ(FindingsOf(each.fault, {"--fault", each.fault, "--mended"}, each.traced), "")
          << each.fault;
    }
  }
  for (const CameraCase& each : kCameraCases) {
    if (each.less != nullptr) {
      Traced traced = each.traced;
      traced.camera.value = each.less;
      EXPECT_EQ(FindingsOf(each.less, {}, traced), "") << each.less;
    }
  }
}

// What the module reports when the library is closed is misleading, too.
TEST(Faults, OfTheSetUpRaiseTheirRule) {
  const Traced traced{.exitCode = 1, .target = "no_such_target.cti"};
  EXPECT_EQ(FindingsOf("not_there", {}, traced), "LIB-LOAD error, LOG-REPORT info");
}

// Those that another test than the tables' shows.
constexpr std::string_view kMore = "LIB-LOAD DEV-DENIED LOG-CUT LOG-TIME LOG-UNREADABLE";

TEST(Faults, AreThereForEveryRule) {
  std::set<std::string> raised;
  const auto add = [&](std::string_view findings) {
    std::istringstream words{std::string(findings)};
    for (std::string word; words >> word;) {
      if (word.find('-') != std::string::npos) {
        raised.insert(word);
      }
    }
  };
  for (const Case& each : kCases) {
    add(each.expected);
  }
  for (const CameraCase& each : kCameraCases) {
    add(each.expected);
  }
  add(kMore);
  std::set<std::string> rules;
  // One on a line, and an empty line behind them.
  for (const std::string& line : SplitLines(RunVextrel({"rules"}).output)) {
    if (line.empty()) {
      break;
    }
    rules.insert(line.substr(0, line.find(' ')));
  }
  EXPECT_EQ(rules.size(), 64U);
  EXPECT_EQ(raised, rules);
}

}  // namespace
}  // namespace vextrel_test
