// SPDX-License-Identifier: MIT
#include "model/alignment.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vextrel::program {
namespace {

// So many equal calls in a row are no chance.
constexpr std::size_t kEnough = 3;

std::vector<ComparableCall> TakeFirst(std::deque<ComparableCall>& calls, std::size_t count) {
  const auto end = calls.begin() + static_cast<std::ptrdiff_t>(count);
  std::vector<ComparableCall> taken(std::make_move_iterator(calls.begin()),
                                    std::make_move_iterator(end));
  calls.erase(calls.begin(), end);
  return taken;
}

}  // namespace

void Alignment::Add(Side side, ComparableCall call) {
  (side == Side::Left ? left_ : right_).push_back(std::move(call));
  Align(false);
}

void Alignment::Finish() {
  Align(true);
  if (!left_.empty() || !right_.empty()) {
    Differ(left_.size(), right_.size());
  }
}

bool Alignment::Agree(std::size_t left, std::size_t right, bool atEnd) const {
  for (std::size_t i = 0; i < kEnough; ++i) {
    const bool leftEnds = left + i >= left_.size();
    const bool rightEnds = right + i >= right_.size();
    if (leftEnds || rightEnds) {
      return atEnd && i > 0;
    }
    if (left_[left + i].what != right_[right + i].what) {
      return false;
    }
  }
  return true;
}

void Alignment::Differ(std::size_t left, std::size_t right) {
  const std::vector<ComparableCall> first = TakeFirst(left_, left);
  const std::vector<ComparableCall> second = TakeFirst(right_, right);
  listener_.different(first, second);
}

void Alignment::Align(bool atEnd) {
  while (true) {
    while (!left_.empty() && !right_.empty() && left_.front().what == right_.front().what) {
      listener_.both(left_.front(), right_.front());
      left_.pop_front();
      right_.pop_front();
    }
    const std::size_t most = std::max(left_.size(), right_.size());
    const std::size_t least = std::min(left_.size(), right_.size());
    if (least == 0) {
      // One side has nothing yet; a thread of its own may never have.
      if (most >= 4 * kWindow) {
        Differ(left_.size(), right_.size());
      }
      return;
    }
    if (!atEnd && least < kWindow && most < 4 * kWindow) {
      return;
    }
    // The nearest place where both go on alike.
    bool found = false;
    const std::size_t limit = std::min(left_.size() + right_.size(), 2 * kWindow);
    for (std::size_t distance = 1; distance <= limit && !found; ++distance) {
      for (std::size_t left = 0; left <= distance && !found; ++left) {
        const std::size_t right = distance - left;
        if (left < left_.size() && right < right_.size() && Agree(left, right, atEnd)) {
          Differ(left, right);
          found = true;
        }
      }
    }
    if (!found) {
      Differ(std::min(left_.size(), kWindow), std::min(right_.size(), kWindow));
    }
  }
}

}  // namespace vextrel::program
