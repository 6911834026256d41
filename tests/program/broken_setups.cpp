// SPDX-License-Identifier: MIT
#include "program/broken_setups.h"

#include <fstream>

#include "launching/system.h"
#include "support/system.h"

namespace vextrel_test {

using namespace vextrel::program;  // NOLINT(google-build-using-namespace)

namespace fs = std::filesystem;

void WriteFile(const fs::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

SoundSetup::SoundSetup() {
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

void SoundSetup::SetConfig(const std::string& front, const std::string& log) const {
  WriteFile(config, front + "appender.file=FileAppender\nappender.file.fileName=" +
                        folder.generic_string() + "/" + log +
                        "\nappender.file.layout=PatternLayout\n");
}

void SoundSetup::MakeTarget(MadeImage made, bool exportsGentl) const {
  if (exportsGentl) {
    made.exports = {"GCInitLib"};
  }
  WriteFile(target, MadeForThisSystem(made));
}

void SoundSetup::MakeApplication(const std::string& name, MadeImage made) {
  made.isLibrary = false;
  const fs::path file = folder / name;
  WriteFile(file, MadeForThisSystem(made));
  fs::permissions(file, fs::perms::owner_all);
  setup.application = TextOf(file);
}

void SoundSetup::Set(const char* variable, const std::string& value) {
  setup.variables.Set(variable, value);
}

std::vector<BrokenSetup> BrokenSetups() {
  std::vector<BrokenSetup> list = {
      {"1: no search path", [](SoundSetup& s) { s.setup.variables.Remove(kPathVariable); },
       "variables", "GENICAM_GENTL64_PATH isn't set", Told::Nothing, TraceEnd::Refused},
      {"2: a search path for 32-bit applications only",
       [](SoundSetup& s) {
         s.setup.variables.Remove(kPathVariable);
         s.Set(kPathVariable32, TextOf(s.producers));
       },
       "variables", "GENICAM_GENTL32_PATH is set, and GENICAM_GENTL64_PATH isn't", Told::Nothing,
       TraceEnd::Refused},
      {"3: quotes in the search path",
       [](SoundSetup& s) { s.Set(kPathVariable, "\"" + TextOf(s.producers) + "\""); }, "variables",
       "has quotes", Told::Nothing, TraceEnd::Refused},
      {"4: the other system's separator",
       [](SoundSetup& s) {
         s.Set(kPathVariable, TextOf(s.producers) + (kOnWindows ? ":" : ";") + TextOf(s.folder));
       },
       "variables", kOnWindows ? "has ':' between" : "has ';' between", Told::Nothing,
       TraceEnd::Refused},
      {"5: a folder that isn't there",
       [](SoundSetup& s) { s.Set(kPathVariable, TextOf(s.folder / "none")); }, "variables",
       "isn't there", Told::Nothing, TraceEnd::Refused},
      {"6: a reference that nobody replaces",
       [](SoundSetup& s) { s.Set(kPathVariable, kOnWindows ? "%HOME%\\x" : "~/x"); }, "variables",
       "has a reference", Told::Nothing, TraceEnd::Refused},
      {"7: a blank at the end",
       [](SoundSetup& s) { s.Set(kPathVariable, TextOf(s.folder / "none") + " "); }, "variables",
       "has a blank", Told::Nothing, TraceEnd::Refused},
      {"8: no module in the search path",
       [](SoundSetup& s) { fs::remove(s.producers / "vextrel.cti"); }, "module",
       "nothing in GENICAM_GENTL64_PATH is Vextrel", Told::Target, TraceEnd::Well},
      {"9: both modules in the search path",
       [](SoundSetup& s) {
         fs::copy_file(PathOf(VEXTREL_EXTENDED_MODULE), s.producers / "vextrel_extended.cti");
       },
       "module", "Vextrel is there 2 times", Told::Target, TraceEnd::Well},
      {"10: no configuration", [](SoundSetup& s) { s.setup.variables.Remove(kConfigVariable); },
       "configuration", "LOG_CONFIG isn't set", Told::Target, TraceEnd::Well},
      {"11: a configuration behind a variable that isn't set",
       [](SoundSetup& s) { s.Set(kConfigVariable, "$(NOWHERE)/x"); }, "configuration",
       "$(NOWHERE) in", Told::Target, TraceEnd::Well},
      {"12: a configuration that isn't there", [](SoundSetup& s) { fs::remove(s.config); },
       "configuration", "isn't there", Told::Configuration, TraceEnd::Refused},
      {"13: a byte order mark",
       [](SoundSetup& s) { s.SetConfig("\xEF\xBB\xBFrootCategory=INFO, file\n"); }, "configuration",
       "line 1: a byte order mark", Told::Configuration, TraceEnd::Refused},
      {"14: a misspelled configuration",
       [](SoundSetup& s) { s.SetConfig("rootCategroy=INFO, file\n"); }, "configuration",
       "has no rootCategory", Told::Configuration, TraceEnd::Refused},
      {"15: a line with a variable that isn't set",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\nx=$(NOWHERE)\n"); },
       "configuration", "line 2: $(NOWHERE) can't be replaced", Told::Configuration,
       TraceEnd::Refused},
      {"16: no target", [](SoundSetup& s) { s.setup.variables.Remove(kTargetVariable); }, "target",
       "PRODUCER isn't set", Told::Target, TraceEnd::Well},
      {"17: a target behind a variable that isn't set",
       [](SoundSetup& s) { s.Set(kTargetVariable, "$(NOWHERE)/x.cti"); }, "target", "$(NOWHERE) in",
       Told::Target, TraceEnd::Well},
      {"18: a target that isn't there", [](SoundSetup& s) { fs::remove(s.target); }, "target",
       "isn't there", Told::Target, TraceEnd::Refused},
      {"19: a folder as the target",
       [](SoundSetup& s) {
         fs::remove(s.target);
         fs::create_directory(s.target);
       },
       "target", "is a folder", Told::Target, TraceEnd::Refused},
      {"20: a copy of Vextrel as the target",
       [](SoundSetup& s) {
         fs::copy_file(PathOf(VEXTREL), s.target, fs::copy_options::overwrite_existing);
       },
       "target", "is Vextrel itself", Told::Target, TraceEnd::Refused},
      {"21: a target that the application finds, too",
       [](SoundSetup& s) {
         s.Set(kPathVariable, TextOf(s.producers) + kListSeparator + TextOf(s.target));
       },
       "target", "is also found through GENICAM_GENTL64_PATH", Told::Target, TraceEnd::Well},
      {"22: a text as the target", [](SoundSetup& s) { WriteFile(s.target, "text"); }, "target",
       "isn't a module", Told::Target, TraceEnd::Refused},
      {"23: a 32-bit target",
       [](SoundSetup& s) {
         MadeImage made;
         made.machine = kOnWindows ? 0x14C : 3;
         s.MakeTarget(made);
       },
       "target", "is a 32-bit module", Told::Target, TraceEnd::Refused},
      {"24: a target for the other system",
       [](SoundSetup& s) { WriteFile(s.target, kOnWindows ? MadeElf({}) : MadePe({})); }, "target",
       kOnWindows ? "is a module for Linux" : "is a module for Windows", Told::Target,
       TraceEnd::Refused},
      {"25: a library that is no producer", [](SoundSetup& s) { s.MakeTarget({}, false); },
       "target", "isn't a GenTL producer", Told::Target, TraceEnd::Refused},
      {"26: a target that lacks a library",
       [](SoundSetup& s) {
         MadeImage made;
         made.needed = {"no-such-library.1"};
         s.MakeTarget(made);
       },
       "libraries", "no-such-library.1, which 'camera.cti' needs, isn't found", Told::Target,
       TraceEnd::WithoutCalls},
      {"27: a log in a folder that isn't there",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\n", "none/app.log"); }, "log",
       "there's no folder", Told::Configuration, TraceEnd::Refused},
      {"28: a folder in the place of the log",
       [](SoundSetup& s) { s.SetConfig("rootCategory=INFO, file\n", "target"); }, "log",
       "can't be written, since it's a folder", Told::Configuration, TraceEnd::Refused},
      {"29: an application that isn't there",
       [](SoundSetup& s) { s.setup.application = "no-such-application"; }, "application",
       "there's no application", Told::Target, TraceEnd::NotFound},
      {"30: a 32-bit application",
       [](SoundSetup& s) {
         MadeImage made;
         made.machine = kOnWindows ? 0x14C : 3;
         s.MakeApplication("app.exe", made);
       },
       "application", "is a 32-bit application", Told::Target, TraceEnd::NotStartable},
      {"31: an application that refuses the standard module",
       [](SoundSetup& s) {
         const fs::path tool = s.folder / "arv-tool-0.8";
         fs::copy_file(PathOf(SHOW_ITSELF_PROGRAM), tool);
         s.setup.application = TextOf(tool);
       },
       "application", "refuses 'vextrel.cti'", Told::Target, TraceEnd::WithoutCalls},
      {"32: a script without an interpreter",
       [](SoundSetup& s) {
         s.MakeApplication("run.bat");
         WriteFile(s.folder / "run.bat", "text");
       },
       "application", kOnWindows ? "is a script" : "is no program", Told::Target,
       TraceEnd::NotStartable},
      {"33: a package that isn't whole", [](SoundSetup& s) { s.setup.modules.standard.clear(); },
       "program", "vextrel.cti isn't where it belongs", Told::NothingElse, TraceEnd::Refused},
  };
  if (kOnWindows) {
    list.push_back({"34: a target whose library lies beside it, where the module doesn't look",
                    [](SoundSetup& s) {
                      MadeImage made;
                      made.needed = {"beside.dll"};
                      s.MakeTarget(made);
                      WriteFile(s.target.parent_path() / "beside.dll", MadePe({}));
                    },
                    "libraries", "beside.dll, which 'camera.cti' needs, isn't found", Told::Target,
                    TraceEnd::WithoutCalls,
                    "the target's libraries lie beside it, so its folder is at the end of the "
                    "application's PATH"});
  } else {
    list.push_back({"34: a target that needs a newer system",
                    [](SoundSetup& s) {
                      MadeImage made;
                      made.needed = {"libc.so.6"};
                      made.neededVersion = "GLIBC_9.99";
                      s.MakeTarget(made);
                    },
                    "libraries", "is too old here: it lacks GLIBC_9.99", Told::Target,
                    TraceEnd::WithoutCalls});
  }
  return list;
}

}  // namespace vextrel_test
