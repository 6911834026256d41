// SPDX-License-Identifier: MIT
// Set-ups that are broken in one way each, and what the doctor says of them first.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

#include "doctor/examination.h"
#include "doctor/libraries.h"
#include "doctor/target_session.h"
#include "images/file_bytes.h"
#include "program/made_images.h"
#include "program/scoped_variable.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::HasSubstr;

namespace fs = std::filesystem;

void Write(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// A set-up by hand, in which everything is as it should be.
struct SoundSetup {
  SoundSetup() {
    fs::create_directory(producers);
    fs::create_directory(folder / "target");
    fs::copy_file(PathOf(VEXTREL), producers / "vextrel.cti");
    fs::copy_file(PathOf(SIMULATED_CAMERA), target);
    SetConfig("rootCategory=INFO, file\n");
    setup.variables.Set("PATH", ProcessVariables().Find("PATH").value_or(""));
    setup.variables.Set(kPathVariable, TextOf(producers));
    setup.variables.Set(kTargetVariable, TextOf(target));
    setup.variables.Set(kConfigVariable, TextOf(config));
    setup.modules = {PathOf(VEXTREL), PathOf(VEXTREL_EXTENDED_MODULE)};
    setup.application = GRAB_PROGRAM;
  }

  void SetConfig(const std::string& front, const std::string& log = "app.log") const {
    Write(config,
          front + "appender.file=FileAppender\nappender.file.fileName=" + folder.generic_string() +
              "/" + log + "\nappender.file.layout=PatternLayout\n");
  }
  // A target that consists of headers.
  void MakeTarget(MadeImage made, bool exportsGentl = true) const {
    if (exportsGentl) {
      made.exports = {"GCInitLib"};
    }
    Write(target, MadeForThisSystem(made));
  }
  // An application that consists of headers.
  void MakeApplication(const std::string& name, MadeImage made = {}) {
    made.isLibrary = false;
    const fs::path file = folder / name;
    Write(file, MadeForThisSystem(made));
    fs::permissions(file, fs::perms::owner_all);
    setup.application = TextOf(file);
  }
  void Set(const char* name, const std::string& value) { setup.variables.Set(name, value); }

  ScratchFile scratch{"", "empty"};
  fs::path folder = fs::absolute(PathOf(scratch.Path()).parent_path());
  fs::path producers = folder / "producers";
  fs::path target = folder / "target" / "camera.cti";
  fs::path config = folder / "log.properties";
  Setup setup;
};

struct BrokenSetup {
  const char* name;
  std::function<void(SoundSetup&)> breakIt;
  const char* subject;  // of the first line that isn't fine
  const char* text;     // in it
};

const bool kIsWindows = kOwnImageKind == ImageKind::Pe;

std::vector<BrokenSetup> BrokenSetups() {
  std::vector<BrokenSetup> list = {
      {"1: no search path", [](SoundSetup& s) { s.setup.variables.Remove(kPathVariable); },
       "variables", "GENICAM_GENTL64_PATH isn't set"},
      {"2: a search path for 32-bit applications only",
       [](SoundSetup& s) {
         s.setup.variables.Remove(kPathVariable);
         s.Set(kPathVariable32, TextOf(s.producers));
       },
       "variables", "GENICAM_GENTL32_PATH is set, and GENICAM_GENTL64_PATH isn't"},
      {"3: quotes in the search path",
       [](SoundSetup& s) { s.Set(kPathVariable, "\"" + TextOf(s.producers) + "\""); }, "variables",
       "has quotes"},
      {"4: the other system's separator",
       [](SoundSetup& s) {
         s.Set(kPathVariable, TextOf(s.producers) + (kIsWindows ? ":" : ";") + TextOf(s.folder));
       },
       "variables", kIsWindows ? "has ':' between" : "has ';' between"},
      {"5: a folder that isn't there",
       [](SoundSetup& s) { s.Set(kPathVariable, TextOf(s.folder / "none")); }, "variables",
       "isn't there"},
      {"6: a reference that nobody replaces",
       [](SoundSetup& s) { s.Set(kPathVariable, kIsWindows ? "%HOME%\\x" : "~/x"); }, "variables",
       "has a reference"},
      {"7: a blank at the end",
       [](SoundSetup& s) { s.Set(kPathVariable, TextOf(s.folder / "none") + " "); }, "variables",
       "has a blank"},
      {"8: no module in the search path",
       [](SoundSetup& s) { fs::remove(s.producers / "vextrel.cti"); }, "module",
       "nothing in GENICAM_GENTL64_PATH is Vextrel"},
      {"9: both modules in the search path",
       [](SoundSetup& s) {
         fs::copy_file(PathOf(VEXTREL_EXTENDED_MODULE), s.producers / "vextrel_extended.cti");
       },
       "module", "Vextrel is there 2 times"},
      {"10: no configuration", [](SoundSetup& s) { s.setup.variables.Remove(kConfigVariable); },
       "configuration", "LOG_CONFIG isn't set"},
      {"11: a configuration behind a variable that isn't set",
       [](SoundSetup& s) { s.Set(kConfigVariable, "$(NOWHERE)/x"); }, "configuration",
       "$(NOWHERE) in"},
      {"12: a configuration that isn't there", [](SoundSetup& s) { fs::remove(s.config); },
       "configuration", "isn't there"},
      {"13: a byte order mark",
       [](SoundSetup& s) { s.SetConfig("\xEF\xBB\xBFrootCategory=INFO, file\n"); }, "configuration",
       "line 1: a byte order mark"},
      {"14: a misspelled configuration",
       [](SoundSetup& s) { s.SetConfig("rootCategroy=INFO, file\n"); }, "configuration",
       "has no rootCategory"},
      {"15: a line with a variable that isn't set",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\nx=$(NOWHERE)\n"); },
       "configuration", "line 2: $(NOWHERE) can't be replaced"},
      {"16: no target", [](SoundSetup& s) { s.setup.variables.Remove(kTargetVariable); }, "target",
       "PRODUCER isn't set"},
      {"17: a target behind a variable that isn't set",
       [](SoundSetup& s) { s.Set(kTargetVariable, "$(NOWHERE)/x.cti"); }, "target",
       "$(NOWHERE) in"},
      {"18: a target that isn't there", [](SoundSetup& s) { fs::remove(s.target); }, "target",
       "isn't there"},
      {"19: a folder as the target",
       [](SoundSetup& s) { s.Set(kTargetVariable, TextOf(s.folder)); }, "target", "is a folder"},
      {"20: a copy of Vextrel as the target",
       [](SoundSetup& s) {
         fs::copy_file(PathOf(VEXTREL), s.target, fs::copy_options::overwrite_existing);
       },
       "target", "is Vextrel itself"},
      {"21: a target that the application finds, too",
       [](SoundSetup& s) {
         s.Set(kPathVariable, TextOf(s.producers) + kListSeparator + TextOf(s.target));
       },
       "target", "is also found through GENICAM_GENTL64_PATH"},
      {"22: a text as the target", [](SoundSetup& s) { Write(s.target, "text"); }, "target",
       "isn't a module"},
      {"23: a 32-bit target",
       [](SoundSetup& s) {
         MadeImage made;
         made.machine = kIsWindows ? 0x14C : 3;
         s.MakeTarget(made);
       },
       "target", "is a 32-bit module"},
      {"24: a target for the other system",
       [](SoundSetup& s) { Write(s.target, kIsWindows ? MadeElf({}) : MadePe({})); }, "target",
       kIsWindows ? "is a module for Linux" : "is a module for Windows"},
      {"25: a library that is no producer", [](SoundSetup& s) { s.MakeTarget({}, false); },
       "target", "isn't a GenTL producer"},
      {"26: a target that lacks a library",
       [](SoundSetup& s) {
         MadeImage made;
         made.needed = {"no-such-library.1"};
         s.MakeTarget(made);
       },
       "libraries", "no-such-library.1, which 'camera.cti' needs, isn't found"},
      {"27: a log in a folder that isn't there",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\n", "none/app.log"); }, "log",
       "there's no folder"},
      {"28: a folder in the place of the log",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\n", "target"); }, "log",
       "can't be written by this user"},
      {"29: an application that isn't there",
       [](SoundSetup& s) { s.setup.application = "no-such-application"; }, "application",
       "there's no application"},
      {"30: a 32-bit application",
       [](SoundSetup& s) {
         MadeImage made;
         made.machine = kIsWindows ? 0x14C : 3;
         s.MakeApplication("app.exe", made);
       },
       "application", "is a 32-bit application"},
      {"31: an application that refuses the standard module",
       [](SoundSetup& s) { s.MakeApplication("arv-tool-0.8"); }, "application",
       "refuses 'vextrel.cti'"},
      {"32: a script without an interpreter",
       [](SoundSetup& s) {
         s.MakeApplication("run.bat");
         Write(s.folder / "run.bat", "text");
       },
       "application", kIsWindows ? "is a script" : "is no program"},
      {"33: a package that isn't whole", [](SoundSetup& s) { s.setup.modules.standard.clear(); },
       "program", "vextrel.cti isn't where it belongs"},
  };
  if (kIsWindows) {
    list.push_back({"34: a target whose library lies beside it, where the module doesn't look",
                    [](SoundSetup& s) {
                      MadeImage made;
                      made.needed = {"beside.dll"};
                      s.MakeTarget(made);
                      Write(s.target.parent_path() / "beside.dll", MadePe({}));
                    },
                    "libraries", "beside.dll, which 'camera.cti' needs, isn't found"});
  } else {
    list.push_back({"34: a target that needs a newer system",
                    [](SoundSetup& s) {
                      MadeImage made;
                      made.needed = {"libc.so.6"};
                      made.neededVersion = "GLIBC_9.99";
                      s.MakeTarget(made);
                    },
                    "libraries", "is too old here: it lacks GLIBC_9.99"});
  }
  return list;
}

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
  const std::string library = kIsWindows ? "KERNEL32.dll" : "libstdc++.so.6";
  const std::string other = kIsWindows ? "KERNEL99.dll" : "libstdcXX.so.6";
  for (std::size_t at = bytes.find(library); at != std::string::npos; at = bytes.find(library)) {
    bytes.replace(at, library.size(), other);
  }
  const ScratchFile lame(bytes, "lame.cti");
  const TargetSession fails = TryTarget(program, PathOf(lame.Path()), variables, longEnough);
  EXPECT_FALSE(fails.isWhole);
  EXPECT_THAT(fails.text, HasSubstr(kIsWindows ? "fails: error " : "fails: libstdcXX.so.6"));
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
