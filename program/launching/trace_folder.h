// SPDX-License-Identifier: MIT
// What stands on disk for as long as an application is traced: the module in a folder of its own,
// and the configuration of its log.
#ifndef VEXTREL_PROGRAM_LAUNCHING_TRACE_FOLDER_H
#define VEXTREL_PROGRAM_LAUNCHING_TRACE_FOLDER_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "launching/fault.h"
#include "launching/variables.h"

namespace vextrel::program {

struct LogStyle {
  bool withTiming = false;        // when each call entered and left the target
  bool misuseOnly = false;        // no calls
  bool isFast = false;            // without dates
  std::uint32_t rollingSize = 0;  // in bytes; 0 for one file without a limit
};

// How many older files a rolling log keeps.
inline constexpr int kRolledFiles = 4;

// The variable that names the log file to the property file, which takes any path that way.
inline constexpr const char* kLogVariable = "VEXTREL_TRACE_LOG";

// A log4cpp property file.
[[nodiscard]] std::string PropertyText(const LogStyle& style);

class TraceFolder {
 public:
  // Copies the module into a new folder. Throws LaunchFailure with a sentence if that isn't
  // possible.
  TraceFolder(const std::filesystem::path& module, const std::string& properties,
              const Variables& variables);
  // Removes all of it.
  ~TraceFolder();
  TraceFolder(const TraceFolder&) = delete;
  TraceFolder& operator=(const TraceFolder&) = delete;

  // The folder that holds the module and nothing else.
  [[nodiscard]] const std::filesystem::path& ProducerFolder() const noexcept { return producers_; }
  [[nodiscard]] const std::filesystem::path& PropertyFile() const noexcept { return properties_; }

  // Returns false if a process still uses something in it.
  bool Remove() noexcept;
  [[nodiscard]] const std::filesystem::path& Path() const noexcept { return folder_; }

 private:
  std::filesystem::path folder_;
  std::filesystem::path producers_;
  std::filesystem::path properties_;
};

// The module reads variables as text in the system's code page. Why it couldn't read this path;
// nothing if it can.
[[nodiscard]] std::optional<Fault> FaultOfLetters(const std::filesystem::path& path);

// What the application finds in its environment. `log` may be empty if the configuration names the
// file itself. Throws LaunchFailure with a sentence if the module couldn't read one of the paths.
[[nodiscard]] Variables TracedVariables(Variables variables, const TraceFolder& folder,
                                        const std::filesystem::path& target,
                                        const std::filesystem::path& config,
                                        const std::filesystem::path& log);

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_LAUNCHING_TRACE_FOLDER_H
