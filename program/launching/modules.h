// SPDX-License-Identifier: MIT
// Which module traces which target.
#ifndef VEXTREL_PROGRAM_LAUNCHING_MODULES_H
#define VEXTREL_PROGRAM_LAUNCHING_MODULES_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "images/image.h"
#include "launching/fault.h"
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

struct ChosenTarget {
  std::filesystem::path path;  // absolute
  // Why it's this one, if it's neither named nor the only one that the search path shows.
  std::string why;
};

// The producer that is to be traced: the one that the user names, or the only one that the search
// path shows, or, if that shows nothing but Vextrel, the target that a set-up by hand has. Throws
// LaunchFailure if there's none, more than one, or if it can't be traced.
[[nodiscard]] ChosenTarget FindTarget(const std::string& named, const Variables& variables);

// Why the file can't be traced as a target, with its name. Nothing if it can.
[[nodiscard]] std::optional<Fault> FaultOfTarget(const std::filesystem::path& target);

// Why none of the producers that the variable shows can be taken for the target by itself. Nothing
// if one can. `others` are those that aren't Vextrel.
[[nodiscard]] std::optional<Fault> FaultOfChoice(const std::vector<std::filesystem::path>& others,
                                                 bool showsVextrel);

// One of our modules isn't where it belongs.
[[nodiscard]] Fault FaultOfPackage(std::string_view module);

// Why it isn't a 64-bit producer. Nothing if it is. The text comes without the file's name.
// `ownKind` is what this system's modules are.
[[nodiscard]] std::optional<Fault> WhyNotATarget(const Image& image, ImageKind ownKind);

// The module that suits a producer with these exports, and why.
struct SuitableModule {
  bool isExtended = false;
  std::string_view name;
  std::string why;
};
[[nodiscard]] SuitableModule ModuleFor(const std::vector<std::string>& exports);

// The module for this target. Throws LaunchFailure if it isn't there, or can't do what is asked
// for.
[[nodiscard]] std::filesystem::path ChooseModule(ModuleChoice choice, bool withTiming,
                                                 const std::filesystem::path& target,
                                                 const OwnModules& modules);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_MODULES_H
