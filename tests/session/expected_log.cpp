#include "session/expected_log.h"

#include <utility>

namespace vextrel_test::session {

ExpectedText ExpectedLog::Take() {
  return std::exchange(lines_, {});
}

int ExpectedLog::CountOf(std::string_view format) const {
  const auto found = counts_.find(format);
  return found != counts_.end() ? found->second : 0;
}

void ExpectedLog::Write(std::string_view priority, const char* format,
                        const std::vector<Value>& values) {
  lines_.Append(priority);
  lines_.Append(Print(format, values));
  lines_.Append("\n");
  ++counts_[format];
}

}  // namespace vextrel_test::session
