// SPDX-License-Identifier: MIT
// Which module traces which target.
#ifndef VEXTREL_PROGRAM_LAUNCHING_MODULES_H
#define VEXTREL_PROGRAM_LAUNCHING_MODULES_H

#include <filesystem>
#include <string>
#include <vector>

#include "images/image.h"
#include "launching/variables.h"

namespace vextrel::program {

enum class ModuleChoice { Auto, Standard, Extended };

// Our own modules. A path is empty if the module isn't there.
struct OwnModules {
  std::filesystem::path standard;
  std::filesystem::path extended;
};

// Those that belong to the program at this path: where the package or the build has put them.
[[nodiscard]] OwnModules FindOwnModules(const std::filesystem::path& program);

// True iff the file is one of our modules, under whatever name.
[[nodiscard]] bool IsVextrel(const std::filesystem::path& file);

// The producer that is to be traced, as an absolute path: the one that the user names, or the only
// one that the variable shows. Throws LaunchFailure if there's none, or more than one.
[[nodiscard]] std::filesystem::path FindTarget(const std::string& named,
                                               const Variables& variables);

// Throws LaunchFailure if the file isn't a 64-bit producer of this system.
void CheckTarget(const std::filesystem::path& target);

// Why it isn't: empty if it is. `ownKind` is what this system's modules are.
[[nodiscard]] std::string WhyNotATarget(const Image& image, ImageKind ownKind);

// The module for this target. Throws LaunchFailure if it isn't there, or can't do what is asked
// for.
[[nodiscard]] std::filesystem::path ChooseModule(ModuleChoice choice, bool withTiming,
                                                 const std::filesystem::path& target,
                                                 const OwnModules& modules);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_MODULES_H
