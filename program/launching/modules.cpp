// SPDX-License-Identifier: MIT
#include "launching/modules.h"

#include <algorithm>

#include "images/file_bytes.h"
#include "images/image.h"
#include "launching/failure.h"
#include "launching/gentl_functions.h"
#include "launching/search_path.h"
#include "launching/system.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

constexpr const char* kStandardName = "vextrel.cti";
constexpr const char* kExtendedName = "vextrel_extended.cti";

// Both modules consist of code that reads this variable, and nothing else does.
constexpr std::string_view kMark = "GENICAM_GENTL64_VEXTREL_PRODUCER";

// A package has each module in a folder of its own, a build has both beside the program.
fs::path FindModule(const fs::path& program, const char* folder, const char* name) {
  const fs::path here = program.parent_path();
  std::error_code ignored;
  for (const fs::path& place :
       {here.parent_path() / VEXTREL_LIBDIR / folder / name,
        here.parent_path() / "lib" / folder / name, here / folder / name, here / name}) {
    if (fs::is_regular_file(place, ignored)) {
      return place;
    }
  }
  return {};
}

fs::path Absolute(const fs::path& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return error ? path : absolute;
}

// The target of a set-up by hand.
ChosenTarget TargetOfSetup(const Variables& variables) {
  if (const std::optional<Fault> fault = FaultOfReference(kTargetVariable, variables)) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
  return {PathOf(*ExpandReference(*variables.Find(kTargetVariable), variables)),
          std::string(kPathVariable) + " leads to Vextrel only, so the target is the one that " +
              kTargetVariable + " names"};
}

ChosenTarget TargetOfVariables(const Variables& variables) {
  if (const std::optional<Fault> fault = FaultOfPathVariable(variables)) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
  const std::vector<PathEntry> entries =
      ReadSearchPath(*variables.Find(kPathVariable), kListSeparator);
  std::vector<fs::path> producers = ProducersOf(entries);
  const bool showsVextrel = std::erase_if(producers, IsVextrel) > 0;
  if (producers.empty() && showsVextrel && variables.Find(kTargetVariable)) {
    return TargetOfSetup(variables);
  }
  if (producers.empty()) {
    for (const PathEntry& entry : entries) {
      if (const std::optional<Fault> fault = FaultOfEntry(entry, kListSeparator)) {
        throw LaunchFailure(kExitOwnFailure, *fault);
      }
    }
  }
  if (const std::optional<Fault> fault = FaultOfChoice(producers, showsVextrel)) {
    throw LaunchFailure(producers.empty() ? kExitOwnFailure : kExitChoice, *fault);
  }
  return {producers.front(), ""};
}

}  // namespace

OwnModules FindOwnModules(const fs::path& program) {
  return {FindModule(program, "vextrel", kStandardName),
          FindModule(program, "vextrel-extended", kExtendedName)};
}

bool IsVextrel(const fs::path& file) {
  const std::optional<std::string> bytes = ReadBytes(file);
  return bytes && bytes->find(kMark) != std::string::npos && ParseImage(*bytes).isLibrary;
}

ChosenTarget FindTarget(const std::string& named, const Variables& variables) {
  ChosenTarget target =
      named.empty() ? TargetOfVariables(variables) : ChosenTarget{PathOf(named), ""};
  if (const std::optional<Fault> fault = FaultOfTarget(target.path)) {
    throw LaunchFailure(kExitOwnFailure, *fault);
  }
  target.path = Absolute(target.path);
  return target;
}

std::optional<Fault> FaultOfChoice(const std::vector<fs::path>& others, bool showsVextrel) {
  if (others.empty()) {
    return Fault{
        std::string(kPathVariable) + (showsVextrel ? std::string(" leads to Vextrel only, and ") +
                                                         kTargetVariable + " names no target"
                                                   : std::string(" leads to no producer")),
        "name the producer that is to be traced with --target"};
  }
  if (others.size() == 1) {
    return std::nullopt;
  }
  std::string text =
      std::string(kPathVariable) + " leads to " + std::to_string(others.size()) + " producers";
  for (const fs::path& producer : others) {
    text += ", '" + TextOf(producer) + "'";
  }
  return Fault{text, "choose one with --target"};
}

std::optional<Fault> FaultOfTarget(const fs::path& target) {
  const std::string name = "the target '" + TextOf(target) + "' ";
  std::error_code ignored;
  if (!fs::exists(target, ignored)) {
    return Fault{name + "isn't there", "name the .cti file of the camera's maker"};
  }
  if (fs::is_directory(target, ignored)) {
    return Fault{name + "is a folder", "name the .cti file in it"};
  }
  if (!ReadBytes(target, 1)) {
    return Fault{name + "can't be read by this user", "allow the user to read it"};
  }
  if (IsVextrel(target)) {
    return Fault{name + "is Vextrel itself", "name the producer that it is to trace"};
  }
  std::optional<Fault> why = WhyNotATarget(ReadImage(target), kOwnImageKind);
  if (why) {
    why->text = name + why->text;
  }
  return why;
}

Fault FaultOfPackage(std::string_view module) {
  return {std::string(module) + " isn't where it belongs beside this program",
          "unpack the whole package"};
}

std::optional<Fault> WhyNotATarget(const Image& image, ImageKind ownKind) {
  const std::string remedy = "name a 64-bit producer for this system";
  if (image.kind == ImageKind::None) {
    return Fault{"isn't a module", "name the .cti file of the camera's maker"};
  }
  if (image.kind != ownKind) {
    return Fault{image.kind == ImageKind::Pe ? "is a module for Windows" : "is a module for Linux",
                 remedy};
  }
  if (image.machine == Machine::X86) {
    return Fault{"is a 32-bit module", "use the 64-bit edition of the maker's software"};
  }
  if (image.machine != Machine::X64) {
    return Fault{
        "is a module for " + std::string(MachineName(image.machine)) + ", and Vextrel is for x64",
        remedy};
  }
  if (image.isDamaged) {
    return Fault{"is damaged", "install the maker's software again"};
  }
  if (!image.isLibrary) {
    return Fault{"is a program, not a module", "name the .cti file of the camera's maker"};
  }
  if (std::find(image.exports.begin(), image.exports.end(), "GCInitLib") == image.exports.end()) {
    return Fault{"isn't a GenTL producer, since it doesn't export GCInitLib",
                 "name the .cti file of the camera's maker"};
  }
  return std::nullopt;
}

SuitableModule ModuleFor(const std::vector<std::string>& exports) {
  const std::string_view newer = FirstNewerFunction(exports);
  if (newer.empty()) {
    return {false, kStandardName,
            "the target has none of the functions that GenTL 1.3 to 1.6 added"};
  }
  return {true, kExtendedName,
          "the target has functions that GenTL 1.3 to 1.6 added, such as " + std::string(newer)};
}

fs::path ChooseModule(ModuleChoice choice, bool withTiming, const fs::path& target,
                      const OwnModules& modules) {
  if (choice == ModuleChoice::Standard && withTiming) {
    throw LaunchFailure(kExitChoice,
                        "vextrel.cti has no timing lines: leave out --timing or --module standard");
  }
  const bool isExtended = choice == ModuleChoice::Extended ||
                          (choice == ModuleChoice::Auto &&
                           (withTiming || ModuleFor(ReadImage(target).exports).isExtended));
  const fs::path& module = isExtended ? modules.extended : modules.standard;
  if (module.empty()) {
    throw LaunchFailure(kExitOwnFailure,
                        FaultOfPackage(isExtended ? kExtendedName : kStandardName));
  }
  return module;
}

}  // namespace vextrel::program
