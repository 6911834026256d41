// SPDX-License-Identifier: MIT
// Whether the loader finds all that a module needs.
#ifndef VEXTREL_PROGRAM_DOCTOR_LIBRARIES_H
#define VEXTREL_PROGRAM_DOCTOR_LIBRARIES_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "images/image.h"
#include "launching/variables.h"

namespace vextrel::program {

// Where this system's loader looks, and in which order.
class LibrarySearch {
 public:
  // `application` is the program that loads the module, or empty if unknown.
  LibrarySearch(const Variables& variables, const std::filesystem::path& application);

  // Empty if there's none. `needing` is the module that needs it, with the headers `image`.
  [[nodiscard]] std::optional<std::filesystem::path> Find(const std::string& name,
                                                          const std::filesystem::path& needing,
                                                          const Image& image) const;
  // True iff the file belongs to the system, which has everything that it needs itself.
  [[nodiscard]] bool BelongsToTheSystem(const std::filesystem::path& file) const;

 private:
  std::vector<std::filesystem::path> first_;
  std::vector<std::filesystem::path> last_;
  std::filesystem::path system_;
};

struct MissingLibrary {
  std::string name;
  std::filesystem::path neededBy;
  std::string why;                 // such as "isn't found"
  bool isDelayed = false;          // missed at its first use only
  bool isBesideTheModule = false;  // there, but not where the loader looks
};

// In the order in which the loader would miss them.
[[nodiscard]] std::vector<MissingLibrary> FindMissingLibraries(const std::filesystem::path& module,
                                                               const LibrarySearch& search);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_LIBRARIES_H
