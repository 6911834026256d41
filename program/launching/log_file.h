// SPDX-License-Identifier: MIT
// Where the log of a trace goes.
#ifndef VEXTREL_PROGRAM_LAUNCHING_LOG_FILE_H
#define VEXTREL_PROGRAM_LAUNCHING_LOG_FILE_H

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>

#include "launching/fault.h"
#include "launching/variables.h"

namespace vextrel::program {

// Why no log can be written to a folder. Nothing if one can.
[[nodiscard]] std::optional<Fault> FaultOfFolder(const std::filesystem::path& folder);

// Why the log can't be written, a new one or more of one that's there. Nothing if it can.
[[nodiscard]] std::optional<Fault> FaultOfLog(const std::filesystem::path& log);

// The same for another file that is to be written, which the text calls `what`, such as "the page".
[[nodiscard]] std::optional<Fault> FaultOfFile(const std::string& what,
                                               const std::filesystem::path& file);

// Why the end of a log may be missing, as a sentence: empty if nothing says so.
[[nodiscard]] std::string WhyCutShort(const std::filesystem::path& log);

// What a file system has to have left for a log to be worth starting, in bytes.
inline constexpr std::uint64_t kLeastSpace = std::uint64_t{4} << 20U;

// The free bytes of the file system that has the folder; UINT64_MAX if unknown.
[[nodiscard]] std::uint64_t SpaceIn(const std::filesystem::path& folder);

// "grab-20261121-120000-4711.log" for an application and the local time.
[[nodiscard]] std::string LogName(const std::filesystem::path& application, const std::tm& time,
                                  std::uint32_t process);

struct LogFile {
  std::filesystem::path path;
  // Why it isn't in the working folder; empty if it is, or the user has named it.
  std::string whyElsewhere;
};

// The file that the user names, or one in the working folder, or one in the folder of the user's
// data. Throws LaunchFailure with a sentence if it can't be written, or holds something already.
[[nodiscard]] LogFile ChooseLogFile(const std::string& named,
                                    const std::filesystem::path& application,
                                    const Variables& variables);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_LOG_FILE_H
