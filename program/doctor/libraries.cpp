// SPDX-License-Identifier: MIT
#include "doctor/libraries.h"

#include <algorithm>
#include <set>
#include <utility>

#include "images/file_bytes.h"

namespace vextrel::program {

namespace fs = std::filesystem;

namespace {

class Walk {
 public:
  Walk(fs::path module, const LibrarySearch& search)
      : module_(std::move(module)), search_(search) {}

  std::vector<MissingLibrary> Go() {
    Visit(module_, false);
    return std::move(missing_);
  }

 private:
  void Visit(const fs::path& file, bool isDelayed) {
    const Image image = ReadImage(file);
    for (const NeededLibrary& needed : image.needed) {
      if (!seen_.insert(needed.name).second) {
        continue;
      }
      const std::optional<fs::path> found = search_.Find(needed.name, file, image);
      if (!found) {
        Miss(needed, file, "isn't found", isDelayed);
      } else if (!found->empty() && !search_.BelongsToTheSystem(*found)) {
        Check(needed, *found, file, image, isDelayed);
      }
    }
  }

  void Check(const NeededLibrary& needed, const fs::path& found, const fs::path& file,
             const Image& image, bool isDelayed) {
    const Image library = ReadImage(found);
    if (library.kind != image.kind || library.machine != image.machine) {
      Miss(needed, file, "is found as '" + TextOf(found) + "', which is for another machine",
           isDelayed);
      return;
    }
    for (const std::string& version : needed.versions) {
      if (std::find(library.versions.begin(), library.versions.end(), version) ==
          library.versions.end()) {
        Miss(needed, file, "is too old here: it lacks " + version, isDelayed);
        return;
      }
    }
    Visit(found, isDelayed || needed.isDelayed);
  }

  void Miss(const NeededLibrary& needed, const fs::path& file, std::string why, bool isDelayed) {
    std::error_code error;
    missing_.push_back({needed.name, file, std::move(why), isDelayed || needed.isDelayed,
                        fs::exists(module_.parent_path() / PathOf(needed.name), error)});
  }

  fs::path module_;
  const LibrarySearch& search_;
  std::set<std::string> seen_;
  std::vector<MissingLibrary> missing_;
};

}  // namespace

std::vector<MissingLibrary> FindMissingLibraries(const fs::path& module,
                                                 const LibrarySearch& search) {
  return Walk(module, search).Go();
}

}  // namespace vextrel::program
