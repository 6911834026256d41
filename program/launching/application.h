// SPDX-License-Identifier: MIT
// The application's file, found as a shell finds it, and whether it can be traced.
#ifndef VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H
#define VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H

#include <filesystem>
#include <optional>
#include <string>

#include "images/image.h"
#include "launching/fault.h"
#include "launching/variables.h"

namespace vextrel::program {

// Throws LaunchFailure if there's no such file, or it can't be started.
[[nodiscard]] std::filesystem::path FindApplication(const std::string& name,
                                                    const Variables& variables);

// Throws LaunchFailure with a sentence if a 64-bit producer of this system can't be loaded by it.
void CheckApplication(const std::filesystem::path& file);

// What this system's programs are, and whether those that we start have an administrator's rights.
struct Starter {
  ImageKind kind = ImageKind::None;
  bool isElevated = false;
};

// The same, for the headers `image` of a file that begins with `front`. Nothing if it can. The text
// comes without the file's name.
[[nodiscard]] std::optional<Fault> WhyNotTraceable(const Image& image, std::string_view front,
                                                   const std::filesystem::path& file,
                                                   const Starter& starter);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H
