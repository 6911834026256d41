// SPDX-License-Identifier: MIT
#include "launching/application.h"

#include <algorithm>
#include <vector>

#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/process.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> FoldersToSearch(const Variables& variables) {
  std::vector<fs::path> folders;
  if (kSearchesWorkingFolder) {
    folders.emplace_back(".");
  }
  const std::string value = variables.Find("PATH").value_or(std::string());
  std::string_view rest = value;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(kListSeparator), rest.size());
    // An empty entry of PATH is the working folder.
    folders.push_back(end == 0 ? fs::path(".") : PathOf(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return folders;
}

// The file with the first ending that there is one for. Empty if there's none.
fs::path WithEnding(const fs::path& path) {
  std::error_code ignored;
  for (const std::string_view ending : kProgramEndings) {
    fs::path file = path;
    file += PathOf(ending);
    if (fs::exists(file, ignored) && !fs::is_directory(file, ignored)) {
      return file;
    }
  }
  return {};
}

bool HasFolder(const std::string& name) {
  return PathOf(name).has_parent_path();
}

// The interpreter that the first line of a script names.
std::string InterpreterOf(std::string_view front) {
  front.remove_prefix(std::min(front.find_first_not_of(" \t", 2), front.size()));
  return std::string(front.substr(0, front.find_first_of(" \t\r\n")));
}

// How to start a script of this ending on Windows.
std::string_view StarterOf(const fs::path& file) {
  const std::string ending = TextOf(file.extension());
  for (const auto& [known, starter] :
       {std::pair<std::string_view, std::string_view>{".bat", "cmd /c"},
        {".cmd", "cmd /c"},
        {".ps1", "powershell -File"},
        {".py", "python"},
        {".vbs", "cscript"},
        {".js", "cscript"}}) {
    if (std::equal(ending.begin(), ending.end(), known.begin(), known.end(), [](char a, char b) {
          return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b;
        })) {
      return starter;
    }
  }
  return {};
}

// A file that isn't a program, on Linux.
std::optional<Fault> WhyNotAScript(std::string_view front) {
  if (!front.starts_with("#!")) {
    return Fault{"is no program, and no script whose first line names an interpreter",
                 "name the program that runs it first, as in 'sh ./script'"};
  }
  std::error_code ignored;
  const std::string interpreter = InterpreterOf(front);
  if (!fs::exists(PathOf(interpreter), ignored)) {
    return Fault{"needs the interpreter '" + interpreter + "', which isn't there",
                 "install it, or correct the script's first line"};
  }
  return std::nullopt;
}

// On Windows.
Fault WhyNotAProgram(const fs::path& file) {
  const std::string_view starter = StarterOf(file);
  return starter.empty() ? Fault{"is no program", "name the program that opens it first"}
                         : Fault{"is a script, which needs its interpreter",
                                 "put '" + std::string(starter) + "' in front of it"};
}

}  // namespace

fs::path FindApplication(const std::string& name, const Variables& variables) {
  std::error_code error;
  fs::path found;
  if (HasFolder(name)) {
    found = WithEnding(PathOf(name));
  } else {
    fs::path notExecutable;
    for (const fs::path& folder : FoldersToSearch(variables)) {
      const fs::path file = WithEnding(folder / PathOf(name));
      if (!file.empty() && IsExecutable(file)) {
        found = file;
        break;
      }
      notExecutable = notExecutable.empty() ? file : notExecutable;
    }
    found = found.empty() ? notExecutable : found;
  }
  if (found.empty() && fs::is_directory(PathOf(name), error)) {
    throw LaunchFailure(kExitNotExecutable, Fault{"'" + name + "' is a folder, not an application",
                                                  "name the program in it"});
  }
  if (found.empty()) {
    throw LaunchFailure(kExitNotFound, Fault{"there's no application '" + name + "'" +
                                                 (HasFolder(name) ? "" : " in the folders of PATH"),
                                             "name the application's own program"});
  }
  if (!IsExecutable(found)) {
    throw LaunchFailure(kExitNotExecutable, Fault{"'" + TextOf(found) + "' may not be executed",
                                                  "chmod +x makes it a program"});
  }
  return fs::absolute(found, error);
}

std::optional<Fault> WhyNotTraceable(const Image& image, std::string_view front,
                                     const fs::path& file, const Starter& starter) {
  const bool isOnLinux = starter.kind == ImageKind::Elf;
  if (image.kind == ImageKind::None) {
    return isOnLinux ? WhyNotAScript(front) : WhyNotAProgram(file);
  }
  if (image.kind != starter.kind) {
    return isOnLinux
               ? Fault{"is a Windows application",
                       "trace it on Windows, with the package for Windows"}
               : Fault{"is a Linux application", "trace it on Linux, with the package for Linux"};
  }
  if (image.machine == Machine::X86 && !image.runsOnAnyMachine) {
    return Fault{"is a 32-bit application, which can't load a 64-bit producer",
                 "trace its 64-bit edition"};
  }
  if (image.machine != Machine::X64 && !image.runsOnAnyMachine) {
    return Fault{"is an application for " + std::string(MachineName(image.machine)) +
                     ", and Vextrel is for x64",
                 "trace its edition for x64"};
  }
  if (image.isLibrary) {
    return Fault{"is a library, not an application", "name the program that loads it"};
  }
  if (image.wantsElevation && !starter.isElevated) {
    return WhyNotStarted(kWantsElevation);
  }
  return std::nullopt;
}

void CheckApplication(const fs::path& file) {
  constexpr std::size_t enough = 512;
  if (std::optional<Fault> why =
          WhyNotTraceable(ReadImage(file), ReadBytes(file, enough).value_or(std::string()), file,
                          {kOwnImageKind, IsElevated()})) {
    why->text = "'" + TextOf(file) + "' " + why->text;
    throw LaunchFailure(kExitNotExecutable, *why);
  }
}

}  // namespace vextrel::program
