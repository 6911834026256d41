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

fs::path CheckedTarget(const std::string& named) {
  const fs::path path = PathOf(named);
  std::error_code error;
  if (fs::is_directory(path, error)) {
    throw LaunchFailure(kExitOwnFailure,
                        "the target '" + named + "' is a folder: name the .cti file in it");
  }
  if (!fs::exists(path, error)) {
    throw LaunchFailure(kExitOwnFailure, "there's no target '" + named +
                                             "': name the .cti file of the camera's maker");
  }
  if (IsVextrel(path)) {
    throw LaunchFailure(kExitOwnFailure, "the target '" + named +
                                             "' is Vextrel itself: name the producer that it is "
                                             "to trace");
  }
  return Absolute(path);
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

fs::path FindTarget(const std::string& named, const Variables& variables) {
  if (!named.empty()) {
    return CheckedTarget(named);
  }
  const std::optional<std::string> value = variables.Find(kPathVariable);
  if (!value) {
    throw LaunchFailure(kExitOwnFailure, std::string("there's no target: ") + kPathVariable +
                                             " isn't set; name a .cti file with --target");
  }
  std::vector<fs::path> producers = ProducersOf(ReadSearchPath(*value, kListSeparator));
  const bool hadAny = !producers.empty();
  std::erase_if(producers, IsVextrel);
  if (producers.empty()) {
    throw LaunchFailure(kExitOwnFailure,
                        std::string("there's no target: ") + kPathVariable +
                            (hadAny ? " leads to Vextrel only" : " leads to no .cti file") +
                            "; name one with --target");
  }
  if (producers.size() > 1) {
    std::string sentence = std::string(kPathVariable) + " leads to " +
                           std::to_string(producers.size()) +
                           " producers; choose one with --target:";
    for (const fs::path& producer : producers) {
      sentence += " '" + TextOf(producer) + "'";
    }
    throw LaunchFailure(kExitChoice, sentence);
  }
  return Absolute(producers.front());
}

std::string WhyNotATarget(const Image& image, ImageKind ownKind) {
  if (image.kind == ImageKind::None) {
    return "isn't a module";
  }
  if (image.kind != ownKind) {
    return image.kind == ImageKind::Pe ? "is a module for Windows" : "is a module for Linux";
  }
  if (image.machine == Machine::X86) {
    return "is a 32-bit module: use the 64-bit edition of the maker's software";
  }
  if (image.machine != Machine::X64) {
    return "is a module for " + std::string(MachineName(image.machine)) +
           ", and Vextrel is for x64";
  }
  if (image.isDamaged) {
    return "is damaged: install the maker's software again";
  }
  if (!image.isLibrary) {
    return "is a program, not a module";
  }
  if (std::find(image.exports.begin(), image.exports.end(), "GCInitLib") == image.exports.end()) {
    return "isn't a GenTL producer: it doesn't export GCInitLib";
  }
  return "";
}

void CheckTarget(const fs::path& target) {
  const std::string why = WhyNotATarget(ReadImage(target), kOwnImageKind);
  if (!why.empty()) {
    throw LaunchFailure(kExitOwnFailure, "the target '" + TextOf(target) + "' " + why);
  }
}

fs::path ChooseModule(ModuleChoice choice, bool withTiming, const fs::path& target,
                      const OwnModules& modules) {
  if (choice == ModuleChoice::Standard && withTiming) {
    throw LaunchFailure(kExitChoice,
                        "vextrel.cti has no timing lines: leave out --timing or --module standard");
  }
  const bool isExtended =
      choice == ModuleChoice::Extended ||
      (choice == ModuleChoice::Auto && (withTiming || HasNewerFunction(ReadImage(target).exports)));
  const fs::path& module = isExtended ? modules.extended : modules.standard;
  if (module.empty()) {
    throw LaunchFailure(
        kExitOwnFailure,
        std::string(isExtended ? kExtendedName : kStandardName) +
            " isn't where it belongs beside this program: unpack the whole package");
  }
  return module;
}

}  // namespace vextrel::program
