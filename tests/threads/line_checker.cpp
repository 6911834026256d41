// SPDX-License-Identifier: MIT
#include "threads/line_checker.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vextrel_test {
namespace {

bool HasShape(std::string_view text, std::string_view shape) {
  return std::ranges::equal(text, shape, [](char letter, char wanted) {
    return wanted == '9' ? letter >= '0' && letter <= '9' : letter == wanted;
  });
}

struct Parts {
  std::string_view threadId;
  std::string_view message;
};

// A line as "%d{%Y-%m-%d %H:%M:%S.%l} [%t] %-5p %m" makes it; empty parts for any other.
Parts Divide(std::string_view line) {
  constexpr std::string_view begin = "9999-99-99 99:99:99.999 [";
  constexpr std::string_view level = "] INFO  ";
  const std::size_t end = line.find(level);
  if (end == std::string_view::npos || end < begin.size() ||
      !HasShape(line.substr(0, begin.size()), begin)) {
    return {};
  }
  return {line.substr(begin.size(), end - begin.size()), line.substr(end + level.size())};
}

}  // namespace

LineChecker::LineChecker(std::size_t threads, std::uint32_t count,
                         std::function<std::string(std::size_t, std::uint32_t)> lineOf)
    : lineOf_(std::move(lineOf)), count_(count), threads_(threads) {
  for (std::size_t i = 0; i < threads; ++i) {
    threads_[i].next = count == 0 ? "" : lineOf_(i, 0);
  }
}

bool LineChecker::Accept(std::string_view line) {
  const auto [id, message] = Divide(line);
  const auto found = std::ranges::find(threads_, message, &Thread::next);
  if (id.empty() || message.empty() || found == threads_.end()) {
    return false;
  }
  if (found->number == 0) {
    found->id = id;
  }
  ++found->number;
  found->next = found->number == count_
                    ? std::string()
                    : lineOf_(static_cast<std::size_t>(found - threads_.begin()), found->number);
  return found->id == id;
}

bool LineChecker::IsComplete() const {
  return std::ranges::all_of(threads_,
                             [this](const Thread& thread) { return thread.number == count_; });
}

std::string LineChecker::Expected() const {
  std::string text;
  for (const Thread& thread : threads_) {
    text += "\n  [" + thread.id + "] " + thread.next;
  }
  return text;
}

}  // namespace vextrel_test
