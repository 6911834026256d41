// SPDX-License-Identifier: MIT
// Two sequences of calls, aligned as they come: the same calls beside each other, and what only one
// of them has.
#ifndef VEXTREL_PROGRAM_MODEL_ALIGNMENT_H
#define VEXTREL_PROGRAM_MODEL_ALIGNMENT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "reading/record_reader.h"

namespace vextrel::program {

// A call, or a report, as far as it can be compared with another run's.
struct ComparableCall {
  std::uint64_t what = 0;  // what was called with which handles: equal calls are aligned
  std::uint64_t result = 0;
  std::uint64_t values = 0;  // what came back
  std::size_t function = 0;  // into FunctionNames(), or kReport
  LogPlace place;
  std::string text;  // for people

  static constexpr std::size_t kReport = SIZE_MAX;
};

// Aligns without keeping more than a window of each sequence.
class Alignment {
 public:
  enum class Side : std::uint8_t { Left, Right };
  static constexpr std::size_t kWindow = 512;

  // Either is called for each stretch of the sequences, in order.
  struct Listener {
    std::function<void(const ComparableCall& left, const ComparableCall& right)> both;
    // What one side has in the place of what the other one has; either may be empty.
    std::function<void(const std::vector<ComparableCall>& left,
                       const std::vector<ComparableCall>& right)>
        different;
  };

  explicit Alignment(Listener listener) : listener_(std::move(listener)) {}

  void Add(Side side, ComparableCall call);
  // Both sequences are at their ends.
  void Finish();

  [[nodiscard]] std::size_t Waiting(Side side) const noexcept {
    return (side == Side::Left ? left_ : right_).size();
  }

 private:
  void Align(bool atEnd);
  [[nodiscard]] bool Agree(std::size_t left, std::size_t right, bool atEnd) const;
  void Differ(std::size_t left, std::size_t right);

  Listener listener_;
  std::deque<ComparableCall> left_;
  std::deque<ComparableCall> right_;
};

}  // namespace vextrel::program

#endif  // VEXTREL_PROGRAM_MODEL_ALIGNMENT_H
