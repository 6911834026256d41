// SPDX-License-Identifier: MIT
// What starting an application needs to know of the system: one file for each.
#ifndef VEXTREL_PROGRAM_LAUNCHING_SYSTEM_H
#define VEXTREL_PROGRAM_LAUNCHING_SYSTEM_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "images/image.h"
#include "launching/variables.h"

namespace vextrel::program {

// Between the entries of a search path.
extern const char kListSeparator;
// What this system's programs and modules are.
extern const ImageKind kOwnImageKind;
// "Windows" or "Linux"
extern const std::string_view kSystemName;
// What the name of a program can end with, "" included.
extern const std::span<const std::string_view> kProgramEndings;
// True iff a program is also looked for in the working folder.
extern const bool kSearchesWorkingFolder;

[[nodiscard]] Variables ProcessVariables();
// Those that Windows keeps for the user, and for all users. Empty on other systems.
struct StoredVariables {
  Variables user;
  Variables machine;
};
[[nodiscard]] std::optional<StoredVariables> ReadStoredVariables();

// The arguments of main, without the program's own name. In UTF-8 on Windows, whatever the system's
// code page is: what isn't valid UTF-16 survives, too.
[[nodiscard]] std::vector<std::string> ProgramArguments(int count, char** values);

// The file of this program.
[[nodiscard]] std::filesystem::path OwnProgram();
[[nodiscard]] std::uint32_t OwnProcessId();
// True iff this process has an administrator's rights.
[[nodiscard]] bool IsElevated();

// Where temporary files belong, best first.
[[nodiscard]] std::vector<std::filesystem::path> TemporaryFolders(const Variables& variables);
// Where this user's programs keep data: empty if unknown. It need not exist.
[[nodiscard]] std::filesystem::path UserDataFolder(const Variables& variables);
// Makes a folder with a name of its own, which only this user can write to. Empty if it can't be
// made.
[[nodiscard]] std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent);
// True iff the file may be started by this user.
[[nodiscard]] bool IsExecutable(const std::filesystem::path& file);
// True iff modules can be loaded from the folder.
[[nodiscard]] bool CanLoadModulesFrom(const std::filesystem::path& folder);
// True iff the folder is on another machine.
[[nodiscard]] bool IsOnNetwork(const std::filesystem::path& folder);

// The path in a form that the module, which takes no wide characters, gets unharmed: the path
// itself, or its short form. Empty if there's none.
[[nodiscard]] std::optional<std::string> NarrowPath(const std::filesystem::path& path);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_SYSTEM_H
