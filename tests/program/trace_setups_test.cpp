// SPDX-License-Identifier: MIT
// What a trace makes of the set-ups that the doctor names: it mends them, or says the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "launching/failure.h"
#include "program/broken_setups.h"
#include "program/console_program.h"
#include "program/scoped_variable.h"
#include "program/trace_fixture.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

class TraceOfBrokenSetups : public Trace {
 protected:
  // Traces the set-up's application from a process that has its variables.
  ProgramResult TraceOf(const SoundSetup& broken, Told told) {
    std::vector<std::unique_ptr<ScopedVariable>> variables;
    for (const char* name : {kPathVariable, kPathVariable32, kTargetVariable, kConfigVariable}) {
      if (const auto value = broken.setup.variables.Find(name)) {
        variables.push_back(std::make_unique<ScopedVariable>(name, *value));
      }
    }
    logFile = TextOf(broken.folder / (told == Told::Configuration ? "app.log" : "trace.log"));
    std::vector<std::string> arguments = {"trace"};
    if (told != Told::Nothing) {
      arguments.insert(arguments.end(), {"--target", TextOf(broken.target)});
    }
    if (told == Told::Configuration) {
      arguments.insert(arguments.end(), {"--config", TextOf(broken.config)});
    } else {
      arguments.insert(arguments.end(), {"--log", logFile});
    }
    arguments.insert(arguments.end(), {"--", broken.setup.application, "--frames", "1"});
    return told == Told::NothingElse ? RunAlone(broken, arguments) : RunVextrel(arguments);
  }

 private:
  static ProgramResult RunAlone(const SoundSetup& broken,
                                const std::vector<std::string>& arguments) {
    const fs::path program = broken.folder / PathOf(VEXTREL_PROGRAM_FILE).filename();
    fs::copy_file(PathOf(VEXTREL_PROGRAM_FILE), program);
    const fs::path errors = broken.folder / "errors.txt";
    ProgramResult result;
    result.status = ConsoleProgram(program, arguments, errors).WaitForEnd();
    result.errors = ReadBytes(errors).value_or("");
    std::erase(result.errors, '\r');
    return result;
  }
};

// What says why no call succeeded; empty if nothing does.
std::string ReasonIn(const std::string& errors) {
  for (const char* front : {"vextrel: no call was logged: ", "vextrel: no call succeeded: "}) {
    if (const std::size_t at = errors.find(front); at != std::string::npos) {
      return errors.substr(at, errors.find('\n', at) - at);
    }
  }
  return "";
}

int StatusOf(TraceEnd end) {
  return end == TraceEnd::Refused        ? kExitOwnFailure
         : end == TraceEnd::NotStartable ? kExitNotExecutable
                                         : kExitNotFound;
}

TEST_F(TraceOfBrokenSetups, MendsThemOrNamesTheSameCauseAsTheDoctor) {
  for (const BrokenSetup& broken : BrokenSetups()) {
    SCOPED_TRACE(broken.name);
    SoundSetup setup;
    broken.breakIt(setup);
    const Diagnoses diagnoses = Examine(setup.setup);
    ASSERT_NE(diagnoses.FirstWrong(), nullptr);
    const std::string cause = diagnoses.FirstWrong()->text;
    const std::size_t leftovers = Leftovers();
    const ProgramResult run = TraceOf(setup, broken.told);
    if (broken.mended != nullptr) {
      EXPECT_THAT(run.errors, HasSubstr(std::string("vextrel: ") + broken.mended));
    } else if (broken.end == TraceEnd::Well) {
      EXPECT_EQ(run.status, 0) << run.errors;
      EXPECT_THAT(run.errors, HasSubstr("  1 frame on 1 stream"));
      EXPECT_THAT(Log(), HasSubstr("GC_ERR_SUCCESS=GCCloseLib("));
    } else if (broken.end == TraceEnd::WithoutCalls) {
      EXPECT_THAT(ReasonIn(run.errors), AllOf(HasSubstr(broken.text), HasSubstr(cause)))
          << run.errors;
    } else {
      EXPECT_EQ(run.status, StatusOf(broken.end)) << run.errors;
      EXPECT_THAT(run.errors,
                  AllOf(StartsWith("vextrel: "), HasSubstr(broken.text), HasSubstr(cause)));
      EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
      EXPECT_EQ(Log(), "no log");
    }
    EXPECT_EQ(Leftovers(), leftovers);
  }
}

}  // namespace
}  // namespace vextrel_test
