// SPDX-License-Identifier: MIT
// What the headers of a program or of a library say, for files of either platform on either
// platform.
#ifndef VEXTREL_PROGRAM_IMAGES_IMAGE_H
#define VEXTREL_PROGRAM_IMAGES_IMAGE_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel::program {

enum class ImageKind { None, Elf, Pe };
enum class Machine { X64, X86, Arm64, Other };

// A library that another one needs.
struct NeededLibrary {
  std::string name;
  bool isDelayed = false;             // looked for at its first use only
  std::vector<std::string> versions;  // that it has to provide, such as GLIBC_2.34
};

struct Image {
  ImageKind kind = ImageKind::None;
  Machine machine = Machine::Other;
  bool isLibrary = false;  // not known of 32-bit ELF files, of which nothing else is, either
  bool isDamaged = false;  // the headers say something that can't be; what follows is incomplete
  bool runsOnAnyMachine = false;  // made of .NET code only, whatever `machine` says
  bool wantsElevation = false;    // its manifest asks for an administrator
  std::vector<NeededLibrary> needed;
  std::vector<std::string> exports;
  std::vector<std::string> versions;  // that it provides
  std::string runPath;                // where its own libraries are, separated by colons
  bool isRunPathFirst = false;        // before LD_LIBRARY_PATH
};

[[nodiscard]] Image ParseImage(std::string_view bytes);
// A file that can't be read has the kind None.
[[nodiscard]] Image ReadImage(const std::filesystem::path& path);

// "x64", "x86", "ARM64", "another machine"
[[nodiscard]] std::string_view MachineName(Machine machine) noexcept;

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_IMAGES_IMAGE_H
