// SPDX-License-Identifier: MIT
#include "launching/process.h"

namespace vextrel::program {

Fault WhyNotStarted(std::uint32_t error) {
  switch (error) {
    case 2:  // ERROR_FILE_NOT_FOUND
    case 3:  // ERROR_PATH_NOT_FOUND
      return {"isn't there", "name the application's own program"};
    case 5:  // ERROR_ACCESS_DENIED
      return {"may not be executed by this user", "allow the user to execute it"};
    case 193:  // ERROR_BAD_EXE_FORMAT
    case 216:  // ERROR_EXE_MACHINE_TYPE_MISMATCH
      return {"is no program for this system", "trace its 64-bit edition for Windows"};
    case 206:  // ERROR_FILENAME_EXCED_RANGE
      return {"gets arguments that are longer than Windows allows", "shorten them"};
    case kWantsElevation:
      return {"runs as an administrator only, and gets variables of its own then",
              "open a command prompt as an administrator, and start 'vextrel trace' there"};
    default:
      return {"can't be started (error " + std::to_string(error) + ")",
              "start it without Vextrel to see whether it can be"};
  }
}

}  // namespace vextrel::program
