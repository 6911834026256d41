// What the log must hold by now, and how often each message has been expected.
#ifndef VEXTREL_TESTS_SESSION_EXPECTED_LOG_H
#define VEXTREL_TESTS_SESSION_EXPECTED_LOG_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "session/expected_text.h"
#include "session/windows_printf.h"

namespace vextrel_test::session {

class ExpectedLog {
 public:
  void Info(const char* format, const std::vector<Value>& values = {}) {
    Write("INFO ", format, values);
  }
  void Warn(const char* format, const std::vector<Value>& values = {}) {
    Write("WARN ", format, values);
  }
  void Error(const char* format, const std::vector<Value>& values = {}) {
    Write("ERROR ", format, values);
  }

  // The lines written since the last call.
  [[nodiscard]] ExpectedText Take();
  // How many lines of that format have been written.
  [[nodiscard]] int CountOf(std::string_view format) const;

 private:
  void Write(std::string_view priority, const char* format, const std::vector<Value>& values);

  ExpectedText lines_;
  std::map<std::string, int, std::less<>> counts_;
};

}  // namespace vextrel_test::session

#endif  // VEXTREL_TESTS_SESSION_EXPECTED_LOG_H
