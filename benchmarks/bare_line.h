// What a traced call is compared with: log4cpp's own function, given lines that are ready.
#ifndef VEXTREL_BENCHMARKS_BARE_LINE_H
#define VEXTREL_BENCHMARKS_BARE_LINE_H

#include <log4cpp/Category.hh>
#include <string>
#include <vector>

#include "calls.h"

namespace vextrel_benchmark {

// The messages that the call logs in that session, which has a file log.
[[nodiscard]] std::vector<std::string> MessagesOf(const Case& call, Session& session);

// A category of this program's own log4cpp that is as far from its appender as the proxy's is.
class BareLogger {
 public:
  explicit BareLogger(Mode mode);

  void Write(const std::vector<std::string>& messages) {
    for (const std::string& message : messages) {
      category_.info(message);
    }
  }
  [[nodiscard]] const std::filesystem::path& logFile() const { return logFile_; }

 private:
  std::filesystem::path logFile_;
  log4cpp::Category& category_;
};

// Empties a log file that is being written, so that it does not fill the disk.
void EmptyLogFile(const std::filesystem::path& file);

}  // namespace vextrel_benchmark

#endif  // VEXTREL_BENCHMARKS_BARE_LINE_H
