// SPDX-License-Identifier: MIT
// The application's file, found as a shell finds it, and whether it can be traced.
#ifndef VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H
#define VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H

#include <filesystem>
#include <string>

#include "images/image.h"
#include "launching/variables.h"

namespace vextrel::program {

// Throws LaunchFailure if there's no such file, or it can't be started.
[[nodiscard]] std::filesystem::path FindApplication(const std::string& name,
                                                    const Variables& variables);

// Throws LaunchFailure with a sentence if a 64-bit producer of this system can't be loaded by it.
void CheckApplication(const std::filesystem::path& file);

// The same, for the headers `image` of a file that begins with `front`. Returns the sentence
// without the file's name, or an empty text. `ownKind` is what this system's programs are.
[[nodiscard]] std::string WhyNotTraceable(const Image& image, std::string_view front,
                                          const std::filesystem::path& file, ImageKind ownKind);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_APPLICATION_H
