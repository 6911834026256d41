// SPDX-License-Identifier: MIT
// The page of a log, as a file.
#ifndef VEXTREL_PROGRAM_COMMANDS_LOG_PAGE_FILE_H
#define VEXTREL_PROGRAM_COMMANDS_LOG_PAGE_FILE_H

#include <string>
#include <vector>

#include "commands/checked_log.h"
#include "reading/record_reader.h"
#include "views/output.h"

namespace vextrel::program {

// Throws std::runtime_error with a sentence if no page at `path` can be made of these logs: one is
// standard input, or would be overwritten.
void DemandPagePath(const std::vector<std::string>& files, const std::string& path);

// Reads the log again as it was checked, writes its page to `path`, and tells `errors` so. `path`
// is UTF-8. Throws std::runtime_error with a sentence if the file can't be written.
void WriteLogPage(const ReadingOptions& options, const CheckedLog& checked, const std::string& path,
                  Output& errors);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_LOG_PAGE_FILE_H
