// SPDX-License-Identifier: MIT
// Whole traces: the program's command in this process, the application in one of its own.
#include "commands/trace_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "images/file_bytes.h"
#include "program/made_images.h"
#include "program/scoped_variable.h"
#include "program/small_log.h"
#include "program/trace_fixture.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

TEST_F(Trace, MakesAPageOfTheLog) {
  const std::string page = TextOf(folder / "page.html");
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--report", page}, {GRAB_PROGRAM});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("vextrel: wrote '" + page + "' ("));
  EXPECT_THAT(ReadBytes(PathOf(page)).value_or(""), StartsWith("<!DOCTYPE html>\n"));
}

TEST_F(Trace, FailsIfItsCheckFindsAnError) {
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--check"}, {GRAB_PROGRAM, "--misuse"});
  EXPECT_EQ(run.status, 1) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr(": error HND-AFTER: DSRevokeBuffer uses BUF1"));
}

TEST_F(Trace, KeepsTheStatusIfItsCheckFindsNoError) {
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--check"}, {GRAB_PROGRAM});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("0 errors, "));
}

TEST_F(Trace, ThatLoggedNothingCantBeChecked) {
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--check"}, {SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(run.status, 125) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("without a logged call, there's nothing to check"));
}

TEST_F(Trace, SaysThatItsPageCantBeWritten) {
  const std::string page = TextOf(folder / "missing" / "page.html");
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--report", page}, {GRAB_PROGRAM});
  EXPECT_EQ(run.status, 125) << run.errors;
  EXPECT_THAT(run.errors, HasSubstr("page.html' can't be written\n"));
}

TEST_F(Trace, OfMisuseOnlyHasNothingToCheck) {
  for (const std::vector<std::string>& option :
       {std::vector<std::string>{"--check"}, {"--report", "page.html"}}) {
    std::vector<std::string> options = {"--misuse-only"};
    options.insert(options.end(), option.begin(), option.end());
    const ProgramResult run = Run(options, {GRAB_PROGRAM});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("--misuse-only excludes " + option.front()));
  }
}

TEST_F(Trace, OfTheSampleShowsFiveLinesAndLeavesTheLog) {
  const ProgramResult run = Run(kTarget, {GRAB_PROGRAM, "--frames", "3"});
  EXPECT_EQ(run.status, 0) << run.errors;
  const std::size_t summary = run.errors.find("vextrel: ", 1);
  ASSERT_NE(summary, std::string::npos) << run.errors;
  const std::string lines = run.errors.substr(summary);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 5) << lines;
  EXPECT_THAT(lines, HasSubstr("  3 frames on 1 stream, "));
  EXPECT_THAT(lines, HasSubstr("; missing: 0, incomplete: 0, 0 time-outs\n"));
  EXPECT_THAT(lines, HasSubstr("1 call failed, IFOpenDevice with GC_ERR_ACCESS_DENIED"));
  EXPECT_THAT(lines, HasSubstr("no report of an error or misuse"));
  EXPECT_THAT(lines, HasSubstr("trace1.log"));
  EXPECT_THAT(Log(),
              AllOf(HasSubstr("GC_ERR_SUCCESS=GCCloseLib("), Not(HasSubstr("Call 1 enters"))));

  // The camera isn't found a second time, and the module goes by the options.
  const ProgramResult timed =
      Run({"--timing", "--fast", "--rolling", "64K", "--target", SIMULATED_CAMERA_EXTENDED},
          {GRAB_PROGRAM, "--genTL", "1.5", "--frames", "1"});
  EXPECT_EQ(timed.status, 0) << timed.errors;
  EXPECT_THAT(timed.errors, HasSubstr("with vextrel_extended.cti"));
  // The log has rolled once.
  const std::string older = ReadBytes(PathOf(logFile + ".1")).value_or("no log");
  EXPECT_NE(older.find("Call 1 enters GCInitLib()"), std::string::npos);
  EXPECT_EQ(older.find("2026-"), std::string::npos) << "a date";
  EXPECT_NE(Log().find("GC_ERR_SUCCESS=GCCloseLib("), std::string::npos);
}

TEST_F(Trace, PassesArgumentsAndStatusUnchanged) {
  const std::vector<std::string> ugly = {"",
                                         " ",
                                         "two words",
                                         "--",
                                         "--target",
                                         "[a,b]",
                                         "\"",
                                         "\"\"",
                                         "a\"b",
                                         "a\\",
                                         "a b\\",
                                         "a b\\\\",
                                         "\\\"",
                                         "\\\\\"quoted\\\\\"",
                                         "tab\tvertical\v",
                                         "%PATH%",
                                         "^&|<>()!",
                                         "*",
                                         "?.cpp",
                                         "@file",
                                         "$HOME `x` 'y'",
                                         "\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80",
                                         "half a surrogate pair \xED\xA0\x80"};
  const std::string shown = TextOf(folder / "shown");
  ScopedVariable in("SHOW_ITSELF_IN", shown);
  ScopedVariable status("SHOW_ITSELF_STATUS", "77");
  std::vector<std::string> application = {SHOW_ITSELF_PROGRAM};
  application.insert(application.end(), ugly.begin(), ugly.end());
  const std::size_t leftovers = Leftovers();
  const ProgramResult run = Run(kTarget, application);
  EXPECT_EQ(run.status, 77) << run.errors;
  std::string expected;
  for (const std::string& argument : ugly) {
    expected += argument + "\n";
  }
  const std::string text = ReadBytes(PathOf(shown)).value_or("");
  const std::size_t path = text.rfind("PATH ");
  ASSERT_NE(path, std::string::npos) << run.errors;
  EXPECT_EQ(text.substr(0, path), expected);
  // The one folder that the application was shown is gone.
  const fs::path shownFolder = PathOf(text.substr(path + 5, text.find('\n', path) - path - 5));
  EXPECT_EQ(shownFolder.filename(), "producer");
  EXPECT_FALSE(fs::exists(shownFolder.parent_path()));
  EXPECT_EQ(Leftovers(), leftovers);
}

TEST_F(Trace, SaysWhyNothingWasLogged) {
  // It looks at nothing.
  ScopedVariable in("SHOW_ITSELF_IN", TextOf(folder / "shown"));
  EXPECT_THAT(Run(kTarget, {SHOW_ITSELF_PROGRAM}).errors,
              HasSubstr("no call was logged: the application didn't load the producer that "
                        "GENICAM_GENTL64_PATH names, or wants a newer one (--module extended)"));
  EXPECT_EQ(Log(), "no log");
  // The target doesn't load: each call fails, and the reason isn't in the log.
  MadeImage made;
  made.needed = {"no-such-library.1"};
  made.exports = {"GCInitLib"};
  const std::string lame = scratch.Beside(MadeForThisSystem(made), "lame.cti");
  EXPECT_THAT(
      Run({"--target", lame}, {GRAB_PROGRAM}).errors,
      HasSubstr("no call succeeded: no-such-library.1, which 'lame.cti' needs, isn't found"));
  // The user's own configuration, with a mistake and without.
  const std::string log = TextOf(folder / "own.log");
  const std::string wrong = scratch.Beside("appender.a=FileAppender\n", "wrong.properties");
  const ProgramResult refused =
      RunVextrel({"trace", "--config", wrong, "--target", SIMULATED_CAMERA, "--", GRAB_PROGRAM});
  EXPECT_EQ(refused.status, 125);
  EXPECT_THAT(refused.errors,
              HasSubstr("wrong.properties', line 1: 'appender.a.fileName' is missing"));
  const std::string quiet = scratch.Beside(
      "rootCategory=INFO, a\nappender.a=FileAppender\nappender.a.layout=BasicLayout\n"
      "appender.a.fileName=" +
          PathOf(log).generic_string() + "\n",
      "quiet.properties");
  const ProgramResult own = RunVextrel(
      {"trace", "--config", quiet, "--target", SIMULATED_CAMERA, "--", GRAB_PROGRAM, "--list"});
  EXPECT_EQ(own.status, 0);
  EXPECT_THAT(own.errors, HasSubstr("no stream was opened"));
}

TEST_F(Trace, SaysWhyItCannotStart) {
  struct Case {
    std::vector<std::string> options;
    std::vector<std::string> application;
    int status;
    const char* sentence;
  };
  const std::string text = scratch.Beside("text", "text");
  const Case cases[] = {
      {kTarget, {}, 2, "what is to be traced?"},
      {kTarget, {"no-such-application"}, 127, "there's no application 'no-such-application'"},
      {kTarget, {TextOf(folder)}, 126, "is a folder"},
      {kTarget, {text}, 126, "'"},
      {{"--target", TextOf(folder / "none.cti")}, {GRAB_PROGRAM}, 125, "none.cti' isn't there"},
      {{"--target", VEXTREL}, {GRAB_PROGRAM}, 125, "is Vextrel itself"},
      {{"--target", text}, {GRAB_PROGRAM}, 125, "isn't a module"},
      {{"--target", SIMULATED_CAMERA, "--rolling", "5"},
       {GRAB_PROGRAM},
       2,
       "--rolling needs a size"},
      {{"--target", SIMULATED_CAMERA, "--module", "standard", "--timing"},
       {GRAB_PROGRAM},
       2,
       "no timing lines"},
  };
  const std::size_t leftovers = Leftovers();
  for (const Case& each : cases) {
    const ProgramResult run = Run(each.options, each.application);
    EXPECT_EQ(run.status, each.status) << each.sentence;
    EXPECT_THAT(run.errors, AllOf(StartsWith("vextrel: "), HasSubstr(each.sentence)));
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    EXPECT_EQ(Log(), "no log");
  }
  EXPECT_EQ(
      RunVextrel({"trace", "--log", text, "--target", SIMULATED_CAMERA, "--", GRAB_PROGRAM}).status,
      125);
  EXPECT_EQ(Leftovers(), leftovers);
}

}  // namespace
}  // namespace vextrel_test
