// SPDX-License-Identifier: MIT
#include "model/log.h"

#include <utility>

namespace vextrel_test::model {

ExpectedText Line(std::string_view priority, std::string_view format,
                  const std::vector<Value>& values) {
  return Print(std::string(priority) + " " + std::string(format), values);
}

std::string Error(std::string_view format, const std::vector<Value>& values) {
  return Line("ERROR", format, values).Text();
}

std::string Warn(std::string_view format, const std::vector<Value>& values) {
  return Line("WARN", format, values).Text();
}

std::vector<ExpectedText> Log::Take() {
  return std::exchange(lines_, {});
}

std::vector<std::string> Log::TakeTexts() {
  std::vector<std::string> texts;
  for (const ExpectedText& line : Take()) {
    texts.push_back(line.Text());
  }
  return texts;
}

int Log::CountOf(std::string_view format) const {
  const auto found = counts_.find(format);
  return found != counts_.end() ? found->second : 0;
}

void Log::Write(std::string_view priority, const char* format, const std::vector<Value>& values) {
  lines_.push_back(Line(priority, format, values));
  ++counts_[format];
}

}  // namespace vextrel_test::model
