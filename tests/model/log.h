// SPDX-License-Identifier: MIT
// The lines that a log must contain, and how often each format was expected.
#ifndef VEXTREL_TESTS_MODEL_LOG_H
#define VEXTREL_TESTS_MODEL_LOG_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model/expected_text.h"
#include "model/windows_printf.h"

namespace vextrel_test::model {

// One line as "PRIORITY message".
[[nodiscard]] ExpectedText Line(std::string_view priority, std::string_view format,
                                const std::vector<Value>& values);
// Lines whose values are all known.
[[nodiscard]] std::string Error(std::string_view format, const std::vector<Value>& values = {});
[[nodiscard]] std::string Warn(std::string_view format, const std::vector<Value>& values = {});

class Log {
 public:
  void Info(const char* format, const std::vector<Value>& values = {}) {
    Write("INFO", format, values);
  }
  void Warn(const char* format, const std::vector<Value>& values = {}) {
    Write("WARN", format, values);
  }
  void Error(const char* format, const std::vector<Value>& values = {}) {
    Write("ERROR", format, values);
  }

  // Returns the lines written since the last call.
  [[nodiscard]] std::vector<ExpectedText> Take();
  // The same, for lines without holes.
  [[nodiscard]] std::vector<std::string> TakeTexts();
  // Returns how many lines of that format have been written so far.
  [[nodiscard]] int CountOf(std::string_view format) const;

 private:
  void Write(std::string_view priority, const char* format, const std::vector<Value>& values);

  std::vector<ExpectedText> lines_;
  std::map<std::string, int, std::less<>> counts_;
};

}  // namespace vextrel_test::model

#endif  // VEXTREL_TESTS_MODEL_LOG_H
