// SPDX-License-Identifier: MIT
// How applications end, and what a trace says and leaves of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "program/console_program.h"
#include "program/scoped_variable.h"
#include "program/trace_fixture.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class TraceEnding : public Trace {
 protected:
  [[nodiscard]] std::string Shown() const { return ReadBytes(PathOf(shown)).value_or(""); }

  // Waits until there's a whole line with that text in the file. Returns what follows it.
  [[nodiscard]] static std::string WaitFor(const std::string& text, const fs::path& file) {
    constexpr int tries = 6000;
    for (int i = 0; i < tries; ++i) {
      const std::string bytes = ReadBytes(file).value_or("");
      const std::size_t begin = bytes.find(text);
      const std::size_t end = begin == std::string::npos ? begin : bytes.find('\n', begin);
      if (end != std::string::npos) {
        return bytes.substr(begin + text.size(), end - begin - text.size());
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ADD_FAILURE() << file << " doesn't get '" << text << "'";
    return "0";
  }

  std::string shown = TextOf(folder / "shown");
  ScopedVariable in{"SHOW_ITSELF_IN", shown};
  std::size_t leftovers = Leftovers();
};

// Traces in a process of its own, and presses Ctrl-C when `shownLast` says that its process runs,
// and the trace has said `sentence`.
class TraceEndingByCtrlC : public TraceEnding {
 protected:
  int RunAndInterrupt() { return RunAndInterrupt("vextrel: tracing '", PathOf(shown)); }

  int RunAndInterrupt(const std::string& sentence, const fs::path& shownLast) {
    logFile = TextOf(folder / "trace.log");
    const fs::path said = folder / "said.txt";
    ConsoleProgram program(
        PathOf(VEXTREL_PROGRAM_FILE),
        {"trace", "--log", logFile, "--target", SIMULATED_CAMERA, "--", SHOW_ITSELF_PROGRAM}, said);
    if (!program.HasStarted()) {
      ADD_FAILURE() << "the program has no console";
      return -1;
    }
    producers = PathOf(WaitFor("PATH ", PathOf(shown)));
    static_cast<void>(WaitFor("PROCESS ", shownLast));
    static_cast<void>(WaitFor(sentence, said));
    EXPECT_TRUE(fs::exists(producers));
    program.PressCtrlC();
    const int status = program.WaitForEnd();
    errors = ReadBytes(said).value_or("");
    std::erase(errors, '\r');
    return status;
  }

  ScopedVariable seconds{"SHOW_ITSELF_SECONDS", "50"};
  fs::path producers;
  std::string errors;
};

TEST_F(TraceEndingByCtrlC, ReturnsTheApplicationsStatusAndTidiesUp) {
  const ScopedVariable status("SHOW_ITSELF_STATUS_AT_CTRL_C", "42");
  EXPECT_EQ(RunAndInterrupt(), 42) << errors;
  EXPECT_THAT(Shown(), Not(EndsWith("END\n")));
  EXPECT_THAT(errors, AllOf(HasSubstr("vextrel: tracing '"), HasSubstr("no call was logged")));
  EXPECT_FALSE(fs::exists(producers.parent_path()));
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceEndingByCtrlC, WaitsNoLongerForAProcessThatGoesOn) {
  const fs::path child = folder / "child";
  const ScopedVariable file("SHOW_ITSELF_CHILD", TextOf(child));
  const ScopedVariable status("SHOW_ITSELF_STATUS", "7");
  const ScopedVariable ofChild("SHOW_ITSELF_STATUS_AT_CTRL_C", "42");
  EXPECT_EQ(RunAndInterrupt("goes on: waiting for that", child), 7) << errors;
  EXPECT_THAT(Shown(), EndsWith("END\n"));
  EXPECT_THAT(ReadBytes(child).value_or(""), AllOf(HasSubstr("PROCESS "), Not(HasSubstr("END"))));
}

TEST_F(TraceEndingByCtrlC, SaysSoIfThatEndedTheApplication) {
  const int status = RunAndInterrupt();
  EXPECT_THAT(Shown(), Not(EndsWith("END\n")));
  EXPECT_FALSE(fs::exists(producers.parent_path()));
  EXPECT_EQ(Leftovers(), leftovers);
  if (kOnWindows) {
    // Wine ends it with 0, and Windows with this.
    const ScopedVariable soon("SHOW_ITSELF_SECONDS", "0");
    const ScopedVariable byCtrlC("SHOW_ITSELF_STATUS", "-1073741510");
    const ProgramResult run = Run(kTarget, {SHOW_ITSELF_PROGRAM});
    EXPECT_EQ(static_cast<std::uint32_t>(run.status), 0xC000013A);
    EXPECT_THAT(run.errors, HasSubstr("vextrel: the application was ended by Ctrl-C\n"));
  } else {
    EXPECT_EQ(status, 128 + SIGINT);
    EXPECT_THAT(errors, HasSubstr("vextrel: the application was ended by signal 2\n"));
  }
}

TEST_F(TraceEnding, ByACrashIsSaid) {
  const ScopedVariable crashes("SHOW_ITSELF_CRASHES", "1");
  const ProgramResult run = Run(kTarget, {SHOW_ITSELF_PROGRAM});
  if (!kOnWindows) {
    EXPECT_EQ(run.status, 128 + SIGSEGV);
    EXPECT_THAT(run.errors, HasSubstr("vextrel: the application was ended by signal 11\n"));
  } else {
    EXPECT_EQ(static_cast<std::uint32_t>(run.status), 0xC0000005);
    EXPECT_THAT(run.errors,
                HasSubstr("vextrel: the application ended with the exception 0xC0000005\n"));
  }
  EXPECT_THAT(Shown(), Not(EndsWith("END\n")));
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceEnding, ByAnotherProcessReturnsWhatThatLeaves) {
  const ScopedVariable seconds("SHOW_ITSELF_SECONDS", "50");
  std::thread other([&] {
    EndProcess(static_cast<std::uint32_t>(std::stoul(WaitFor("PROCESS ", PathOf(shown)))));
  });
  const ProgramResult run = Run(kTarget, {SHOW_ITSELF_PROGRAM});
  other.join();
  EXPECT_EQ(run.status, kEndedStatus) << run.errors;
  EXPECT_THAT(Shown(), Not(EndsWith("END\n")));
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(TraceEnding, WaitsForAProcessThatTheApplicationLeavesBehind) {
  const fs::path child = folder / "child";
  const ScopedVariable file("SHOW_ITSELF_CHILD", TextOf(child));
  const ScopedVariable seconds("SHOW_ITSELF_SECONDS", "0.5");
  const ScopedVariable status("SHOW_ITSELF_STATUS", "7");
  const ProgramResult run = Run(kTarget, {SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(run.status, 7) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("vextrel: the application has ended, and a process that it "
                                    "started goes on: waiting for that (Ctrl-C ends the trace)\n"));
  EXPECT_THAT(Shown(), EndsWith("END\n"));
  const std::string ofChild = ReadBytes(child).value_or("");
  EXPECT_THAT(ofChild, EndsWith("END\n"));
  // The child is traced, too.
  const auto path = [](const std::string& text) {
    return text.substr(text.find("PATH "), text.find("PROCESS ") - text.find("PATH "));
  };
  EXPECT_EQ(path(ofChild), path(Shown()));
  EXPECT_EQ(Leftovers(), leftovers);
}

}  // namespace
}  // namespace vextrel_test
