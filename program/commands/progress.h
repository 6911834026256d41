// SPDX-License-Identifier: MIT
// How far the reading of a large log is, for somebody who waits at a terminal.
#ifndef VEXTREL_PROGRAM_COMMANDS_PROGRESS_H
#define VEXTREL_PROGRAM_COMMANDS_PROGRESS_H

#include <cstdint>

#include "views/output.h"

namespace vextrel::program {

class Progress {
 public:
  // `total` is the size of what is read in bytes; 0 for nobody who waits, or an unknown size.
  // `terminal` has to live as long as the object.
  Progress(std::uint64_t total, Output& terminal) noexcept;
  // Takes back what it wrote.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Update(std::uint64_t bytesRead) {
    if (bytesRead >= next_) {
      Show(bytesRead);
    }
  }

 private:
  void Show(std::uint64_t bytesRead);

  std::uint64_t total_;
  std::uint64_t next_;
  Output& terminal_;
  bool shown_ = false;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_COMMANDS_PROGRESS_H
