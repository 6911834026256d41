// SPDX-License-Identifier: MIT
#include "launching/process.h"

namespace vextrel::program {

std::string WhyNotStarted(std::uint32_t error) {
  switch (error) {
    case 2:  // ERROR_FILE_NOT_FOUND
    case 3:  // ERROR_PATH_NOT_FOUND
      return "isn't there";
    case 5:  // ERROR_ACCESS_DENIED
      return "may not be executed by this user";
    case 193:  // ERROR_BAD_EXE_FORMAT
    case 216:  // ERROR_EXE_MACHINE_TYPE_MISMATCH
      return "is no program for this system";
    case 206:  // ERROR_FILENAME_EXCED_RANGE
      return "gets arguments that are longer than Windows allows";
    case 740:  // ERROR_ELEVATION_REQUIRED
      return "runs as an administrator only: open a command prompt as an administrator, and start "
             "'vextrel trace' there";
    default:
      return "can't be started (error " + std::to_string(error) + ")";
  }
}

}  // namespace vextrel::program
