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
using testing::Not;
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
  // The findings follow, so nobody has to be told how to get them.
  EXPECT_THAT(run.errors, HasSubstr("\n  findings: 1 error, "));
  EXPECT_THAT(run.errors, Not(HasSubstr("'vextrel check' says")));
  const ProgramResult unchecked = Run(kTarget, {GRAB_PROGRAM, "--misuse"});
  EXPECT_EQ(unchecked.status, 0) << unchecked.errors;
  EXPECT_THAT(unchecked.errors, AllOf(HasSubstr("\n  findings: 1 error, "),
                                      HasSubstr("; reports of Vextrel itself: "),
                                      HasSubstr(" MB; 'vextrel check' says what went wrong)\n")));
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

TEST_F(Trace, WhosePageCantBeWrittenStartsNothing) {
  const std::string shown = TextOf(folder / "shown");
  const ScopedVariable in("SHOW_ITSELF_IN", shown);
  const std::string page = TextOf(folder / "missing" / "page.html");
  const ProgramResult run = Run({kTarget[0], kTarget[1], "--report", page}, {SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(run.status, 125);
  const auto shownAs = [](const fs::path& path) {
    return TextOf(fs::absolute(path).make_preferred());
  };
  EXPECT_EQ(run.errors, "vextrel: the page '" + shownAs(PathOf(page)) +
                            "' can't be written: there's no folder '" +
                            shownAs(folder / "missing") + "': make it, or name another file\n");
  const std::string log = TextOf(folder / "both.log");
  const ProgramResult both = RunVextrel({"trace", "--log", log, "--report", log, "--target",
                                         SIMULATED_CAMERA, "--", SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(both.status, 125);
  EXPECT_EQ(both.errors,
            "vextrel: the page '" + log + "' is the log itself: give the page another name\n");
  EXPECT_FALSE(fs::exists(PathOf(shown)));
}

TEST_F(Trace, LeavesTheFilesOfItsLogAlone) {
  const std::string log = TextOf(folder / "app.log");
  const std::string rolled = scratch.Beside("an older run\n", "app.log.1");
  const std::string config = scratch.Beside(
      "rootCategory=INFO, file\nappender.file=FileAppender\nappender.file.fileName=" +
          PathOf(log).generic_string() + "\nappender.file.layout=BasicLayout\n",
      "own.properties");
  const ProgramResult run = RunVextrel({"trace", "--config", config, "--report", rolled, "--target",
                                        SIMULATED_CAMERA, "--", SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(run.status, 125);
  EXPECT_EQ(run.errors,
            "vextrel: the page '" + rolled + "' is the log itself: give the page another name\n");
  EXPECT_EQ(ReadBytes(PathOf(rolled)), "an older run\n");
}

// An appender of log4cpp's goes on at the end of its file.
TEST_F(Trace, CountsOnlyWhatThisRunAdded) {
  const fs::path log = fs::absolute(folder / "own.log");
  const std::string config = scratch.Beside(
      "rootCategory=INFO, a\nappender.a=FileAppender\nappender.a.append=true\n"
      "appender.a.layout=PatternLayout\n"
      "appender.a.layout.ConversionPattern=%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m%n\n"
      "appender.a.fileName=" +
          log.generic_string() + "\n",
      "own.properties");
  const auto run = [&](const std::vector<std::string>& application) {
    std::vector<std::string> arguments = {"trace",    "--check",        "--config", config,
                                          "--target", SIMULATED_CAMERA, "--"};
    arguments.insert(arguments.end(), application.begin(), application.end());
    return RunVextrel(arguments);
  };
  const ProgramResult faulty = run({GRAB_PROGRAM, "--misuse"});
  EXPECT_EQ(faulty.status, 1) << faulty.errors;
  EXPECT_THAT(faulty.errors, Not(HasSubstr("earlier runs")));
  const std::string before = ReadBytes(log).value_or("");
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const ProgramResult clean = run({GRAB_PROGRAM, "--frames", "3"});
  EXPECT_EQ(clean.status, 0) << clean.errors;
  EXPECT_THAT(
      clean.errors,
      AllOf(HasSubstr("vextrel: the log already has " + std::to_string(before.size()) +
                      " bytes from earlier runs; only this run's lines are summed up\n"),
            HasSubstr("\n  1 call failed, IFOpenDevice with GC_ERR_ACCESS_DENIED\n"),
            HasSubstr("\n  3 frames on 1 stream, "), HasSubstr("\n  findings: 0 errors, ")));
  EXPECT_THAT(clean.errors, Not(HasSubstr("HND-AFTER")));
  // The line is that of the file.
  const std::size_t found = clean.errors.find(": info DEV-DENIED");
  ASSERT_NE(found, std::string::npos) << clean.errors;
  const std::size_t begin = clean.errors.rfind(':', found - 1) + 1;
  EXPECT_GT(std::stol(clean.errors.substr(begin, found - begin)), lines);
  // A run that adds nothing has nothing to be summed up.
  const ScopedVariable in("SHOW_ITSELF_IN", TextOf(folder / "shown"));
  const ProgramResult silent = run({SHOW_ITSELF_PROGRAM});
  EXPECT_EQ(silent.status, 125) << silent.errors;
  EXPECT_THAT(silent.errors,
              AllOf(HasSubstr("no call was logged: the application didn't load the producer"),
                    HasSubstr(", or called nothing but GCInitLib; ")));
}

TEST_F(Trace, TakesTheTargetOfASetUpByHand) {
  fs::create_directory(folder / "module");
  fs::copy_file(PathOf(VEXTREL), folder / "module" / "vextrel.cti");
  const ScopedVariable path("GENICAM_GENTL64_PATH", TextOf(folder / "module"));
  const ProgramResult none = Run({}, {GRAB_PROGRAM});
  EXPECT_EQ(none.status, 125);
  EXPECT_EQ(none.errors,
            "vextrel: GENICAM_GENTL64_PATH leads to Vextrel only, and "
            "GENICAM_GENTL64_VEXTREL_PRODUCER names no target: name the producer that is to be "
            "traced with --target\n");
  const ScopedVariable producer("GENICAM_GENTL64_VEXTREL_PRODUCER", SIMULATED_CAMERA);
  const ProgramResult run = Run({}, {GRAB_PROGRAM, "--frames", "1"});
  EXPECT_EQ(run.status, 0) << run.errors;
  EXPECT_THAT(
      run.errors,
      StartsWith("vextrel: GENICAM_GENTL64_PATH leads to Vextrel only, so the target is the "
                 "one that GENICAM_GENTL64_VEXTREL_PRODUCER names\nvextrel: tracing '"));
  EXPECT_THAT(run.errors, HasSubstr("\n  1 frame on 1 stream"));
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
  EXPECT_THAT(lines, HasSubstr("\n  findings: 0 errors, "));
  EXPECT_THAT(lines, Not(HasSubstr("reports of Vextrel itself")));
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
      {kTarget, {"."}, 126, "'.' is a folder, not an application"},
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
