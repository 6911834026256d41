// SPDX-License-Identifier: MIT
// What is decided before an application is started: everything of program/launching that starts
// nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "images/file_bytes.h"
#include "launching/application.h"
#include "launching/failure.h"
#include "launching/log_file.h"
#include "launching/modules.h"
#include "launching/process.h"
#include "launching/quoting.h"
#include "launching/search_path.h"
#include "launching/system.h"
#include "launching/trace_folder.h"
#include "launching/variables.h"
#include "program/made_images.h"
#include "program/small_log.h"

namespace vextrel_test {
namespace {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

TEST(Quoting, FollowsTheRulesOfWindows) {
  const std::pair<const char*, const char*> cases[] = {
      {"plain", "plain"},
      {"", R"("")"},
      {"two words", R"("two words")"},
      {"tab\there", "\"tab\there\""},
      {R"(a\b)", R"(a\b)"},
      {R"(C:\end\)", R"(C:\end\)"},
      {R"(C:\my end\)", R"("C:\my end\\")"},
      {R"(a"b)", R"("a\"b")"},
      {R"(a\"b)", R"("a\\\"b")"},
      {R"(\\share\x y)", R"("\\share\x y")"},
      {"%PATH% ^& | < >", "\"%PATH% ^& | < >\""},
  };
  for (const auto& [argument, expected] : cases) {
    EXPECT_EQ(QuotedCommandLine({"p q", argument}), std::string("\"p q\" ") + expected);
  }
}

TEST(Variables, AreFoundAsTheSystemFindsThem) {
  Variables windows(true);
  windows.Set("Path", "1");
  windows.Set("PATH", "2");
  windows.Set("a_", "3");
  windows.Set("aB", "");
  EXPECT_EQ(windows.Find("path"), "2");
  EXPECT_EQ(windows.Find("aB"), std::nullopt);
  // In the order of upper-case letters.
  EXPECT_THAT(windows.Entries(), ElementsAre("aB=", "a_=3", "Path=2"));
  Variables linux(false);
  linux.Set("Path", "1");
  linux.Set("PATH", "2");
  linux.Remove("Path");
  EXPECT_EQ(linux.Find("Path"), std::nullopt);
  EXPECT_EQ(linux.Find("PATH"), "2");

  linux.Set("HERE", "/x");
  std::string missing;
  EXPECT_EQ(ExpandReference("$(HERE)/y/$(HERE)", linux), "/x/y/$(HERE)");
  EXPECT_EQ(ExpandReference("plain $(", linux), "plain $(");
  EXPECT_EQ(ExpandReference("$(NOWHERE)/y", linux, &missing), std::nullopt);
  EXPECT_EQ(missing, "NOWHERE");
}

TEST(SearchPath, ShowsProducersOnce) {
  const ScratchFile one("", "b.cti");
  static_cast<void>(one.Beside("", "a.CTI"));
  static_cast<void>(one.Beside("", "c.txt"));
  const std::string folder = TextOf(PathOf(one.Path()).parent_path());
  const auto entries = ReadSearchPath(folder + "|" + one.Path() + "||" + folder + "/none", '|');
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_TRUE(entries[0].isFolder);
  EXPECT_EQ(entries[0].producers.size(), 2U);
  EXPECT_EQ(entries[1].producers.size(), 1U);
  EXPECT_FALSE(entries[2].exists);
  const auto producers = ProducersOf(entries);
  ASSERT_EQ(producers.size(), 2U);
  EXPECT_EQ(producers[0].filename(), "a.CTI");
  EXPECT_EQ(producers[1].filename(), "b.cti");
}

std::string FailureOf(const std::function<void()>& action, int status) {
  try {
    action();
  } catch (const LaunchFailure& failure) {
    EXPECT_EQ(failure.Status(), status) << failure.what();
    return failure.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return "";
}

TEST(Modules, AreChosenByTheTarget) {
  const OwnModules modules{PathOf(VEXTREL), PathOf(VEXTREL_EXTENDED_MODULE)};
  const fs::path old = PathOf(SIMULATED_CAMERA);
  const fs::path newer = PathOf(SIMULATED_CAMERA_EXTENDED);
  const auto choose = [&](ModuleChoice choice, bool timing, const fs::path& target) {
    return ChooseModule(choice, timing, target, modules);
  };
  EXPECT_EQ(choose(ModuleChoice::Auto, false, old), modules.standard);
  EXPECT_EQ(choose(ModuleChoice::Auto, true, old), modules.extended);
  EXPECT_EQ(choose(ModuleChoice::Auto, false, newer), modules.extended);
  EXPECT_EQ(choose(ModuleChoice::Standard, false, newer), modules.standard);
  EXPECT_EQ(choose(ModuleChoice::Extended, false, old), modules.extended);
  EXPECT_THAT(FailureOf([&] { static_cast<void>(choose(ModuleChoice::Standard, true, old)); }, 2),
              HasSubstr("no timing lines"));
  EXPECT_THAT(
      FailureOf([&] { static_cast<void>(ChooseModule(ModuleChoice::Auto, false, old, {})); }, 125),
      HasSubstr("unpack the whole package"));
  EXPECT_TRUE(IsVextrel(modules.standard));
  EXPECT_TRUE(IsVextrel(modules.extended));
  EXPECT_FALSE(IsVextrel(old));
  // Beside the program, as the build puts them.
  EXPECT_TRUE(IsSameFile(FindOwnModules(PathOf(VEXTREL_PROGRAM_FILE)).standard, modules.standard));
}

TEST(Modules, TargetIsNamedOrTheOnlyOneThatTheVariableShows) {
  const ScratchFile scratch("", "empty.cti");
  const fs::path folder = PathOf(scratch.Path()).parent_path() / "producers";
  fs::create_directory(folder);
  fs::copy_file(PathOf(VEXTREL), folder / "other.cti");
  Variables variables;
  const auto find = [&](const std::string& named) { return FindTarget(named, variables).path; };
  const auto why = [&](int status, const std::string& named = "") {
    return FailureOf([&] { static_cast<void>(find(named)); }, status);
  };
  EXPECT_THAT(why(125), HasSubstr("GENICAM_GENTL64_PATH isn't set"));
  variables.Set(kPathVariable, TextOf(folder));
  EXPECT_THAT(why(125), HasSubstr("leads to Vextrel only"));
  // A set-up by hand has its target.
  variables.Set(kTargetVariable, "$(NOWHERE)/camera.cti");
  EXPECT_THAT(why(125), HasSubstr("$(NOWHERE) in GENICAM_GENTL64_VEXTREL_PRODUCER can't be "
                                  "replaced: set NOWHERE, or write the path itself"));
  variables.Set("NOWHERE", TextOf(PathOf(SIMULATED_CAMERA).parent_path()));
  variables.Set(kTargetVariable, "$(NOWHERE)/" + TextOf(PathOf(SIMULATED_CAMERA).filename()));
  EXPECT_TRUE(fs::equivalent(find(""), PathOf(SIMULATED_CAMERA)));
  variables.Set(kTargetVariable, "nowhere.cti");
  EXPECT_THAT(why(125), HasSubstr("the target 'nowhere.cti' isn't there"));
  fs::copy_file(PathOf(SIMULATED_CAMERA), folder / "camera.cti");
  EXPECT_EQ(find(""), folder / "camera.cti");
  fs::copy_file(PathOf(SIMULATED_CAMERA), folder / "second.cti");
  EXPECT_THAT(why(2), testing::AllOf(HasSubstr("camera.cti"), HasSubstr("second.cti")));
  EXPECT_EQ(find(TextOf(folder / "second.cti")), folder / "second.cti");
  EXPECT_THAT(why(125, TextOf(folder / "none.cti")), HasSubstr("none.cti' isn't there: name"));
  EXPECT_THAT(why(125, TextOf(folder)), HasSubstr("is a folder"));
  EXPECT_THAT(why(125, TextOf(folder / "other.cti")), HasSubstr("is Vextrel itself"));
}

TEST(Modules, TargetIsAProducerForThisMachine) {
  const auto why = [](const std::string& bytes, ImageKind kind) {
    const auto fault = WhyNotATarget(ParseImage(bytes), kind);
    return fault ? fault->Sentence() : std::string();
  };
  const std::string remedy = ": name a 64-bit producer for this system";
  MadeImage made;
  made.exports = {"GCInitLib"};
  EXPECT_EQ(why(MadeElf(made), ImageKind::Elf), "");
  EXPECT_EQ(why(MadePe(made), ImageKind::Pe), "");
  EXPECT_EQ(why(MadePe(made), ImageKind::Elf), "is a module for Windows" + remedy);
  EXPECT_EQ(why(MadeElf(made), ImageKind::Pe), "is a module for Linux" + remedy);
  EXPECT_EQ(why("text", ImageKind::Pe), "isn't a module: name the .cti file of the camera's maker");
  made.machine = 0x14C;
  EXPECT_EQ(why(MadePe(made), ImageKind::Pe),
            "is a 32-bit module: use the 64-bit edition of the maker's software");
  made.machine = 183;
  EXPECT_EQ(why(MadeElf(made), ImageKind::Elf),
            "is a module for ARM64, and Vextrel is for x64" + remedy);
  made.machine = 0;
  made.exports = {"other"};
  EXPECT_EQ(why(MadeElf(made), ImageKind::Elf),
            "isn't a GenTL producer, since it doesn't export GCInitLib: name the .cti file of the "
            "camera's maker");
}

TEST(Application, ThatCannotBeTracedIsToldInAPlainSentence) {
  MadeImage made;
  made.isLibrary = false;
  const fs::path file = "app";
  const auto why = [&](const std::string& bytes, ImageKind kind, const fs::path& name = "app",
                       bool isElevated = false) {
    const auto fault =
        WhyNotTraceable(ParseImage(bytes), bytes.substr(0, 512), name, {kind, isElevated});
    return fault ? fault->Sentence() : "";
  };
  EXPECT_EQ(why(MadeElf(made), ImageKind::Elf), "");
  EXPECT_EQ(why(MadePe(made), ImageKind::Pe), "");
  EXPECT_THAT(why(MadePe(made), ImageKind::Elf), HasSubstr("is a Windows application"));
  EXPECT_THAT(why(MadeElf(made), ImageKind::Pe), HasSubstr("is a Linux application"));
  made.machine = 3;
  EXPECT_THAT(why(MadeElf(made), ImageKind::Elf), HasSubstr("is a 32-bit application"));
  made.machine = 0x14C;
  EXPECT_THAT(why(MadePe(made), ImageKind::Pe), HasSubstr("is a 32-bit application"));
  made.dotNetFlags = 1;
  EXPECT_EQ(why(MadePe(made), ImageKind::Pe), "");
  made.machine = 0xAA64;
  EXPECT_THAT(why(MadePe(made), ImageKind::Pe), HasSubstr("for ARM64"));
  EXPECT_EQ(why("@echo", ImageKind::Pe, "run.BAT"),
            "is a script, which needs its interpreter: put 'cmd /c' in front of it");
  EXPECT_THAT(why("print()", ImageKind::Pe, "run.py"), HasSubstr("put 'python' in front"));
  EXPECT_THAT(why("text", ImageKind::Pe), HasSubstr("is no program"));
  EXPECT_EQ(why("text", ImageKind::Elf),
            "is no program, and no script whose first line names an interpreter: name the program "
            "that runs it first, as in 'sh ./script'");
  EXPECT_EQ(why("#!/no/such -x\n", ImageKind::Elf),
            "needs the interpreter '/no/such', which isn't there: install it, or correct the "
            "script's first line");
}

// Wine starts what wants an administrator's rights in any case, so the sentence is tried by itself:
// before the start, and for the number with which Windows refuses it.
TEST(Application, ThatWantsAnAdministratorIsToldFromWhere) {
  MadeImage made;
  made.isLibrary = false;
  made.manifest = R"(<requestedExecutionLevel level="requireAdministrator" uiAccess="false"/>)";
  const Image image = ParseImage(MadePe(made));
  const std::string sentence =
      "runs as an administrator only, and gets variables of its own then: open a command prompt as "
      "an administrator, and start 'vextrel trace' there";
  const auto refused = WhyNotTraceable(image, "MZ", "app.exe", {ImageKind::Pe, false});
  ASSERT_TRUE(refused.has_value());
  EXPECT_EQ(refused->Sentence(), sentence);
  EXPECT_EQ(WhyNotStarted(740).Sentence(), sentence);
  EXPECT_FALSE(WhyNotTraceable(image, "MZ", "app.exe", {ImageKind::Pe, true}).has_value());
  EXPECT_THAT(WhyNotStarted(193).text, HasSubstr("no program for this system"));
}

TEST(LogFile, IsNewAndCanBeWritten) {
  const ScratchFile full("something", "full.log");
  const fs::path folder = PathOf(full.Path()).parent_path();
  const Variables variables;
  const auto choose = [&](const fs::path& name) {
    return ChooseLogFile(TextOf(name), "app", variables).path;
  };
  EXPECT_EQ(choose(folder / "new.log"), folder / "new.log");
  EXPECT_FALSE(fs::exists(folder / "new.log"));
  const std::string empty = full.Beside("", "empty.log");
  EXPECT_EQ(choose(PathOf(empty)), fs::absolute(PathOf(empty)));
  EXPECT_THAT(FailureOf([&] { static_cast<void>(choose(PathOf(full.Path()))); }, 125),
              HasSubstr("exists already"));
  EXPECT_THAT(FailureOf([&] { static_cast<void>(choose(folder / "none" / "new.log")); }, 125),
              HasSubstr("there's no folder"));
  EXPECT_THAT(FailureOf([&] { static_cast<void>(choose(folder)); }, 125),
              HasSubstr("isn't a file"));
  std::tm time{};
  time.tm_year = 126;
  time.tm_mon = 10;
  time.tm_mday = 2;
  time.tm_hour = 3;
  EXPECT_EQ(LogName("/opt/my app.exe", time, 4711), "my app-20261102-030000-4711.log");
}

TEST(LogFile, ThatIsThereNeedsNoFolderToWriteTo) {
  const ScratchFile log("a line\n", "app.log");
  const fs::path folder = PathOf(log.Path()).parent_path();
  EXPECT_FALSE(FaultOfLog(PathOf(log.Path())).has_value());
  EXPECT_EQ(ReadBytes(PathOf(log.Path())), "a line\n");
  if (kOwnImageKind == ImageKind::Elf) {
    EXPECT_FALSE(FaultOfLog("/dev/full").has_value());
  }
  const auto why = [](const fs::path& path) {
    const auto fault = FaultOfLog(path);
    return fault ? fault->Sentence() : "";
  };
  EXPECT_THAT(why(folder), HasSubstr("can't be written, since it's a folder: name a file in it"));
  EXPECT_THAT(why(folder / "none" / "app.log"),
              HasSubstr("app.log' can't be written: there's no folder '"));
}

TEST(LogFile, ThatEndsInTheMiddleOfALineIsCutShort) {
  const ScratchFile log("", "app.log");
  const fs::path path = PathOf(log.Path());
  EXPECT_EQ(WhyCutShort(path), "");
  log.Append("a line\n");
  EXPECT_EQ(WhyCutShort(path), "");
  log.Append("half a");
  EXPECT_THAT(WhyCutShort(path), HasSubstr("the log ends in the middle of a line"));
  EXPECT_EQ(WhyCutShort(path.parent_path() / "none"), "");
}

TEST(TraceFolder, HoldsTheModuleAloneAndGoes) {
  const fs::path target = PathOf(SIMULATED_CAMERA);
  fs::path path;
  {
    const TraceFolder folder(PathOf(VEXTREL), "text", ProcessVariables());
    path = folder.Path();
    std::vector<std::string> names;
    for (const auto& file : fs::directory_iterator(folder.ProducerFolder())) {
      names.push_back(TextOf(file.path().filename()));
    }
    EXPECT_THAT(names, ElementsAre("vextrel.cti"));
    Variables before;
    before.Set(kPathVariable, "/where/the/target/is");
    const Variables variables =
        TracedVariables(before, folder, target, folder.PropertyFile(), "a#b.log");
    EXPECT_EQ(variables.Find(kPathVariable), TextOf(folder.ProducerFolder()));
    EXPECT_EQ(variables.Find(kTargetVariable), TextOf(target));
    EXPECT_EQ(variables.Find(kConfigVariable), TextOf(folder.PropertyFile()));
    EXPECT_EQ(variables.Find(kLogVariable), "a#b.log");
    // The module would replace what looks like a reference.
    const Variables odd = TracedVariables(before, folder, "/a$(b)/c.cti", "c", "");
    EXPECT_EQ(ExpandReference(*odd.Find(kTargetVariable), odd), TextOf(fs::path("/a$(b)/c.cti")));
  }
  EXPECT_FALSE(fs::exists(path));
}

}  // namespace
}  // namespace vextrel_test
