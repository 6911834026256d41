// SPDX-License-Identifier: MIT
// Reads a log that many threads wrote, line by line, and says what is wrong with it.
#ifndef VEXTREL_TESTS_THREADS_LINE_CHECKER_H
#define VEXTREL_TESTS_THREADS_LINE_CHECKER_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vextrel_test {

// Each thread's lines have to come whole, once each and in the thread's order, interleaved with
// those of the others in any way. Nothing else may come.
class LineChecker {
 public:
  // `lineOf` gives the text of a thread's line by its number, `count` is how many each thread has.
  LineChecker(std::size_t threads, std::uint32_t count,
              std::function<std::string(std::size_t thread, std::uint32_t number)> lineOf);

  // Takes a line of the log. Returns true iff it is one of those that may come next.
  [[nodiscard]] bool Accept(std::string_view line);

  // Returns true iff all lines of all threads have come.
  [[nodiscard]] bool IsComplete() const;
  // What may come next, for a message.
  [[nodiscard]] std::string Expected() const;

 private:
  struct Thread {
    std::uint32_t number = 0;
    std::string next;
    std::string id;  // as the log names the thread
  };

  std::function<std::string(std::size_t thread, std::uint32_t number)> lineOf_;
  std::uint32_t count_;
  std::vector<Thread> threads_;
};

}  // namespace vextrel_test

#endif  // VEXTREL_TESTS_THREADS_LINE_CHECKER_H
