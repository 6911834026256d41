// SPDX-License-Identifier: MIT
// Programs and modules that consist of headers only, for either system and any machine.
#ifndef VEXTREL_TESTS_PROGRAM_MADE_IMAGES_H
#define VEXTREL_TESTS_PROGRAM_MADE_IMAGES_H

#include <cstdint>
#include <string>
#include <vector>

namespace vextrel_test {

struct MadeImage {
  bool isLibrary = true;
  std::uint16_t machine = 0;  // 0 for x64
  std::vector<std::string> needed;
  std::vector<std::string> exports;
  std::string runPath;               // ELF only
  std::string neededVersion;         // ELF only: of the first needed library
  std::vector<std::string> delayed;  // PE only
  std::string manifest;              // PE only
  std::uint32_t dotNetFlags = 0;     // PE only: 0 for no .NET code
};

[[nodiscard]] std::string MadeElf(const MadeImage& image);
[[nodiscard]] std::string MadePe(const MadeImage& image);

// The format of the system that the test runs on.
[[nodiscard]] std::string MadeForThisSystem(const MadeImage& image);

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_PROGRAM_MADE_IMAGES_H
