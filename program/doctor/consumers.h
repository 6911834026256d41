// SPDX-License-Identifier: MIT
// Applications that are known to look for producers in a way of their own.
#ifndef VEXTREL_PROGRAM_DOCTOR_CONSUMERS_H
#define VEXTREL_PROGRAM_DOCTOR_CONSUMERS_H

#include <filesystem>
#include <string_view>

#include "images/image.h"

namespace vextrel::program {

struct Consumer {
  std::string_view name;
  std::string_view programPrefix;  // what the names of its programs begin with
  std::string_view
      linkedPrefix;           // what the name of a library begins with that they link; may be empty
  bool needsGentl15 = false;  // refuses a producer that lacks one of the 57 functions of GenTL 1.5
  std::string_view remark;    // how it finds producers, if not as GenTL says
};

// Null for an application that isn't known.
[[nodiscard]] const Consumer* FindConsumer(const std::filesystem::path& file, const Image& image);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_DOCTOR_CONSUMERS_H
