// SPDX-License-Identifier: MIT
// What the doctor says first of set-ups that are broken in one way each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "doctor/examination.h"
#include "doctor/libraries.h"
#include "doctor/target_session.h"
#include "images/file_bytes.h"
#include "program/broken_setups.h"
#include "program/scoped_variable.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::HasSubstr;

namespace fs = std::filesystem;

TEST(Doctor, FindsNothingWrongWithASoundSetup) {
  const SoundSetup sound;
  const Diagnoses diagnoses = Examine(sound.setup);
  EXPECT_EQ(diagnoses.FirstWrong(), nullptr) << diagnoses.FirstWrong()->text;
  // One that's left to 'vextrel trace' is sound if there's a target.
  auto left = sound.setup;
  left.variables = Variables();
  left.target = TextOf(sound.target);
  EXPECT_FALSE(IsSetUp(left));
  EXPECT_EQ(Examine(left).FirstWrong(), nullptr);
}

TEST(Doctor, NamesWhatIsBrokenFirst) {
  for (const BrokenSetup& broken : BrokenSetups()) {
    SoundSetup setup;
    broken.breakIt(setup);
    const Diagnoses diagnoses = Examine(setup.setup);
    const Diagnosis* const first = diagnoses.FirstWrong();
    ASSERT_NE(first, nullptr) << broken.name;
    EXPECT_EQ(first->subject, broken.subject) << broken.name << ": " << first->text;
    EXPECT_THAT(first->text, HasSubstr(broken.text)) << broken.name;
    EXPECT_NE(first->remedy, "") << broken.name;
  }
}

TEST(Doctor, NotesWhatOtherProgramsSee) {
  SoundSetup sound;
  StoredVariables stored;
  stored.user.Set(kPathVariable, "elsewhere");
  sound.setup.stored = stored;
  bool isNoted = false;
  const Diagnoses diagnoses = Examine(sound.setup);
  for (const Diagnosis& diagnosis : diagnoses.All()) {
    isNoted = isNoted || (diagnosis.subject == "stored" && diagnosis.verdict == Verdict::Note &&
                          diagnosis.text.find("'elsewhere' for programs that start otherwise") !=
                              std::string::npos);
  }
  EXPECT_TRUE(isNoted);
}

TEST(Doctor, LoadsTheTargetInAnotherProcess) {
  using std::chrono::milliseconds;
  const fs::path program = PathOf(VEXTREL_PROGRAM_FILE);
  const Variables variables = ProcessVariables();
  constexpr milliseconds longEnough(20000);
  const TargetSession works = TryTarget(program, PathOf(SIMULATED_CAMERA), variables, longEnough);
  EXPECT_TRUE(works.isWhole);
  EXPECT_EQ(works.text, "works: version 1.0.0, 2 interfaces");

  // A copy that needs a library which isn't there.
  std::string bytes = ReadBytes(PathOf(SIMULATED_CAMERA)).value();
  const std::string library = kOnWindows ? "KERNEL32.dll" : "libstdc++.so.6";
  const std::string other = kOnWindows ? "KERNEL99.dll" : "libstdcXX.so.6";
  for (std::size_t at = bytes.find(library); at != std::string::npos; at = bytes.find(library)) {
    bytes.replace(at, library.size(), other);
  }
  const ScratchFile lame(bytes, "lame.cti");
  const TargetSession fails = TryTarget(program, PathOf(lame.Path()), variables, longEnough);
  EXPECT_FALSE(fails.isWhole);
  EXPECT_THAT(fails.text, HasSubstr(kOnWindows ? "fails: error " : "fails: libstdcXX.so.6"));
  const auto missing = FindMissingLibraries(PathOf(lame.Path()), LibrarySearch(variables, {}));
  ASSERT_FALSE(missing.empty());
  EXPECT_EQ(missing.front().name, other);

  Variables slow = variables;
  slow.Set("SHOW_ITSELF_SECONDS", "60");
  EXPECT_THAT(TryTarget(PathOf(SHOW_ITSELF_PROGRAM), "x", slow, milliseconds(30)).text,
              HasSubstr("hangs in"));
  Variables lost = variables;
  lost.Set("SHOW_ITSELF_STATUS", "3");
  EXPECT_THAT(TryTarget(PathOf(SHOW_ITSELF_PROGRAM), "x", lost, longEnough).text,
              HasSubstr("ends the process in its start (status 3)"));
}

// What was said of this subject: "verdict text" and the remedy behind a colon, one on a line.
std::string SaidOf(const std::string& subject, const ProgramResult& doctor) {
  std::string said;
  std::istringstream lines(doctor.output);
  for (std::string line; std::getline(lines, line);) {
    constexpr std::size_t verdict = 7;
    constexpr std::size_t front = verdict + 15;
    if (line.compare(verdict, subject.size() + 1, subject + " ") == 0) {
      said += line.substr(0, line.find(' ')) + " " + line.substr(front) + "\n";
    }
  }
  return said;
}

// Nothing is set up, whatever this process has.
struct BareVariables {
  ScopedVariable path{kPathVariable, ""};
  ScopedVariable target{kTargetVariable, ""};
  ScopedVariable config{kConfigVariable, ""};
};

TEST(Doctor, NamesOneCauseOnce) {
  const BareVariables bare;
  const ProgramResult doctor = RunVextrel({"doctor"});
  EXPECT_EQ(doctor.status, 1);
  EXPECT_EQ(SaidOf("variables", doctor),
            "wrong GENICAM_GENTL64_PATH isn't set, so no producer is found: name the producer with "
            "--target\n");
  EXPECT_EQ(SaidOf("target", doctor), "note not looked at: no producer is known\n");
  EXPECT_EQ(doctor.output.find("wrong"), doctor.output.rfind("wrong")) << doctor.output;
}

TEST(Doctor, SaysWhichModuleATraceTakes) {
  const BareVariables bare;
  EXPECT_EQ(SaidOf("module", RunVextrel({"doctor", "--target", SIMULATED_CAMERA})),
            "fine 'vextrel trace' takes vextrel.cti, since the target has none of the functions "
            "that GenTL 1.3 to 1.6 added\n");
  EXPECT_EQ(SaidOf("module", RunVextrel({"doctor", "--target", SIMULATED_CAMERA_EXTENDED})),
            "fine 'vextrel trace' takes vextrel_extended.cti, since the target has functions that "
            "GenTL 1.3 to 1.6 added, such as DSGetBufferChunkData\n");
  EXPECT_EQ(SaidOf("variables", RunVextrel({"doctor", "--target", SIMULATED_CAMERA})),
            "fine GENICAM_GENTL64_PATH isn't set; 'vextrel trace' sets it for the application\n");
}

TEST(Doctor, LooksAtTheConfigurationThatATraceWouldGet) {
  const BareVariables bare;
  const ScratchFile log("earlier");
  const std::string config = log.Beside(
      "rootCategory=INFO, a\nappender.a=FileAppender\nappender.a.layout=BasicLayout\n"
      "appender.a.fileName=" +
          log.Path() + "\n",
      "own.properties");
  const std::string wrong = log.Beside("rootCategroy=INFO, a\n", "wrong.properties");
  const auto doctor = [](const std::string& file) {
    return RunVextrel({"doctor", "--target", SIMULATED_CAMERA, "--config", file});
  };
  const ProgramResult sound = doctor(config);
  EXPECT_EQ(sound.status, 0) << sound.output;
  EXPECT_THAT(SaidOf("configuration", sound), HasSubstr("own.properties' can be read\n"));
  EXPECT_THAT(SaidOf("log", sound), HasSubstr("' is there already, with 7 bytes: new lines go"));
  EXPECT_EQ(doctor(wrong).status, 1);
  EXPECT_THAT(SaidOf("configuration", doctor(wrong)), HasSubstr("has no rootCategory"));
  EXPECT_THAT(SaidOf("configuration", doctor(log.Path() + ".none")),
              HasSubstr("isn't there: name a property file with --config, or in "));
  // In place of the variable's.
  const ScopedVariable variable(kConfigVariable, wrong);
  EXPECT_THAT(SaidOf("configuration", doctor(config)), HasSubstr("own.properties' can be read\n"));
}

TEST(Doctor, IsACommand) {
  const ProgramResult fine = RunVextrel({"doctor", "--target", SIMULATED_CAMERA, GRAB_PROGRAM});
  EXPECT_EQ(fine.status, 0) << fine.output;
  EXPECT_EQ(fine.output.find("wrong"), std::string::npos);
  EXPECT_THAT(fine.output, HasSubstr("fine   libraries      all that the target needs is found\n"));
  const ScopedVariable nowhere(kTargetVariable, "nowhere.cti");
  const ProgramResult wrong = RunVextrel({"doctor", "--json"});
  EXPECT_EQ(wrong.status, 1);
  const nlohmann::json json = nlohmann::json::parse(wrong.output);
  EXPECT_EQ(json["schema"], 1);
  EXPECT_EQ(json["works"], false);
  EXPECT_EQ(json["diagnoses"][0]["verdict"], "fine");
  EXPECT_EQ(json["diagnoses"][1]["subject"], "variables");
  EXPECT_EQ(json["diagnoses"][1]["verdict"], "wrong");
}

}  // namespace
}  // namespace vextrel_test
