// SPDX-License-Identifier: MIT
// From when to when each handle was open.
#ifndef VEXTREL_PROGRAM_PAGE_HANDLE_LIVES_H
#define VEXTREL_PROGRAM_PAGE_HANDLE_LIVES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "model/session_model.h"

namespace vextrel::program {

// In microseconds since the log's first line.
struct HandleLife {
  std::int64_t begin = 0;           // when the log first shows it
  std::optional<std::int64_t> end;  // nothing if it's open when the log ends
};

class HandleLives {
 public:
  static constexpr std::size_t kMostHandles = 1500;

  // To be called after each record that the model has taken.
  void Take(const SessionModel& model, const Message& message, const Context& context,
            std::int64_t time);

  // Of the first handles, by their ids: the one with the id 1 comes first.
  [[nodiscard]] const std::vector<HandleLife>& All() const noexcept { return lives_; }

 private:
  std::vector<HandleLife> lives_;
  std::vector<HandleId> open_;
  std::uint32_t session_ = 1;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_PAGE_HANDLE_LIVES_H
