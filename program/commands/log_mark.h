// SPDX-License-Identifier: MIT
// What a log holds before a run adds to it, so that the run's own part is found afterwards.
#ifndef VEXTREL_PROGRAM_COMMANDS_LOG_MARK_H
#define VEXTREL_PROGRAM_COMMANDS_LOG_MARK_H

#include <cstdint>
#include <string>

#include "reading/record_reader.h"

namespace vextrel::program {

class LogMark {
 public:
  LogMark() = default;
  // Marks the end of the log at `path`, in UTF-8, or of the files that it was rolled to. It need
  // not be there.
  explicit LogMark(std::string path);

  // How much the log itself had, in bytes, without the files that it was rolled to.
  [[nodiscard]] std::uint64_t Size() const noexcept { return isInRolledFile_ ? 0 : size_; }

  // Fills in the files that were written since, oldest first, and how much of the first is older.
  // Everything if what was there is gone: it was cut, or rolled until it fell out.
  void ShowWhatCameSince(ReadingOptions& options) const;

 private:
  std::string path_;
  bool isInRolledFile_ = false;
  std::uint64_t size_ = 0;
  std::string tail_;  // the bytes before the mark: they tell the file when it has another name
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_LOG_MARK_H
