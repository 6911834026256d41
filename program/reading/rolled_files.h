// SPDX-License-Identifier: MIT
// The files that a rolling log was renamed to.
#ifndef VEXTREL_PROGRAM_READING_ROLLED_FILES_H
#define VEXTREL_PROGRAM_READING_ROLLED_FILES_H

#include <string>
#include <vector>

namespace vextrel::program {

// `paths`, each with the rolled files before it: LOG.2, LOG.1, LOG. A file that is named more than
// once counts once.
[[nodiscard]] std::vector<std::string> WithRolledFiles(const std::vector<std::string>& paths);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_READING_ROLLED_FILES_H
