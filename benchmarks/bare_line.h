// SPDX-License-Identifier: MIT
// What a traced call is compared with: log4cpp's own function, writing ready-made lines.
#ifndef VEXTREL_BENCHMARKS_BARE_LINE_H
#define VEXTREL_BENCHMARKS_BARE_LINE_H

#include <log4cpp/Category.hh>
#include <string>
#include <vector>

#include "calls.h"

namespace vextrel_bench {

// The messages that `call` logs in `session`. REQUIRES: the session logs to a file.
[[nodiscard]] std::vector<std::string> MessagesOf(const Case& call, Session& session);

// A category of this program's own log4cpp. Like the proxy's, it's one level below its appender.
class BareLogger {
 public:
  explicit BareLogger(Mode mode);

  void Write(const std::vector<std::string>& messages) {
    for (const std::string& message : messages) {
      category_.info(message);
    }
  }
  [[nodiscard]] const std::filesystem::path& LogFile() const { return logFile_; }

 private:
  std::filesystem::path logFile_;
  log4cpp::Category& category_;
};

// Empties a log file that may be open for writing, so that it doesn't fill the disk.
void EmptyLogFile(const std::filesystem::path& file);

}  // namespace vextrel_bench

#endif  // VEXTREL_BENCHMARKS_BARE_LINE_H
